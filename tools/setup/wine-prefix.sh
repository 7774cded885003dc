#!/usr/bin/env bash
# Makes a Wine prefix (a folder that is a Windows system) in which qxterm runs, once: a prefix made by an
# equal recipe (this file, and the version of Wine) is left alone. A prefix that is remade keeps its qxterm.ini.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if [[ $# -ne 1 || $1 == -h || $1 == --help ]]; then
    echo "Usage: tools/setup/wine-prefix.sh DIR"
    echo
    echo "Makes the Wine prefix DIR, or finds it made already."
    [[ ${1:-} == -h || ${1:-} == --help ]] && exit 0 || exit 2
fi

source "$here/wine-env.sh"
mkdir -p "$(dirname "$1")"
prefix=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")

# Two tests may ask for it at once.
exec {lock}>"$prefix.lock"
flock "$lock"

recipe=$({ cat "$here/wine-prefix.sh"; "$WINE" --version; } | sha256sum | cut -d' ' -f1)
if [[ $(cat "$prefix/.qxterm-recipe" 2>/dev/null) == "$recipe" ]]; then
    exit 0
fi

echo "Making the Wine prefix $prefix"
settings=drive_c/windows/qxterm.ini
kept=
if [[ -f $prefix/$settings ]]; then
    kept=$(mktemp)
    cp -p "$prefix/$settings" "$kept"
fi

# A prefix that is only half made must never pass for a whole one: it gets its name at the end.
WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true
rm -rf "$prefix" "$prefix.new"
export WINEPREFIX=$prefix.new

# Courier New is what the program asks for, and without this Wine takes a proportional face for it.
# A crash must end a program with an error, not wait behind a dialog for someone to click.
registry=$(mktemp --suffix=.reg)
cat >"$registry" <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Courier New"="Liberation Mono"

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000
REG

make_prefix() {
    "$WINE" wineboot -i && "$WINE" regedit /S "Z:$registry" && wineserver -w
}
export -f make_prefix
export registry
# The lock is not handed down: Wine's server outlives this script.
if ! "$here/with-display.sh" bash -c make_prefix {lock}>&- >"$prefix.log" 2>&1; then
    echo "wine-prefix.sh: Wine could not make a prefix; $prefix.log has what it said" >&2
    rm -f "$registry"
    exit 1
fi
rm -f "$registry" "$prefix.log"

if [[ -n $kept ]]; then
    cp -p "$kept" "$WINEPREFIX/$settings"
    rm -f "$kept"
fi
echo "$recipe" >"$WINEPREFIX/.qxterm-recipe"
mv "$WINEPREFIX" "$prefix"
