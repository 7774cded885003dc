#!/usr/bin/env bash
# The desk: a clipboard that is huge, odd, or another program's.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
