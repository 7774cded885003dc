#!/usr/bin/env bash
# Sessions through an SSH server in the real window, and attempts that fail.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
