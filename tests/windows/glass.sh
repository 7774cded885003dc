#!/usr/bin/env bash
# What stands in the window beside the picture in memory, and that beside the records, by the thousand.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
