#!/usr/bin/env python3
"""No file holds what tools/checks/words.txt forbids, nor the path of the checkout it stands in.

QXTERM_EXTRA_WORDS may name one more file of that form.

Usage: check-words.py [FOLDER]     (default: the project)
"""

import os
import re

import house

WORDS = "tools/checks/words.txt"


def read_words(path):
    words = []
    with open(path, encoding="utf-8") as file:
        for line in file:
            line = line.rstrip("\n")
            if line and not line.startswith("#"):
                pattern, _, reason = line.partition("\t")
                words.append((re.compile(pattern), reason))
    return words


def check(root):
    words = read_words(os.path.join(root, WORDS))
    if os.environ.get("QXTERM_EXTRA_WORDS"):
        words += read_words(os.environ["QXTERM_EXTRA_WORDS"])
    # A short path such as /src could stand in a file by chance.
    if root.count("/") > 1:
        words.append((re.compile(re.escape(root) + r"\b"), "the path of this checkout"))
    problems = []
    paths = [p for p in house.project_files(root) if p != WORDS]
    for path in paths:
        for n, line in enumerate(house.read_lines(path, root) or [], 1):
            for pattern, reason in words:
                match = pattern.search(line)
                if match:
                    problems.append(f"{path}:{n}: \"{match.group(0)}\": {reason}")
    return problems, len(paths)


if __name__ == "__main__":
    house.main(check)
