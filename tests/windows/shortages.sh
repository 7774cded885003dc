#!/usr/bin/env bash
# One session that lives through all that its machine can run short of; and the display that goes away.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
