#!/usr/bin/env python3
"""What is handed over is small, loads no library but those of Windows that it calls, and is protected by the system:
loaded at an address that nobody knows, its data not executable, its code not writable, its stack watched. The programs
name no library in their table of imports that Windows would look for beside them.

Usage: check-program.py FOLDER     (a build for Windows)
"""

import re
import subprocess
import sys
from pathlib import Path

# Programs, their largest size in bytes, and the libraries that each may load at the first call of them. Those of an
# installer's action are loaded already where it runs, and stand in its table.
PROGRAMS = {"qxterm.exe": (1_000_000, {"user32", "gdi32", "comctl32", "ws2_32", "iphlpapi", "advapi32"}),
            "qxterm-start.exe": (400_000, {"user32", "advapi32"}),
            "setup-actions.dll": (400_000, {"msi", "advapi32"}),
            "zpt_ssh.exe": (400_000, {"ws2_32", "iphlpapi", "advapi32"}),
            "zpt_tnetd.exe": (400_000, {"ws2_32", "advapi32"})}
# Taken from memory wherever a file of the name stands: Windows lists them among its KnownDLLs.
COMMON = {"kernel32", "msvcrt"}
PROTECTION = {"HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"}
WATCHED = b"stack smashing detected"


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


def writable_code(path):
    """Sections that are writable and executable."""
    listing = subprocess.run(["x86_64-w64-mingw32-objdump", "-h", path], capture_output=True, text=True, check=True).stdout
    found = re.findall(r"^ *\d+ (\S+) .*\n +(.*)$", listing, re.M)
    return [name for name, flags in found if "CODE" in flags and "READONLY" not in flags]


def loaded_late(image, imported):
    """Libraries that are named for their first call: as in a table of imports, in the case of the tool chain's lists."""
    names = {name.decode().lower() for name in re.findall(rb"\0([A-Z][A-Z0-9_]+)\.dll\0", image)}
    return names - imported


def main(folder):
    problems = []
    for name, (limit, allowed) in PROGRAMS.items():
        path = Path(folder) / name
        image = path.read_bytes()
        listing = headers(path)
        imported = libraries(listing)
        late = loaded_late(image, imported)
        if len(image) >= limit:
            problems.append(f"{name} has {len(image)} bytes; it is to stay below {limit}")
        if name.endswith(".exe") and imported != COMMON:
            problems.append(f"{name} imports {', '.join(sorted(imported - COMMON))}, which Windows looks for beside it")
        loaded = imported | late
        if loaded - allowed - COMMON:
            problems.append(f"{name} loads {', '.join(sorted(loaded - allowed - COMMON))}")
        if allowed - loaded:
            problems.append(f"{name} no longer calls {', '.join(sorted(allowed - loaded))}: take it from what is linked")
        problems += [f"{name} lacks {flag}" for flag in sorted(missing_protection(listing))]
        problems += [f"{name}: {section} can be written and executed" for section in writable_code(path)]
        if WATCHED not in image:
            problems.append(f"{name} does not watch its stack")
        print(f"{name}: {len(image)} bytes, imports {', '.join(sorted(imported))}; later {', '.join(sorted(late))}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
