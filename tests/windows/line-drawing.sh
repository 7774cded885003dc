#!/usr/bin/env bash
# The line-drawing glyphs of the terminal font, at all sizes of a cell.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
