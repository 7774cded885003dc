#!/usr/bin/env bash
# The dialogs in schemes of high contrast: every text can be read.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
