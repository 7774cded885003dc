#!/usr/bin/env bash
# A serial line in the real window: COM2 is a pseudo-terminal, a login stands at its other end.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
