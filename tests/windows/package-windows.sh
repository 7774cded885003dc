#!/usr/bin/env bash
# The windows of the installer, by keys.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
