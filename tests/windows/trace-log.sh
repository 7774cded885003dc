#!/usr/bin/env bash
# The trace that the real program writes, replayed by qxterm-scenario.exe.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
