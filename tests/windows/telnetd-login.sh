#!/usr/bin/env bash
# A login at a telnet daemon: shell, ls, vi and less in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
