#!/usr/bin/env python3
"""Would the tests notice? Changes one place of the sources at a time and runs the native tests.

    tools/mutate/mutate.py [--count N] [--seed S] [--files REGEX] [--jobs J] [--sanitize] [--work DIR]
    tools/mutate/mutate.py --list [--files REGEX]

Takes N places at random (200) in src/ without src/platform/win32. Most of the mutants stand in one build, each behind a
switch (schemata.py); a first run of every test tells which mutants it reaches, and a mutant is judged by those tests alone.
Mutants that cannot stand so (the size of an array, a label), or that nothing reaches, are built one at a time.

A mutant is "noticed" when a test fails or does not end, "nothing" when the programs built from it are those built without
it, "no code" when it does not compile, and else "alive". Each result is a line of DIR/seed-S.jsonl (build/mutate/); what
stands there already is not done again, so that an interrupted run goes on where it was. At the end the living are listed,
and the share of those noticed among those that change anything.

--sanitize builds with the sanitizers of the preset native: slower, and notices what only they see. --again runs the living
of the same choice once more, after tests were added.
"""

import argparse
import concurrent.futures
import glob
import hashlib
import json
import os
import pickle
import random
import re
import shlex
import shutil
import subprocess
import sys
import threading

import native_tests
import places
import schemata

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SANITIZERS = "address,undefined"


def sources(pattern):
    paths = [os.path.relpath(path, ROOT) for ending in ("cpp", "h")
             for path in glob.glob(os.path.join(ROOT, "src", "**", "*." + ending), recursive=True)]
    return [path for path in sorted(paths) if not path.startswith("src/platform/win32/") and re.search(pattern, path)]


def all_mutants(pattern):
    found = []
    for path in sources(pattern):
        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
            found += places.mutants_of(path, file.read().splitlines())
    return [mutant for mutant in found if mutant.before != mutant.after]


class Copy:
    """A copy of the project, built without sanitizers (unless told otherwise) and with the switches of mutants."""

    def __init__(self, root, sanitize):
        self.root = root
        self.build = os.path.join(root, "build", "mutant")
        self.sanitize = sanitize
        self.kept = set()  # files that hold mutants now

    def bring_up_to_date(self):
        listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True).stdout
        wanted = list(filter(None, listed.decode().split("\0")))
        for path in wanted:
            source, target = os.path.join(ROOT, path), os.path.join(self.root, path)
            if path not in self.kept and os.path.exists(source) and not _same(source, target):
                os.makedirs(os.path.dirname(target), exist_ok=True)
                shutil.copy2(source, target)
                os.utime(target)
        for folder in ("src", "tests/unit", "tests/scenarios", "fuzz", "tools"):  # the build looks into these
            for path in glob.glob(os.path.join(self.root, folder, "**", "*.*"), recursive=True):
                if os.path.isfile(path) and os.path.relpath(path, self.root) not in wanted:
                    os.remove(path)
        # The checks ask git for the files of the project, and would ask for those around this folder.
        _must(["git", "init", "-q", self.root])

    def write(self, path, text):
        """Puts a text in the place of a file of the copy."""
        self.kept.add(path)
        path = os.path.join(self.root, path)
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def configure(self):
        os.makedirs(self.build, exist_ok=True)
        here = os.path.join(self.root, "tools", "mutate")
        switch = os.path.join(self.build, "switch.o")
        _must(["g++", "-O1", "-c", os.path.join(here, "switch.cpp"), "-o", switch])
        linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
        _must(["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja", "-DCMAKE_CXX_COMPILER=g++",
               f"-DCMAKE_CXX_FLAGS=-O1 -w -include {here}/switch.h", f"-DCMAKE_EXE_LINKER_FLAGS={linker}",
               f"-DCMAKE_CXX_STANDARD_LIBRARIES={switch}", f"-DQXTERM_SANITIZE={SANITIZERS if self.sanitize else ''}"])

    def compile(self, jobs, keep_going=True):
        """What the compiler says, when it fails; else ""."""
        done = subprocess.run(["cmake", "--build", self.build, "--target", *native_tests.PROGRAMS, "-j", str(jobs), "--",
                               "-k", "0" if keep_going else "1"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
        return done.stdout if done.returncode != 0 else ""

    def check(self, jobs):
        """What the compiler says to the files of src/ before any is built: far quicker than building."""
        with open(os.path.join(self.build, "compile_commands.json"), encoding="utf-8") as file:
            entries = [entry for entry in json.load(file) if entry["file"].startswith(os.path.join(self.root, "src"))]

        def one(entry):
            command = [word for word in shlex.split(entry["command"]) if not word.endswith("ccache")]
            at = command.index("-o")
            command = command[:at] + command[at + 2:] + ["-fsyntax-only"]
            done = subprocess.run(command, cwd=entry["directory"], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                  text=True, errors="replace")
            return done.stderr if done.returncode != 0 else ""

        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            return "".join(pool.map(one, entries))

    def sums(self):
        sums = []
        for name in native_tests.PROGRAMS:
            with open(os.path.join(self.build, name), "rb") as file:
                sums.append(hashlib.sha256(file.read()).hexdigest())
        return sums


def _same(one, other):
    if not os.path.exists(other):
        return False
    with open(one, "rb") as first, open(other, "rb") as second:
        return first.read() == second.read()


def _must(command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"mutate: {' '.join(command)}:\n{done.stdout[-3000:]}")


PLACE = re.compile(r"^(?:In file included from |\s+from )?(\S+?):(\d+):(?:\d+:)?(?: (error|note|warning))?", re.MULTILINE)


def _refused(said, root):
    """The places that the compiler complains about: for each error the line, what asked for it, and the lines of its notes."""
    errors, current, asked = [], None, []
    for line in said.splitlines():
        match = PLACE.match(line)
        if not match:
            continue
        path = os.path.relpath(os.path.join(root, "build", "mutant", match[1]), root)
        place = (path, int(match[2]))
        if match[3] == "error":
            current = [place, *asked]
            errors.append(current)
            asked = []
        elif "required from" in line:
            asked.append(place)
        elif match[3] == "note" and current:
            current.append(place)
    return errors


class Many:
    """All mutants that can stand behind switches, in one build."""

    def __init__(self, numbered, work, sanitize, jobs):
        self.copy = Copy(os.path.join(work, "sanitized" if sanitize else "plain"), sanitize)
        self.left_out = set()
        self.jobs = jobs
        by_path = {}
        for number, mutant in numbered.items():
            by_path.setdefault(mutant.path, {})[number] = mutant
        os.makedirs(self.copy.root, exist_ok=True)
        self.copy.kept = set(by_path)
        self.copy.bring_up_to_date()
        for path in by_path:
            if not os.path.exists(os.path.join(self.copy.root, path)):
                os.makedirs(os.path.dirname(os.path.join(self.copy.root, path)), exist_ok=True)
                shutil.copy2(os.path.join(ROOT, path), os.path.join(self.copy.root, path))
        remembered = os.path.join(work, "left-out.json")  # compiling finds them one after the other
        if os.path.exists(remembered):
            with open(remembered, encoding="utf-8") as file:
                names = set(json.load(file))
            self.left_out = {number for number, mutant in numbered.items() if mutant.name() in names}
        changed = set(by_path)
        configured = False
        while True:
            for path in changed:
                with open(os.path.join(ROOT, path), encoding="utf-8") as file:
                    text = file.read()
                within = {number: mutant for number, mutant in by_path[path].items() if number not in self.left_out}
                schema = schemata.Schema(text, within)
                self.left_out |= set(schema.left_out)
                by_path[path] = {number: mutant for number, mutant in within.items() if number not in schema.left_out}
                self.copy.write(path, schema.source())
            if not configured:
                self.copy.configure()
                configured = True
            said = self.copy.check(jobs) or self.copy.compile(jobs)
            if not said:
                break
            schemes = {}
            changed = set()
            refused = [[place for place in group if place[0] in by_path] for group in _refused(said, self.copy.root)]
            # A header that is wrong makes those that include it look wrong.
            in_headers = [group for group in refused if group and group[0][0].endswith(".h")]
            for group in in_headers or refused:
                for path, line in group:
                    if path not in schemes:
                        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
                            schemes[path] = schemata.Schema(file.read(), by_path[path])
                    found = schemes[path].numbers_at(line)
                    if found:
                        self.left_out |= set(found)
                        changed.add(path)
                        break
            with open(remembered, "w", encoding="utf-8") as file:
                json.dump([numbered[number].name() for number in sorted(self.left_out)], file)
            print(f"{len(self.left_out)} cannot stand behind switches so far", flush=True)
            if not changed:
                sys.exit(f"mutate: the copy does not compile:\n{said[-5000:]}")
        self.tests = native_tests.Tests(self.copy.root, self.copy.build)
        self._measure(work, max(numbered) + 1)

    def _measure(self, work, size):
        known, path = self.copy.sums(), os.path.join(work, "reached.pickle")
        if os.path.exists(path):
            with open(path, "rb") as file:
                sums, tests, reached = pickle.load(file)
            names = {test.name for test in self.tests.all}
            if sums == known and names == {test.name for test in tests}:
                self.tests.all, self.reached = tests, reached
                return
        print(f"{len(self.tests.all)} tests: what does each reach?", flush=True)
        by_test = native_tests.measure(self.tests, self.jobs, os.path.join(work, "reached"), size)
        self.reached = {}
        for test in self.tests.all:
            for number in by_test[test.name]:
                self.reached.setdefault(number, []).append(test.name)
        with open(path, "wb") as file:
            pickle.dump((known, self.tests.all, self.reached), file)

    def judge(self, number, slow):
        """("noticed", by which test), ("alive", "") or None when it was never reached. By the quick tests, or for one that is
        alive by them by the slow ones."""
        names = set(self.reached.get(number, ()))
        tests = [test for test in self.tests.all if test.name in names]
        failed = self.tests.first_failure(tests, {"QXTERM_MUTANT": str(number)}, quick=not slow, slow=slow)
        if failed:
            return "noticed", failed
        return ("alive", f"{len(tests)} tests reach it") if slow and tests else None


class Single:
    """One mutant at a time, for those that cannot stand behind a switch: in the same copy, whose other files stay built."""

    def __init__(self, many):
        self.copy, self.tests = many.copy, many.tests

    def judge(self, mutant):
        with open(os.path.join(self.copy.root, mutant.path), encoding="utf-8") as file:
            switched = file.read()
        with open(os.path.join(ROOT, mutant.path), encoding="utf-8") as file:
            lines = file.read().split("\n")
        lines[mutant.line - 1] = mutant.after
        try:
            self.copy.write(mutant.path, "\n".join(lines))
            if self.copy.compile(os.cpu_count(), keep_going=False):
                return "no code", ""
            failed = self.tests.first_failure(self.tests.all, {})
            return ("noticed", failed) if failed else ("alive", "all tests pass")
        finally:
            self.copy.write(mutant.path, switched)


def named_mutants(path):
    """Changes written by hand: a file of [path, text that stands there once, what it becomes]; on one line each."""
    found = []
    with open(path, encoding="utf-8") as file:
        for source, text, other in json.load(file):
            with open(os.path.join(ROOT, source), encoding="utf-8") as changed:
                whole = changed.read()
            if whole.count(text) != 1:
                print(f"mutate: {source} holds {whole.count(text)} times: {text}", file=sys.stderr)
                continue
            lines, after = whole.split("\n"), whole.replace(text, other).split("\n")
            at = next(n for n, line in enumerate(lines) if line != after[n])
            left_out = after[at].strip() in ("", ";")
            indent = len(lines[at]) - len(lines[at].lstrip())
            found.append(places.Mutant(source, at + 1, "statement left out" if left_out else "by hand", lines[at],
                                       " " * indent + ";" if left_out else after[at]))
    return found


def done_before(path):
    if not os.path.exists(path):
        return {}
    with open(path, encoding="utf-8") as file:
        return {line["mutant"]: line for line in map(json.loads, file)}


def summary(results):
    counts = {}
    for result in results:
        counts[result["result"]] = counts.get(result["result"], 0) + 1
    for result in sorted(results, key=lambda one: one["mutant"]):
        if result["result"] == "alive":
            print("alive:", result["mutant"])
    changing = counts.get("noticed", 0) + counts.get("alive", 0)
    share = f"{100 * counts.get('noticed', 0) / changing:.1f} %" if changing else "none"
    print(", ".join(f"{name} {count}" for name, count in sorted(counts.items())))
    print(f"noticed of those that change anything: {share}")


def run_all(todo, judge, jobs, log, known):
    """Judges each of {number: mutant} and writes the results down."""
    writing = threading.Lock()

    def one(item):
        found = judge(*item)
        if found is None:
            return item
        line = {"mutant": item[1].name(), "result": found[0], "by": found[1]}
        with writing, open(log, "a", encoding="utf-8") as file:
            file.write(json.dumps(line) + "\n")
            known[item[1].name()] = line
        return None

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        return dict(filter(None, pool.map(one, todo.items())))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--files", default="", help="only files whose path fits this pattern")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--sanitize", action="store_true")
    parser.add_argument("--again", action="store_true", help="the living of the same choice once more")
    parser.add_argument("--work", default=os.path.join(ROOT, "build", "mutate"), help="where to build")
    parser.add_argument("--headers", action="store_true",
                        help="also those in headers that need a build of their own, each of nearly everything")
    parser.add_argument("--named", metavar="FILE", help="besides, changes written by hand (named_mutants)")
    parser.add_argument("--list", action="store_true", help="every mutant there is, without building any")
    arguments = parser.parse_args()
    mutants = all_mutants(arguments.files)
    if arguments.list:
        for mutant in mutants:
            print(mutant.name())
        return 0
    os.makedirs(arguments.work, exist_ok=True)
    chosen = random.Random(arguments.seed).sample(mutants, min(arguments.count, len(mutants)))
    if arguments.named:
        chosen += [mutant for mutant in named_mutants(arguments.named) if mutant not in chosen]
    numbered = dict(enumerate(chosen, 1))
    log = os.path.join(arguments.work, f"seed-{arguments.seed}.jsonl")
    known = done_before(log)
    again = {name for name, line in known.items() if arguments.again and line["result"] == "alive"}
    todo = {number: mutant for number, mutant in numbered.items()
            if mutant.name() not in known or mutant.name() in again}
    print(f"{len(chosen)} mutants of {len(mutants)}, {len(todo)} to do; {log}", flush=True)
    if todo:
        many = Many(numbered, arguments.work, arguments.sanitize, arguments.jobs)
        alone = {number: mutant for number, mutant in todo.items() if number in many.left_out}
        together = {number: mutant for number, mutant in todo.items() if number not in alone}
        print(f"{len(together)} in one build", flush=True)
        together = run_all(together, lambda number, _: many.judge(number, False), arguments.jobs, log, known)
        print(f"{len(together)} alive by the quick tests", flush=True)
        alone.update(run_all(together, lambda number, _: many.judge(number, True), arguments.jobs, log, known))
        print(f"{len(alone)} in builds of their own", flush=True)
        single = Single(many)
        if not arguments.headers:
            alone = {number: mutant for number, mutant in alone.items() if not mutant.path.endswith(".h")}
        run_all(dict(sorted(alone.items())), lambda _, mutant: single.judge(mutant), 1, log, known)
    nothing = {"result": "not judged"}
    summary([known.get(mutant.name(), {**nothing, "mutant": mutant.name()}) for mutant in chosen])
    return 0


if __name__ == "__main__":
    sys.exit(main())
