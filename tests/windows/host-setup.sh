#!/usr/bin/env bash
# Logins with and without packaging/profile.d/qxterm.sh: what the file mends is seen in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
