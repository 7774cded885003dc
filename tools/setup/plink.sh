#!/usr/bin/env bash
# Builds plink.exe, an SSH client for Windows, from Debian's source package of PuTTY, and keeps it in the user's cache.
# It is a peer for the tests of the SSH bridge; none of it goes into the project.
set -euo pipefail

cache=${XDG_CACHE_HOME:-$HOME/.cache}/qxterm
result=$cache/plink.exe

if [[ $# -gt 0 ]]; then
    echo "Usage: tools/setup/plink.sh"
    echo
    echo "Makes $result when it is missing, and prints its path."
    [[ $1 == -h || $1 == --help ]] && exit 0 || exit 2
fi

mkdir -p "$cache"
# Two tests may ask for it at once.
exec {lock}>"$cache/plink.lock"
flock "$lock"
if [[ -x $result ]]; then
    echo "$result"
    exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Lists of their own for the sources of Debian's packages: the system's stay as they are.
mkdir -p lists/partial parts
cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null |
    sed -n 's/^deb \(.*debian.*\)/deb-src \1/p' >sources.list || true
for file in /etc/apt/sources.list.d/*.sources; do
    grep -qs '^URIs:.*debian' "$file" || continue
    sed 's/^Types:.*/Types: deb-src/' "$file" >"parts/$(basename "$file")"
done
options=(-o "Dir::Etc::SourceList=$work/sources.list" -o "Dir::Etc::SourceParts=$work/parts"
    -o "Dir::State::Lists=$work/lists" -o APT::Sandbox::User=root -q)
{
    apt-get "${options[@]}" update
    apt-get "${options[@]}" --download-only source putty
    mkdir source
    # The original sources need no patches of Debian's for this.
    tar -xf putty_*.orig.tar.* -C source --strip-components=1

    cat >windows.cmake <<'CMAKE'
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
CMAKE
    cmake -G Ninja -S source -B build -DCMAKE_TOOLCHAIN_FILE="$work/windows.cmake" -DCMAKE_BUILD_TYPE=Release
    nice cmake --build build --target plink
} >log 2>&1 || {
    tail -30 log >&2
    echo "plink.sh: plink.exe could not be built" >&2
    exit 1
}
cp build/plink.exe "$result.new"
mv "$result.new" "$result"
echo "$result"
