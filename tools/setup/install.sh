#!/usr/bin/env bash
# Installs the Debian packages of one or more purposes, and does nothing when all of them are there.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

usage() {
    cat <<TEXT
Usage: tools/setup/install.sh PURPOSE ...

Installs what is missing of the packages that tools/setup/packages lists for each PURPOSE:
$(sed -n 's/^\([a-z]*\):\(.*\)$/  \1 \2/p' "$here/packages")

Needs root or sudo only when something is missing.
TEXT
}

if [[ $# -eq 0 || $1 == -h || $1 == --help ]]; then
    usage
    exit 0
fi

wanted=()
for purpose in "$@"; do
    line=$(grep "^$purpose:" "$here/packages") || {
        echo "install.sh: no purpose \"$purpose\" in tools/setup/packages" >&2
        exit 2
    }
    read -r -a names <<<"${line#*:}"
    wanted+=("${names[@]}")
done

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is no Debian system: nothing is installed. Needed are the equivalents of: ${wanted[*]}" >&2
    exit 0
fi

missing=()
for name in "${wanted[@]}"; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null || true)
    [[ $state == installed ]] || missing+=("$name")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

as_root=()
if [[ $(id -u) -ne 0 ]]; then
    command -v sudo >/dev/null || {
        echo "install.sh: these packages are missing, and there is no sudo to install them:" >&2
        echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi

echo "Installing: ${missing[*]}"
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 "$@"; }
apt update
apt install -y --no-install-recommends "${missing[@]}"
