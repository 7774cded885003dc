#!/usr/bin/env python3
"""clang-tidy finds nothing in src/, helpers/ and tools/. .clang-tidy says what it looks for.

Usage: check-clang-tidy.py [--jobs N] [FOLDER]     (default: one job a processor; the project)

Headers cost far more than the code that includes them. So the files are joined: one unit for all of Linux, one for all of
Windows, and further ones for files that give the same name to different things. What does not compile together with
others is looked at by itself. A unit that was clean is not looked at again until something changes that it is made of; the
notes of that are in build/clang-tidy/.
"""

import concurrent.futures
import glob
import hashlib
import os
import re
import shutil
import subprocess
import sys

import house

FOLDERS = ("src/", "helpers/", "tools/")
INCLUDES = ("src", "helpers", "tools")
CROSS = "/usr/lib/gcc/x86_64-w64-mingw32/*-posix/include/c++"
# With the default of 225000 states for each function the analyzer takes six times as long.
ANALYZER = ("-Xclang", "-analyzer-config", "-Xclang", "max-nodes=12000")
WINDOWS = re.compile(r"(^|/)win32/")
BROKEN = "clang-diagnostic-error"

FINDING = re.compile(r"^(.+?):(\d+):\d+: (?:warning|error): (.*)$", re.MULTILINE)
NAMESPACE = re.compile(r"namespace (?:([\w:]+) )?\{$")
DECLARED = re.compile(r"(?:struct|class|enum class|enum|using) (\w+)|.*?(\w+)\s*[(={;\[]")


def names_in(lines, own=True):
    """The names that a file has in its namespaces, with these: those that it keeps for itself, or those for all."""
    names = set()
    spaces = []
    for line in lines:
        opened = NAMESPACE.match(line)
        if opened:
            spaces.append(opened.group(1) or "")
        elif line.startswith("}") and "// namespace" in line:
            del spaces[-1:]
        elif ("" in spaces) == own and line[:1] not in (" ", "}", "/", "#"):
            found = DECLARED.match(line.removeprefix("[[nodiscard]] "))
            if found:
                names.add("::".join([space for space in spaces if space] + [found.group(1) or found.group(2)]))
    return names


def joined(files, public):
    """The files, as {path: lines}, in few groups, so that the names of none are in the way of another. A name that a
    header has as well would be: its files make groups of their own."""
    groups = []
    for path, lines in files.items():
        names = names_in(lines)
        shadows = bool(names & public)
        for group in groups:
            if group[2] == shadows and not group[0] & names:
                group[0].update(names)
                group[1].append(path)
                break
        else:
            groups.append((set(names), [path], shadows))
    return [group[1] for group in groups]


class Unit:
    """Some files as one."""

    def __init__(self, root, paths, windows):
        self.root = root
        self.paths = paths
        self.windows = windows
        self.starts = []
        text = ""
        for path in paths:
            self.starts.append((text.count("\n"), path))
            with open(os.path.join(root, path), encoding="utf-8") as file:
                text += file.read() + "\n"
        self.text = text
        folder = os.path.join(root, "build", "clang-tidy")
        os.makedirs(folder, exist_ok=True)
        name = hashlib.sha256(" ".join(paths).encode()).hexdigest()[:12]
        self.file = os.path.join(folder, name + ".cpp")
        self.note = os.path.join(folder, name + ".clean")

    def options(self):
        # The tools include what stands beside them.
        own = {os.path.dirname(path) for path in self.paths if path.startswith("tools/")}
        options = ["-std=c++20", *(f"-I{os.path.join(self.root, folder)}" for folder in [*INCLUDES, *sorted(own)])]
        if self.windows:
            cross = sorted(glob.glob(CROSS))[-1]
            options += ["--target=x86_64-w64-mingw32", "-isystem", cross,
                        "-isystem", os.path.join(cross, "x86_64-w64-mingw32")]
        return options

    def fingerprint(self):
        """A hash of all that the result depends on; None when that cannot be told."""
        listed = subprocess.run(["clang++", "-M", *self.options(), self.file], capture_output=True, text=True)
        if listed.returncode != 0:
            return None
        state = hashlib.sha256(subprocess.run(["clang-tidy", "--version"], capture_output=True).stdout)
        made_of = listed.stdout.replace("\\\n", " ").split()[1:]
        for path in [*made_of, os.path.join(self.root, ".clang-tidy"), os.path.abspath(__file__)]:
            with open(path, "rb") as file:
                state.update(path.encode() + hashlib.sha256(file.read()).digest())
        return state.hexdigest()

    def place(self, path, line):
        """Where a finding stands in the project; None for headers of the system."""
        if os.path.abspath(path) == self.file:
            start, own = [one for one in self.starts if one[0] < line][-1]
            return f"{own}:{line - start}"
        own = os.path.relpath(path, self.root)
        return f"{own}:{line}" if own.startswith(FOLDERS) else None

    def apart(self, broken):
        """The unit without the files in which it does not compile, and each of these; the halves of one that is broken in
        some header."""
        alone = [path for path in self.paths if any(place.startswith(path + ":") for place in broken)]
        rest = [path for path in self.paths if path not in alone]
        half = len(rest) if alone else len(rest) // 2
        groups = [paths for paths in (rest[:half], rest[half:]) if paths] + [[path] for path in alone]
        return [Unit(self.root, paths, self.windows) for paths in groups]

    def look(self):
        """The findings."""
        with open(self.file, "w", encoding="utf-8") as file:
            file.write(self.text)
        state = self.fingerprint()
        if state is not None and os.path.exists(self.note):
            with open(self.note, encoding="ascii") as file:
                if file.read() == state:
                    return []
        result = subprocess.run(
            ["clang-tidy", "--quiet", f"--config-file={os.path.join(self.root, '.clang-tidy')}", self.file, "--",
             *ANALYZER, *self.options()],
            capture_output=True, text=True)
        found = [(self.place(path, int(line)), path, line, text) for path, line, text in FINDING.findall(result.stdout)]
        broken = [place or "" for place, _, _, text in found if BROKEN in text]
        if broken and len(self.paths) > 1:
            return [problem for unit in self.apart(broken) for problem in unit.look()]
        problems = [f"{place or f'{path}:{line}'}: {text}" for place, path, line, text in found
                    if place or BROKEN in text]
        if result.returncode != 0 and not problems:
            problems = [f"clang-tidy failed in {', '.join(self.paths)}: {(result.stdout + result.stderr).strip()}"]
        if not problems and state is not None:
            with open(self.note, "w", encoding="ascii") as file:
                file.write(state)
        return problems


def units(root):
    """The units, those first that take longest."""
    texts = {path: house.read_lines(path, root) for path in house.source_files(root) if path.startswith(FOLDERS)}
    public = {name for path, lines in texts.items() if path.endswith(".h") for name in names_in(lines, own=False)}
    groups = []
    for windows in (True, False):
        files = {path: lines for path, lines in texts.items()
                 if path.endswith(".cpp") and bool(WINDOWS.search(path)) == windows}
        groups += [Unit(root, paths, windows) for paths in joined(files, public)]
    return sorted(groups, key=lambda unit: -len(unit.text))


def check(root, jobs):
    todo = units(root)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        problems = {problem for found in pool.map(Unit.look, todo) for problem in found}
    return sorted(problems), sum(len(unit.paths) for unit in todo)


if __name__ == "__main__":
    if not shutil.which("clang-tidy") or not glob.glob(CROSS):
        print("clang-tidy or the headers of MinGW-w64 are not installed: tools/setup/install.sh build checks")
        sys.exit(1)
    arguments = sys.argv[1:]
    wanted = os.cpu_count() or 1
    if arguments[:1] == ["--jobs"]:
        wanted = int(arguments[1])
        arguments = arguments[2:]
    sys.exit(house.report(*check(os.path.abspath(arguments[0]) if arguments else house.ROOT, wanted)))
