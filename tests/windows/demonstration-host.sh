#!/usr/bin/env bash
# Every screen of the demonstration host in the real window, by keys and by mouse.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
