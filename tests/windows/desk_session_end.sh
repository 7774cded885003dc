#!/usr/bin/env bash
# The desk: what happens to the program when the user's session ends.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
