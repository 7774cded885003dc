#!/usr/bin/env python3
"""The C++ files are laid out as .clang-format says. clang-format belongs to the packages of `./test`.

Usage: check-format.py [FOLDER]     (default: the project)
"""

import re
import shutil
import subprocess
import sys

import house


def check(root):
    paths = house.source_files(root)
    if not paths:
        return [], 0
    result = subprocess.run(["clang-format", "--dry-run", *paths], cwd=root, capture_output=True, text=True)
    if result.returncode != 0:
        return [result.stderr.strip()], len(paths)
    places = {}
    for match in re.finditer(r"^(.+?):(\d+):\d+: warning:", result.stderr, re.MULTILINE):
        places.setdefault(match.group(1), []).append(match.group(2))
    problems = [f"{path}:{lines[0]}: {len(lines)} places are laid out otherwise: clang-format -i {path}"
                for path, lines in sorted(places.items())]
    return problems, len(paths)


if __name__ == "__main__":
    if not shutil.which("clang-format"):
        print("clang-format is not installed: tools/setup/install.sh checks")
        sys.exit(1)
    house.main(check)
