# To be sourced: how this project calls Wine. Sets WINE, the loader, for "$WINE" program.exe.

# The wrapper /usr/bin/wine prints a notice about 32-bit programs on every call; the loader itself does not.
WINE=/usr/lib/wine/wine64
[[ -x $WINE ]] || WINE=$(command -v wine64 || command -v wine || true)
if [[ -z $WINE ]]; then
    echo "Wine is missing: tools/setup/install.sh wine" >&2
    exit 1
fi
export WINE
export WINEDEBUG=${WINEDEBUG:--all}
# No offers to download .NET or an HTML engine; no menu entries and file types on the person's own desktop.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
