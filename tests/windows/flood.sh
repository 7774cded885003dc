#!/usr/bin/env bash
# Floods of output: the window goes on answering.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
