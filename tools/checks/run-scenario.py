#!/usr/bin/env python3
"""Runs scenarios and compares what each command printed with what the file expects below it.

Usage: run-scenario.py --program COMMAND [--write] [--jobs N] FILE.scn ...
       run-scenario.py --program COMMAND [--write] [--jobs N] --all FOLDER

scenario_file.py tells how the expected lines are written. Objects are compared as JSON: neither the order of their keys
nor the layout counts. A line that cannot be carried out prints an object of its own, `fault message="..."`; without
one the scenario must end with status 0 and nothing on standard error.

Several are run at once, as many as there are processors unless --jobs says otherwise. --write puts what was printed
in the place of what was expected. It takes the program at its word: each line that it changes has to be checked by
hand.
"""

import argparse
import concurrent.futures
import difflib
import json
import os
import re
import shlex
import subprocess
import sys

import scenario_file

SECONDS = 60
CONTEXT = 3
REFUSED = 2  # exit status after a line that could not be carried out


def canonical(item):
    """One text for one object, so that equal objects give equal texts."""
    return json.dumps(item, sort_keys=True)


def play(program, path):
    """What the lines of a scenario print, as {line: [object]}, and what went wrong besides."""
    try:
        result = subprocess.run(program + ["--lines", path], capture_output=True, timeout=SECONDS)
    except subprocess.TimeoutExpired:
        return {}, [f"it was still running after {SECONDS} seconds"]
    printed, problems, line = {}, [], 0
    for text in result.stdout.decode("utf-8", "replace").split("\n"):
        if not text.strip():
            continue
        try:
            item = json.loads(text)
        except ValueError:
            problems.append(f"this was printed, and is no JSON: {text}")
            continue
        if isinstance(item, dict) and list(item) == ["file", "line"]:
            line = item["line"]
        else:
            printed.setdefault(line, []).append(item)
    errors = result.stderr.decode("utf-8", "replace").replace("\r\n", "\n")
    fault = re.fullmatch(re.escape(path) + r":(\d+): ([^\n]*)\n", errors)
    if fault and result.returncode == REFUSED:
        printed.setdefault(int(fault[1]), []).append({"event": "fault", "message": fault[2]})
    elif errors or result.returncode != 0:
        problems.append(f"exit status {result.returncode}, and on standard error:")
        problems += [f"  {text}" for text in errors.splitlines()]
    return printed, problems


def compare(expected, printed):
    """The differences of two lists of objects, as lines for a person; none when they are equal."""
    if [canonical(item) for item in expected] == [canonical(item) for item in printed]:
        return []
    left = [line for item in expected for line in scenario_file.encode(item)]
    right = [line for item in printed for line in scenario_file.encode(item)]
    lines = []
    for tag, a, b, c, d in difflib.SequenceMatcher(None, left, right, autojunk=False).get_opcodes():
        if tag == "equal":
            # What begins an object tells which one it is.
            lines += [f"      {line}" for n, line in enumerate(left[a:b], a)
                      if n >= b - CONTEXT or n < a + CONTEXT or not line.startswith(" ")]
        else:
            lines += [f"    - {line}" for line in left[a:b]] + [f"    + {line}" for line in right[c:d]]
    return lines


def run(program, path):
    """What went wrong with one scenario, as lines for a person; none when all was as expected."""
    try:
        commands = scenario_file.read(path)
    except scenario_file.Malformed as fault:
        return [f"{path}:{fault.line}: {fault}"]
    printed, problems = play(program, path)
    lines = []
    for command in commands:
        found = compare(command.expected(), printed.pop(command.line, []))
        if found:
            lines += [f"{path}:{command.line}: {command.text}", *found]
    if lines:
        lines.append("    (- is expected and missing, + was printed instead)")
    lines += [f"{path}:{line}: prints something, and is no command" for line in printed]
    return lines + [f"{path}: {problem}" for problem in problems]


def rewritten(command, printed):
    """What shall stand below a command: what it printed; lines for the reader stay before the same objects."""
    old = [canonical(item) for item in command.expected()]
    new = [canonical(item) for item in printed]
    place = {len(old): len(new)}  # where an old object's reader's lines go
    same = {}
    for tag, a, b, c, d in difflib.SequenceMatcher(None, old, new, autojunk=False).get_opcodes():
        for n in range(a, b):
            place[n] = min(c + n - a, d)
            if tag == "equal":
                same[c + n - a] = n
    notes, kept = {}, []
    for part in command.below:
        if isinstance(part, scenario_file.Expected):
            kept.append(part)
        else:
            notes.setdefault(place[len(kept)], []).append(part)
    below = []
    for n, item in enumerate(printed):
        below += notes.get(n, []) + [kept[same[n]] if n in same else scenario_file.expect(item)]
    return below + notes.get(len(printed), [])


def write(program, path):
    """Rewrites what a scenario expects. Lines for a person: what changed, or why nothing was written."""
    try:
        commands = scenario_file.read(path)
    except scenario_file.Malformed as fault:
        return [f"{path}:{fault.line}: {fault}"]
    printed, problems = play(program, path)
    problems += [f"line {n} prints something, and is no command" for n in set(printed) - {c.line for c in commands[1:]}]
    if problems:
        return [f"{path}: not rewritten: {problem}" for problem in problems]
    changed = [c.line for c in commands if compare(c.expected(), printed.get(c.line, []))]
    if not changed:
        return []
    for command in commands:
        command.below = rewritten(command, printed.get(command.line, []))
    scenario_file.write(path, commands)
    return [f"{path}: rewritten, commands concerned: {len(changed)}. Check each line of it by hand (git diff)"]


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--write", action="store_true")
    parser.add_argument("--all")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("files", nargs="*")
    arguments = parser.parse_args()
    scenarios = list(arguments.files)
    if arguments.all:
        for folder, _, names in sorted(os.walk(arguments.all)):
            scenarios += [os.path.join(folder, n) for n in sorted(names) if n.endswith(".scn")]
    if not scenarios:
        print("no scenario was named or found", file=sys.stderr)
        return 2
    program = shlex.split(arguments.program)
    treat = write if arguments.write else run
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for scenario, lines in zip(scenarios, pool.map(lambda s: treat(program, s), scenarios)):
            if lines:
                failed += 1
                print("\n".join(lines))
                if not arguments.write:
                    print(f"  by hand: {arguments.program} {scenario}")
    print(f"{len(scenarios) - failed} of {len(scenarios)} scenarios as expected")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
