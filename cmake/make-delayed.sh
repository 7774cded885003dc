#!/usr/bin/env bash
# Makes an import library whose DLL is loaded at the first call of one of its routines.
# make-delayed.sh NM DLLTOOL NAME LIBRARY TARGET: from the tool chain's import library of NAME.dll.
set -euo pipefail

nm=$1 dlltool=$2 name=$3 library=$4 target=$5
{
    printf 'LIBRARY %s.dll\nEXPORTS\n' "${name^^}"
    "$nm" --extern-only --defined-only "$library" 2>/dev/null | awk '$2 == "T" { print $3 }'
} >"$target.def"
# The temporary names stand in the library: always the same ones.
(cd "$(dirname "$target")" && "$dlltool" --input-def "$target.def" --temp-prefix "delayed_$name" --output-delaylib "$target")
