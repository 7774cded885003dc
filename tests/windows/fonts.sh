#!/usr/bin/env bash
# Font sizes, colours, line drawing and the scrolled-back view in the real window.
exec python3 "${BASH_SOURCE[0]%.sh}.py" "$@"
