#!/usr/bin/env bash
# Telnet's Synch, cut in every way, in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
