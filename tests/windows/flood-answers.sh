#!/usr/bin/env bash
# While a host sends without end, the window answers, and the program's memory stays as it is. Watches the clock closely.
exec python3 "$(dirname "${BASH_SOURCE[0]}")/flood.py" menusWhileFlooded modesWhileFlooded behindABox
