#!/usr/bin/env python3
"""Every version in CHANGELOG.md says what it means for security: under "### Security", "Nothing" where there is nothing.

Usage: check-changes.py [FOLDER]     (default: the project)
"""

import house

CHANGES = "CHANGELOG.md"
HEADING = "### Security"


def check(root):
    """Sections of the change log are versions; each ends with the heading and at least one entry."""
    problems, versions, inside = [], [], None
    for n, line in enumerate([*house.read_lines(CHANGES, root), "## "], 1):
        if line.startswith("## "):
            if versions and not inside:
                what = "has no entry under" if inside is False else "lacks"
                problems.append(f'{CHANGES}:{versions[-1][0]}: {versions[-1][1]} {what} "{HEADING}"')
            versions.append((n, line[3:]))
            inside = None
        elif line == HEADING:
            inside = False
        elif inside is False and line.startswith("- "):
            inside = True
    if len(versions) < 2:
        problems.append(f"{CHANGES}:1: no version was found")
    return problems, 1


if __name__ == "__main__":
    house.main(check)
