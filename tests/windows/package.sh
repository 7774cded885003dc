#!/usr/bin/env bash
# The installer, silently, from a first installation through an upgrade to the removal.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
