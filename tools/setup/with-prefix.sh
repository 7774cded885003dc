#!/usr/bin/env bash
# Runs a command in a Wine prefix of its own, which is thrown away afterwards.
set -uo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if [[ $# -eq 0 || $1 == -h || $1 == --help ]]; then
    cat <<TEXT
Usage: tools/setup/with-prefix.sh [--keep-server] COMMAND [ARGUMENT ...]

Runs COMMAND with WINEPREFIX naming a fresh copy of build/wine-base (made when it is missing), WINE naming
the Wine loader, and the rest of Wine's environment set. Ends that prefix's Wine processes and removes the copy
when COMMAND has ended. Exits with the status of COMMAND.

With --keep-server Wine's server stays from the beginning to the end, for a COMMAND that runs many programs one after
the other: a server that goes by itself may do so just when the next program connects to it.
TEXT
    [[ $# -gt 0 ]] && exit 0 || exit 2
fi

keep_server=
if [[ $1 == --keep-server ]]; then
    keep_server=yes
    shift
fi

source "$here/wine-env.sh"
builds=$(cd "$here/../.." && pwd)/build
base=$builds/wine-base
"$here/wine-prefix.sh" "$base" || exit 1

mkdir -p "$builds/wine-runs"
WINEPREFIX=$(mktemp -d "$builds/wine-runs/XXXXXX")
export WINEPREFIX
child=

clean_up() {
    trap - EXIT
    if [[ -n $child ]]; then
        kill "$child" 2>/dev/null
        wait "$child" 2>/dev/null
    fi
    wineserver -k 2>/dev/null
    wineserver -w 2>/dev/null
    rm -rf "$WINEPREFIX" "$WINEPREFIX".{lock,users}  # ./run's, in a test of it
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# Hundreds of megabytes of system files, which nobody writes to, are shared with the base by hard links; all
# else is copied.
cp -al "$base/." "$WINEPREFIX/" || exit 1
for folder in . drive_c/users drive_c/ProgramData; do
    [[ -e $base/$folder ]] || continue
    depth=()
    [[ $folder == . ]] && depth=(-maxdepth 1)
    (cd "$base" && find "$folder" "${depth[@]}" -type f -print0) |
        (cd "$base" && xargs -0 -r cp -p --parents --remove-destination -t "$WINEPREFIX")
done
(cd "$base" && find drive_c/windows -type f -name '*.ini' -print0 |
    xargs -0 -r cp -p --parents --remove-destination -t "$WINEPREFIX")

if [[ -n $keep_server ]]; then
    wineserver -p
    # The first program of all brings up the desktop's services; two that do so at the same time may wait for ever.
    "$WINE" cmd /c exit >/dev/null 2>&1 </dev/null
fi

"$@" <&0 &
child=$!
wait "$child"
status=$?
child=
exit "$status"
