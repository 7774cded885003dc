#!/usr/bin/env bash
# ./run itself: the picture, a session on a desktop, a profile, how it ends.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
