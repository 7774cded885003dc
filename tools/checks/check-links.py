#!/usr/bin/env python3
"""Links of the Markdown pages lead somewhere, and the tests and commands that pages name are there.

A link within the project must name a file or folder, and behind "#" a heading of that page. A test is named as ctest names it,
between backquotes; of the unit tests a suite alone does, too, and names in capitals stand for others. A command `./NAME` of the
README must answer --help.

Usage: check-links.py [FOLDER]     (default: the project)
"""

import os
import re
import subprocess

import house

LINK = re.compile(r"\]\(([^)\s]+)\)")
COMMAND = re.compile(r"(?:^ {4}|`)\./([\w-]+)", re.M)
TEST = re.compile(r"`(unit|scenario|fuzz-corpus|demohost|check|wine)/([\w./-]+)`")
FILES_OF_TESTS = {"scenario": "tests/scenarios/{}.scn", "fuzz-corpus": "fuzz/{}.cpp", "demohost": "tests/demohost/{}.py",
                  "check": "tools/checks/check-{}.py", "wine": "tests/windows/{}.sh"}
REGISTERED = "cmake/RegisterTests.cmake"
UNIT_TESTS = "tests/unit/"
COMMANDS_OF = "README.md"
SECONDS = 30


def prose(lines):
    """The lines with code blanked out: blocks between fences, indented blocks, and what stands between backquotes."""
    fenced, before = False, ""
    for line in lines:
        if line.startswith("```"):
            fenced = not fenced
            line = ""
        # An indented line goes on with a list or a paragraph, and begins code behind a blank line only.
        elif fenced or (line.startswith("    ") and not before.strip()):
            yield ""
            continue
        before = line
        yield re.sub(r"`[^`]*`", "", line)


def anchors(lines):
    """What may stand behind "#": names that are given, and the headings in small letters, with hyphens for blanks and without
    other signs."""
    fenced, found = False, set()
    for line in lines:
        fenced ^= line.startswith("```")
        found |= set() if fenced else set(re.findall(r'<a name="([^"]+)"></a>', line))
        if not fenced and line.startswith("#"):
            found.add(re.sub(r"[^\w\- ]", "", line.lstrip("# ").lower()).replace(" ", "-"))
    return found


def check_link(root, page, link):
    """What is wrong with a link of a page; empty when nothing is."""
    target, _, anchor = link.partition("#")
    path = os.path.normpath(os.path.join(os.path.dirname(page), target)) if target else page
    if path.startswith("..") or not os.path.exists(os.path.join(root, path)):
        return f"{link} leads nowhere"
    if anchor and anchor not in anchors(house.read_lines(path, root)):
        return f"{link}: {path} has no such heading"
    return ""


class Tests:
    def __init__(self, root):
        self.root = root
        registered = house.read_lines(REGISTERED, root) if os.path.exists(os.path.join(root, REGISTERED)) else []
        self.registered = set(re.findall(r"[\w-]+", "\n".join(registered)))
        self.units = set()
        for path in house.source_files(root, UNIT_TESTS):
            text = "\n".join(house.read_lines(path, root))
            for suite, case in re.findall(r"\bTEST(?:_F|_P)?\((\w+), (\w+)\)", text):
                self.units |= {suite, f"{suite}.{case}"}

    def has(self, kind, name):
        if re.search(r"\b[A-Z]+\b", name):
            return True
        if kind == "unit":
            return name in self.units
        return os.path.exists(os.path.join(self.root, FILES_OF_TESTS[kind].format(name))) or name in self.registered


def check_command(root, name):
    path = os.path.join(root, name)
    if not os.access(path, os.X_OK) or os.path.isdir(path):
        return f"there is no command ./{name}"
    try:
        result = subprocess.run([path, "--help"], cwd=root, capture_output=True, timeout=SECONDS,
                                stdin=subprocess.DEVNULL)
    except subprocess.TimeoutExpired:
        return f"./{name} --help was still running after {SECONDS} seconds"
    if result.returncode != 0 or not result.stdout.strip():
        return f"./{name} --help ended with status {result.returncode}, and explained nothing"
    return ""


def check(root):
    problems = []
    pages = [p for p in house.project_files(root) if p.endswith(".md")]
    tests = Tests(root)
    for page in pages:
        for n, line in enumerate(house.read_lines(page, root), 1):
            problems += [f"{page}:{n}: there is no test {kind}/{name}" for kind, name in TEST.findall(line)
                         if not tests.has(kind, name)]
        for n, line in enumerate(prose(house.read_lines(page, root)), 1):
            for link in LINK.findall(line):
                if not re.match(r"[a-z]+:", link) and (problem := check_link(root, page, link)):
                    problems.append(f"{page}:{n}: {problem}")
    if COMMANDS_OF in pages:
        text = "\n".join(house.read_lines(COMMANDS_OF, root))
        problems += [f"{COMMANDS_OF}:1: {problem}" for name in sorted(set(COMMAND.findall(text)))
                     if (problem := check_command(root, name))]
    return problems, len(pages)


if __name__ == "__main__":
    house.main(check)
