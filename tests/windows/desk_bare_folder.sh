#!/usr/bin/env bash
# The desk: the program without the files that belong beside it.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
