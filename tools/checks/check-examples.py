#!/usr/bin/env python3
"""The examples of the Markdown pages do what the pages say.

An example is a block between a line "```scenario" and a line "```": commands of qxterm-scenario, and below each in lines
"#> " what it prints, as in the files of tests/scenarios/. Each is played in a program of its own.

Usage: check-examples.py --program QXTERM-SCENARIO [FOLDER]     (default: the project)
"""

import argparse
import importlib.util
import os
import shlex
import sys
import tempfile

import house

BEGIN, END = "```scenario", "```"


def load_runner():
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "run-scenario.py")
    found = importlib.util.spec_from_file_location("run_scenario", path)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


def examples(lines):
    """The examples of a page, each as long as the page up to its end: all lines but its own are blank."""
    begun = None
    for n, line in enumerate(lines):
        if line == BEGIN:
            begun = n + 1
        elif line == END and begun is not None:
            yield [""] * begun + lines[begun:n]
            begun = None
    if begun is not None:
        yield [""] * begun + [f"the block that begins in line {begun} has no end"]


def play(runner, program, page, lines):
    """What went wrong with an example, as lines for a person that name the page."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "example.scn")
        with open(path, "w", encoding="utf-8") as file:
            file.write("".join(line + "\n" for line in lines))
        return [line.replace(path, page) for line in runner.run(program, path)]


def check(root, program):
    runner, problems, count = load_runner(), [], 0
    for page in [p for p in house.project_files(root) if p.endswith(".md")]:
        for lines in examples(house.read_lines(page, root)):
            count += 1
            problems += play(runner, program, page, lines)
    return problems, count


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("folder", nargs="?", default=house.ROOT)
    arguments = parser.parse_args()
    problems, count = check(os.path.abspath(arguments.folder), shlex.split(arguments.program))
    if not count:
        problems.append("no example was found")
    for problem in problems:
        print(problem)
    print(f"{count} examples played")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
