#!/usr/bin/env bash
# The Options dialog by keyboard, its messages, and odd input into every box.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
