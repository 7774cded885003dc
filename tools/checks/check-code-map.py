#!/usr/bin/env python3
"""docs/code-map.md has one line for every file of src/, helpers/ and tools/, one for every folder of tests/ and for every
other folder of the project, and none for what is not there.

A heading that ends in a folder's name, `src/diag/`, is followed by the rows of a table: | `name` | what it is |. The name
`name.{h,cpp}` stands for both files, a name that ends in "/" for a folder. Without a folder in the heading, names count
from the project's root.

Usage: check-code-map.py [FOLDER]     (default: the project)
"""

import os
import re

import house

MAP = "docs/code-map.md"
BY_FILE = ("src/", "helpers/", "tools/")
HEADING = re.compile(r"^#+ (?:.*`([^`]+/)`)?")
ROW = re.compile(r"^\| *`([^`]+)` *\|(.*)\|\s*$")
BRACES = re.compile(r"(.*)\{([^}]*)\}(.*)")


def spelled_out(name):
    """The names that `name` stands for."""
    match = BRACES.fullmatch(name)
    if not match:
        return [name]
    return [match.group(1) + middle + match.group(3) for middle in match.group(2).split(",")]


def read_map(lines):
    """[(line number, path, what it is)] of the map's rows."""
    rows = []
    folder = ""
    for n, line in enumerate(lines, 1):
        heading = HEADING.match(line)
        row = ROW.match(line)
        if heading:
            folder = heading.group(1) or ""
        elif row:
            rows += [(n, folder + name, row.group(2).strip()) for name in spelled_out(row.group(1))]
    return rows


def wanted(paths):
    """What has to stand in the map: paths of files, and folders with a "/" at their end."""
    found = set()
    for path in paths:
        if path.startswith(BY_FILE):
            found.add(path)
        elif path.startswith("tests/") and path.count("/") > 1:
            found.add("/".join(path.split("/")[:2]) + "/")
        elif "/" in path and not path.startswith("tests/"):
            found.add(path.split("/")[0] + "/")
    return found


def check(root):
    paths = house.project_files(root)
    missing = wanted(paths)
    present = missing | set(paths)
    problems = []
    seen = set()
    lines = house.read_lines(MAP, root) if os.path.exists(os.path.join(root, MAP)) else []
    for n, path, what in read_map(lines):
        if path not in present:
            problems.append(f"{MAP}:{n}: {path} is not there, or needs no line")
        elif path in seen:
            problems.append(f"{MAP}:{n}: {path} has a line already")
        elif not what:
            problems.append(f"{MAP}:{n}: what {path} is, is not said")
        seen.add(path)
    problems += [f"{MAP}:1: {path} has no line" for path in sorted(missing - seen)]
    return problems, len(paths)


if __name__ == "__main__":
    house.main(check)
