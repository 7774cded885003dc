#!/usr/bin/env bash
# Runs a Windows program of the build under Wine, in the prefix that WINEPREFIX names.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../setup/wine-env.sh"
if [[ ! -f $1 ]]; then
    echo "$1 is not built: cmake --preset windows && cmake --build --preset windows" >&2
    exit 1
fi
exec "$WINE" "$@"
