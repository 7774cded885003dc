# To be sourced: how this project calls Wine. Sets WINE, for "$WINE" program.exe.

# The wrapper /usr/bin/wine prints a notice about 32-bit programs on every call; the loader itself does not.
WINE_LOADER=/usr/lib/wine/wine64
[[ -x $WINE_LOADER ]] || WINE_LOADER=$(command -v wine64 || command -v wine || true)
if [[ -z $WINE_LOADER ]]; then
    echo "Wine is missing: tools/setup/install.sh wine" >&2
    exit 1
fi
WINE=$WINE_LOADER
# A container may forbid it.
if setarch -R true 2>/dev/null; then WINE=$(dirname "$(realpath "${BASH_SOURCE[0]}")")/wine-fixed.sh; fi
export WINE WINE_LOADER
export WINEDEBUG=${WINEDEBUG:--all}
# No offers to download .NET or an HTML engine; no menu entries and file types on the person's own desktop.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
