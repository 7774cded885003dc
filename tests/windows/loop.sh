#!/usr/bin/env bash
# The loop connection in the real window: typing and keys.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
