#!/usr/bin/env bash
# Calls of the Windows API fail, one after the other: the program says so or copes, goes on, and leaves nothing behind.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
