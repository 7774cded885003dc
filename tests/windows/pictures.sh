#!/usr/bin/env bash
# Takes pictures of the window, every menu, dialog and message box at 96, 120, 144 and 192 dots per inch, into
# build/shots/desk. Arguments: other resolutions. QXTERM_COLOURS=black, white or yellow: in the colours of a high
# contrast. QXTERM_BUILD names the Windows build (build/windows).
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
export QXTERM_BUILD=${QXTERM_BUILD:-$root/build/windows}
export QXTERM_SCREEN=1800x1200x24

for dpi in "${@:-96 120 144 192}"; do
    for one in $dpi; do
        "$root/tools/setup/with-display.sh" "$root/tools/setup/with-prefix.sh" python3 "$here/pictures.py" "$one"
    done
done
echo "Pictures: $root/build/shots/desk"
