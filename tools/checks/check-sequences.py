#!/usr/bin/env python3
"""The index of docs/control-sequences.md and the reader's tables hold the same sequences, and it names their files.

Usage: check-sequences.py [FOLDER]     (default: the project)
"""

import os
import re

import house

PAGE = "docs/control-sequences.md"
TABLES = "src/terminal/interpreter/sequence_tables.cpp"
VERBS = "src/terminal/commands"
# How the index writes the entries of each table.
FORMS = {"controls": "{}", "escapeSequences": "ESC {}", "controlSequences": "ESC [ {}"}

TABLE = re.compile(r"constexpr std::array (\w+)\{(.*?)\n\};", re.S)
ROW = re.compile(r"Row\{('(?:\\?.)'|\d+), verb<(\w+)>\}")
ENTRY = re.compile(r"\| `([^`]+)` \| [^|]* \| `(\w+)` \|")


def read_tables(text):
    """{entry as the index writes it: verb}"""
    entries = {}
    for name, body in TABLE.findall(text):
        for final, verb in ROW.findall(body):
            byte = final[1:-1][-1] if final.startswith("'") else final
            entries[FORMS[name].format(byte)] = verb
    return entries


def read_index(lines):
    """{entry: (line number, file without its ending)}; the index is the section of that name."""
    entries, inside = {}, False
    for n, line in enumerate(lines, 1):
        if line.startswith("## "):
            inside = line == "## Index"
        elif inside and (match := ENTRY.match(line)):
            entries[match.group(1)] = (n, match.group(2))
    return entries


def check(root):
    with open(os.path.join(root, TABLES), encoding="utf-8") as file:
        tables = read_tables(file.read())
    index = read_index(house.read_lines(PAGE, root))
    problems = [f"{PAGE}:1: the index lacks {entry}, which the tables have" for entry in tables if entry not in index]
    for entry, (line, name) in index.items():
        header = os.path.join(root, VERBS, name + ".h")
        if entry not in tables:
            problems.append(f"{PAGE}:{line}: the tables have no {entry}")
        elif not os.path.isfile(header):
            problems.append(f"{PAGE}:{line}: there is no {VERBS}/{name}.h")
        else:
            with open(header, encoding="utf-8") as file:
                if not re.search(rf"\b{tables[entry]}\(", file.read()):
                    problems.append(f"{PAGE}:{line}: {name}.h does not declare {tables[entry]}, the verb of {entry}")
    if not tables:
        problems.append(f"{TABLES}:1: no table was found")
    return problems, len(tables)


if __name__ == "__main__":
    house.main(check)
