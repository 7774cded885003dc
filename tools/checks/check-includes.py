#!/usr/bin/env python3
"""Includes run downward: by the floors of tools/checks/floors.txt, and never in a circle.

Usage: check-includes.py [FOLDER]     (default: the project)
"""

import os
import re

import house

FOLDERS = ("src/", "helpers/")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def read_floors(path):
    """[(pattern, floor)] and [(pattern, [pattern of those who may include it])], in the order of the file."""
    floors = []
    kept = []
    with open(path, encoding="utf-8") as file:
        for line in file:
            words = line.split("#", 1)[0].split()
            patterns = [house.compile_pattern(p) for p in words[1:] if p != "by"]
            if words and words[0] == "only":
                kept.append((patterns[0], patterns[1:]))
            else:
                floors += [(pattern, int(words[0])) for pattern in patterns]
    return floors, kept


def floor_of(path, floors):
    fitting = [floor for pattern, floor in floors if pattern.match(path)]
    return fitting[-1] if fitting else None


def may_include(path, target, kept):
    """Whether the last line that keeps `target` for some lets `path` in."""
    allowed = [others for pattern, others in kept if pattern.match(target)]
    return not allowed or any(pattern.match(path) for pattern in allowed[-1])


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
    floors, kept = read_floors(os.path.join(root, "tools/checks/floors.txt"))
    paths = [path for folder in FOLDERS for path in house.source_files(root, folder)]
    known = set(paths)
    problems = []
    graph = {path: [] for path in paths}
    for path, includes in read_includes(paths, root).items():
        own = floor_of(path, floors)
        if own is None:
            problems.append(f"{path}:1: this file stands on no floor of tools/checks/floors.txt")
            continue
        for line, name in includes:
            target = next((folder + name for folder in FOLDERS if folder + name in known), None)
            if target is None:
                problems.append(f'{path}:{line}: "{name}" names no file below {" or ".join(FOLDERS)}; include paths '
                                "start there")
                continue
            graph[path].append((line, target))
            if not may_include(path, target, kept):
                problems.append(f"{path}:{line}: includes {target}, which is not for this file")
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
