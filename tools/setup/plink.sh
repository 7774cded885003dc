#!/usr/bin/env bash
# Builds plink.exe (an SSH client) or putty.exe (a terminal) for Windows from Debian's source package of PuTTY, and keeps
# it in the user's cache. plink is a peer for the tests of the SSH bridge, putty one for measuring in the window; none of
# it goes into the project.
set -euo pipefail

cache=${XDG_CACHE_HOME:-$HOME/.cache}/qxterm
target=${1:-plink}

if [[ $# -gt 1 || ($target != plink && $target != putty) ]]; then
    echo "Usage: tools/setup/plink.sh [plink | putty]"
    echo
    echo "Makes $cache/plink.exe or putty.exe when it is missing, and prints its path."
    [[ ${1:-} == -h || ${1:-} == --help ]] && exit 0 || exit 2
fi

result=$cache/$target.exe
mkdir -p "$cache"
# Two tests may ask for it at once.
exec {lock}>"$cache/$target.lock"
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
    cmake -G Ninja -S source -B build -DCMAKE_TOOLCHAIN_FILE="$work/windows.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_EXE_LINKER_FLAGS=-static
    nice cmake --build build --target "$target"
} >log 2>&1 || {
    tail -30 log >&2
    echo "plink.sh: $target.exe could not be built" >&2
    exit 1
}
cp "build/$target.exe" "$result.new"
mv "$result.new" "$result"
echo "$result"
