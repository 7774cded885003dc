#!/usr/bin/env bash
# Selection, clipboard and scrollback in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
