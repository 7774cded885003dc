#!/usr/bin/env bash
# Connections that fail or are dropped, in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
