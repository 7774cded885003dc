#!/usr/bin/env bash
# The desk: profiles from the first start to the second, opened, saved, kept.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
