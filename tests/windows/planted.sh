#!/usr/bin/env bash
# Libraries with the names of Windows' own, put beside the program, into its current folder and into the path.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
