#!/usr/bin/env python3
"""What is handed over is small, loads no library but those of Windows that it calls, and is protected by the system:
loaded at an address that nobody knows, its data not executable.

Usage: check-program.py FOLDER     (a build for Windows)
"""

import re
import subprocess
import sys
from pathlib import Path

# Programs, their largest size in bytes, and the libraries that each may load besides those that all do.
PROGRAMS = {"qxterm.exe": (1_000_000, {"user32", "gdi32", "comctl32", "ws2_32", "iphlpapi"}),
            "qxterm-start.exe": (400_000, {"user32", "advapi32"}),
            "setup-actions.dll": (400_000, {"msi", "advapi32"}),
            "zpt_ssh.exe": (400_000, {"ws2_32", "iphlpapi"}),
            "zpt_tnetd.exe": (400_000, {"ws2_32"})}
COMMON = {"kernel32", "msvcrt"}
PROTECTION = {"HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"}


def headers(path):
    return subprocess.run(["x86_64-w64-mingw32-objdump", "-p", path], capture_output=True, text=True, check=True).stdout


def libraries(listing):
    names = [line.split(":", 1)[1].strip() for line in listing.splitlines() if "DLL Name:" in line]
    return {name.lower().removesuffix(".dll") for name in names}


def missing_protection(listing):
    """Without a table of relocations the program would stay at one address whatever its header asks for."""
    missing = PROTECTION - {line.strip() for line in listing.splitlines()}
    relocations = re.search(r"^Entry 5 [0-9a-f]+ ([0-9a-f]+) Base Relocation", listing, re.M)
    return missing | (set() if relocations and int(relocations.group(1), 16) else {"relocations"})


def main(folder):
    problems = []
    for name, (limit, allowed) in PROGRAMS.items():
        path = Path(folder) / name
        size = path.stat().st_size
        listing = headers(path)
        loaded = libraries(listing)
        if size >= limit:
            problems.append(f"{name} has {size} bytes; it is to stay below {limit}")
        if loaded - allowed - COMMON:
            problems.append(f"{name} loads {', '.join(sorted(loaded - allowed - COMMON))}")
        if allowed - loaded:
            problems.append(f"{name} no longer calls {', '.join(sorted(allowed - loaded))}: take it from what is linked")
        problems += [f"{name} lacks {flag}" for flag in sorted(missing_protection(listing))]
        print(f"{name}: {size} bytes, loads {', '.join(sorted(loaded))}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
