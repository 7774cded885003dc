#!/usr/bin/env bash
# Ctrl+C, Ctrl+\ and Ctrl+Z in a session with a telnet daemon.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
