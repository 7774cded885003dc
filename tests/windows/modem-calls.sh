#!/usr/bin/env bash
# Calls through a modem in the real window: COM2 is a pseudo-terminal, the modem a script.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
