#!/usr/bin/env python3
"""Runs scenarios and compares what the program printed with the expected output beside each.

Usage: run-scenario.py --program COMMAND FILE.scn ...
       run-scenario.py --program COMMAND --all FOLDER

FILE.expected holds one JSON object a line; blank lines and lines that begin with "#" are there for the reader.
Objects are compared as JSON: the order of keys and the blanks between them mean nothing. With a FILE.stderr
the scenario must end with status 2 and print exactly that on standard error, otherwise with status 0 and
nothing on standard error.
"""

import argparse
import concurrent.futures
import difflib
import json
import os
import shlex
import subprocess
import sys

SECONDS = 60
CONTEXT = 3


def read_objects(text, where):
    """[object] of the lines; a line that is no JSON is kept as it stands, marked as such."""
    objects = []
    for n, line in enumerate(text.splitlines(), 1):
        line = line.rstrip("\r")
        if not line.strip() or line.startswith("#"):
            continue
        try:
            objects.append(json.loads(line))
        except ValueError:
            objects.append({"no JSON": line, "in": f"{where}, line {n}"})
    return objects


def as_text(item):
    """One line for one object, so that equal objects give equal lines."""
    return json.dumps(item, sort_keys=True, ensure_ascii=True)


def difference(expected, actual, path=""):
    """Where two JSON values differ, as ["path: expected X, got Y"]; long lists only where they differ."""
    if type(expected) is type(actual) is dict:
        found = []
        for key in sorted(set(expected) | set(actual)):
            place = f"{path}.{key}" if path else key
            if key not in actual:
                found.append(f"{place}: expected {as_text(expected[key])}, got nothing")
            elif key not in expected:
                found.append(f"{place}: expected nothing, got {as_text(actual[key])}")
            else:
                found += difference(expected[key], actual[key], place)
        return found
    if type(expected) is type(actual) is list and len(expected) == len(actual):
        found = []
        for n, pair in enumerate(zip(expected, actual)):
            found += difference(*pair, f"{path}[{n}]")
        return found
    if type(expected) is type(actual) and expected == actual:
        return []
    return [f"{path}: expected {as_text(expected)}, got {as_text(actual)}"]


def kind(item):
    """What an object is: an object that changed its kind is no changed object, but another one."""
    if not isinstance(item, dict):
        return None
    return item.get("event"), item.get("dump"), item.get("op"), item.get("name")


def compare(expected, actual):
    """The differences of two lists of objects, as lines for a person; none when they are equal."""
    left = [as_text(item) for item in expected]
    right = [as_text(item) for item in actual]
    if left == right:
        return []
    lines = []
    for tag, a, b, c, d in difflib.SequenceMatcher(None, left, right, autojunk=False).get_opcodes():
        if tag == "equal":
            lines += [f"    {text}" for text in left[max(a, b - CONTEXT):b]]
            continue
        if tag == "replace" and b - a == d - c and [kind(i) for i in expected[a:b]] == [
                kind(i) for i in actual[c:d]]:
            for n in range(b - a):
                lines.append(f"  object {a + n + 1}: {as_text_short(expected[a + n])}")
                lines += [f"      {text}" for text in difference(expected[a + n], actual[c + n])]
            continue
        lines += [f"  - {text}" for text in left[a:b]]
        lines += [f"  + {text}" for text in right[c:d]]
    return lines


def as_text_short(item):
    text = as_text(item)
    return text if len(text) <= 100 else text[:97] + "..."


def run(program, scenario):
    """What went wrong with one scenario, as lines for a person; none when all was as expected."""
    stem = os.path.splitext(scenario)[0]
    with open(stem + ".expected", encoding="utf-8") as file:
        expected = read_objects(file.read(), stem + ".expected")
    status, complaint = 0, ""
    if os.path.exists(stem + ".stderr"):
        status = 2
        with open(stem + ".stderr", encoding="utf-8") as file:
            complaint = file.read()
    try:
        result = subprocess.run(program + [scenario], capture_output=True, timeout=SECONDS)
    except subprocess.TimeoutExpired:
        return [f"  it was still running after {SECONDS} seconds"]
    errors = result.stderr.decode("utf-8", "replace").replace("\r\n", "\n")
    lines = compare(expected, read_objects(result.stdout.decode("utf-8", "replace"), "the output"))
    if lines:
        lines.insert(0, "  - is expected and missing, + was printed instead:")
    if result.returncode != status:
        lines.append(f"  exit status {result.returncode}, expected {status}")
    if errors != complaint:
        lines.append(f"  on standard error, expected {'nothing' if not complaint else repr(complaint)}:")
        lines += [f"    {text}" for text in errors.splitlines()]
    return lines


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--all")
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
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for scenario, lines in zip(scenarios, pool.map(lambda s: run(program, s), scenarios)):
            if lines:
                failed += 1
                print(f"{scenario}: failed")
                print("\n".join(lines))
                print(f"  by hand: {arguments.program} {scenario}")
    print(f"{len(scenarios) - failed} of {len(scenarios)} scenarios as expected")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
