#!/usr/bin/env python3
"""Every scenario has its expected output beside it, and no expected output stands alone.

Usage: check-scenario-pairs.py [FOLDER]     (default: the project)
"""

import os

import house


def check(root):
    problems = []
    paths = [p for p in house.project_files(root) if p.startswith("tests/scenarios/")]
    known = set(paths)
    for path in paths:
        stem, ending = os.path.splitext(path)
        if ending == ".scn" and stem + ".expected" not in known:
            problems.append(f"{path}:1: its expected output, {stem}.expected, is missing")
        if ending in (".expected", ".stderr") and stem + ".scn" not in known:
            problems.append(f"{path}:1: there is no scenario {stem}.scn that it belongs to")
    return problems, len(paths)


if __name__ == "__main__":
    house.main(check)
