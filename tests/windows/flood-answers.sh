#!/usr/bin/env bash
# While a host sends without end, the window answers. Watches the clock closely.
exec python3 "$(dirname "${BASH_SOURCE[0]}")/flood.py" menusWhileFlooded modesWhileFlooded
