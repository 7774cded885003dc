#!/usr/bin/env bash
# After a flood the screen and the scrollback are right.
exec python3 "$(dirname "${BASH_SOURCE[0]}")/flood.py" lines modes
