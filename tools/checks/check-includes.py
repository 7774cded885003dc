#!/usr/bin/env python3
"""Includes run downward: by the floors of tools/checks/floors.txt, and never in a circle.

Usage: check-includes.py [FOLDER]     (default: the project)
"""

import os
import re

import house

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def read_floors(path):
    """[(pattern, floor)] in the order of the file."""
    floors = []
    with open(path, encoding="utf-8") as file:
        for line in file:
            words = line.split("#", 1)[0].split()
            floors += [(house.compile_pattern(p), int(words[0])) for p in words[1:]]
    return floors


def floor_of(path, floors):
    fitting = [floor for pattern, floor in floors if pattern.match(path)]
    return fitting[-1] if fitting else None


def read_includes(paths, root):
    """{path: [(line number, included text)]}"""
    includes = {}
    for path in paths:
        lines = house.read_lines(path, root) or []
        found = ((n, INCLUDE.match(line)) for n, line in enumerate(house.without_comments(lines), 1))
        includes[path] = [(n, match.group(1)) for n, match in found if match]
    return includes


def find_cycles(graph):
    """[[path, ..., the first path again]], one for each circle that a depth-first walk closes.

    `graph` is {path: [(line number, path included)]}.
    """
    cycles = []
    done = set()
    for start in sorted(graph):
        if start in done:
            continue
        trail = [start]
        waiting = [iter(graph[start])]
        while trail:
            for _, target in waiting[-1]:
                if target in trail:
                    cycles.append(trail[trail.index(target):] + [target])
                elif target in graph and target not in done:
                    trail.append(target)
                    waiting.append(iter(graph[target]))
                    break
            else:
                done.add(trail.pop())
                waiting.pop()
    return cycles


def check(root):
    floors = read_floors(os.path.join(root, "tools/checks/floors.txt"))
    paths = house.source_files(root, "src/")
    known = set(paths)
    problems = []
    graph = {path: [] for path in paths}
    for path, includes in read_includes(paths, root).items():
        own = floor_of(path, floors)
        if own is None:
            problems.append(f"{path}:1: this file stands on no floor of tools/checks/floors.txt")
            continue
        for line, name in includes:
            target = "src/" + name
            if target not in known:
                problems.append(f'{path}:{line}: "{name}" names no file below src/; include paths start there')
                continue
            graph[path].append((line, target))
            floor = floor_of(target, floors)
            if floor is not None and floor > own:
                problems.append(f"{path}:{line}: includes {target}, which stands on floor {floor}, above floor "
                                f"{own} of this file")
    for cycle in find_cycles(graph):
        line = next(n for n, target in graph[cycle[0]] if target == cycle[1])
        problems.append(f"{cycle[0]}:{line}: includes run in a circle: {' -> '.join(cycle)}")
    return problems, len(paths)


if __name__ == "__main__":
    house.main(check)
