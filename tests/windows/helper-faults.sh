#!/usr/bin/env bash
# Calls of the Windows API that fail in the helper programs.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
