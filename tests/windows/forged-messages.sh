#!/usr/bin/env bash
# Messages that another program of the desktop sends to the program's windows.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
