#!/usr/bin/env python3
"""Would the tests notice? Changes one place of the sources at a time and runs the native tests.

    tools/mutate/mutate.py [--count N] [--seed S] [--files REGEX] [--jobs J] [--sanitize]
    tools/mutate/mutate.py --list [--files REGEX]

Takes N places at random (200) in src/ without src/platform/win32, each in a copy of the project in build/mutate/. A
mutant is "noticed" when a test fails or does not end, "nothing" when the programs built from it are those built without it, "no
code" when it does not compile, and else "alive". Each result is a line of build/mutate/seed-S.jsonl; what stands there
already is not done again, so that an interrupted run goes on where it was. At the end the living are listed, and the share
of those noticed among those that change anything.

--sanitize builds with the sanitizers of the preset native: slower, and notices what only they see. Run the living again
so: --again FILE.jsonl takes the living of such a file instead of a random choice.
"""

import argparse
import concurrent.futures
import glob
import hashlib
import json
import os
import queue
import random
import re
import resource
import shutil
import subprocess
import sys
import threading

import places

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
WORK = os.path.join(ROOT, "build", "mutate")
PROGRAMS = ("terminal-tests", "unit-tests", "qxterm-scenario", "fuzz-replay")
MEMORY = 4 * 1024 ** 3  # bytes; a mutant may ask for ever more
PATIENCE = 120  # seconds; what takes longer goes round for ever
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
    """A copy of the project that mutants are built in, one at a time."""

    def __init__(self, number, sanitize):
        self.root = os.path.join(WORK, f"{'sanitized' if sanitize else 'plain'}-{number}")
        self.build = os.path.join(self.root, "build", "mutant")
        self.sanitize = sanitize
        self._bring_up_to_date()
        os.makedirs(self.build, exist_ok=True)
        flags = ["-DCMAKE_CXX_FLAGS=-O1 -w", f"-DQXTERM_SANITIZE={SANITIZERS if sanitize else ''}"]
        self._must(["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja", *flags])
        self._must(["cmake", "--build", self.build, "--target", *PROGRAMS])
        self.unchanged = self._sums()
        failed = self._first_failure()
        if failed:
            sys.exit(f"mutate: without any change {failed} fails")

    def _bring_up_to_date(self):
        listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True).stdout
        for path in filter(None, listed.decode().split("\0")):
            source, target = os.path.join(ROOT, path), os.path.join(self.root, path)
            with open(source, "rb") as file:
                wanted = file.read()
            if os.path.exists(target):
                with open(target, "rb") as file:
                    if file.read() == wanted:
                        continue
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy2(source, target)
            os.utime(target)
        # The checks ask git for the files of the project, and would ask for those around this folder.
        self._must(["git", "init", "-q", self.root])

    def _must(self, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            sys.exit(f"mutate: {' '.join(command)}:\n{done.stdout[-3000:]}")

    def _sums(self):
        sums = []
        for name in PROGRAMS:
            with open(os.path.join(self.build, name), "rb") as file:
                sums.append(hashlib.sha256(file.read()).hexdigest())
        return sums

    def _passes(self, command):
        def limit():
            if not self.sanitize:  # they reserve far more than they use
                resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

        process = subprocess.Popen(command, cwd=self.root, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, preexec_fn=limit, start_new_session=True)
        try:
            return process.wait(PATIENCE * (4 if self.sanitize else 1)) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, 9)
            except ProcessLookupError:
                pass
            process.wait()

    def _first_failure(self):
        program = {name: os.path.join(self.build, name) for name in PROGRAMS}
        gtest = ["--gtest_brief=1", "--gtest_fail_fast"]
        python = sys.executable
        steps = [("terminal-tests", [program["terminal-tests"], *gtest]), ("unit-tests", [program["unit-tests"], *gtest]),
                 ("scenarios", [python, "tools/checks/run-scenario.py", "--program", program["qxterm-scenario"], "--jobs", "1",
                                "--all", "tests/scenarios"])]
        for fuzzer in sorted(os.listdir(os.path.join(self.root, "fuzz", "corpus"))):
            steps.append((f"fuzz-replay {fuzzer}", [program["fuzz-replay"], fuzzer, f"fuzz/corpus/{fuzzer}"]))
        steps += [("examples", [python, "tools/checks/check-examples.py", "--program", program["qxterm-scenario"]]),
                  ("help", [python, "tools/checks/check-help.py", "--program", program["qxterm-scenario"]]),
                  ("thousand-times", [python, "tests/reconnections/thousand_times.py", program["qxterm-scenario"]])]
        for name, command in steps:
            if not self._passes(command):
                return name
        return ""

    def judge(self, mutant):
        """What becomes of a mutant, and which tests noticed it."""
        path = os.path.join(self.root, mutant.path)
        with open(path, encoding="utf-8") as file:
            text = file.read()
        lines = text.split("\n")
        if lines[mutant.line - 1] != mutant.before:
            return "stale", ""
        lines[mutant.line - 1] = mutant.after
        try:
            with open(path, "w", encoding="utf-8") as file:
                file.write("\n".join(lines))
            built = subprocess.run(["cmake", "--build", self.build, "--target", *PROGRAMS, "-j", "1"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            if built.returncode != 0:
                return "no code", ""
            if self._sums() == self.unchanged:
                return "nothing", ""
            failed = self._first_failure()
            return ("noticed", failed) if failed else ("alive", "")
        finally:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)


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


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--files", default="", help="only files whose path fits this pattern")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--sanitize", action="store_true")
    parser.add_argument("--again", metavar="FILE", help="the living of such a file")
    parser.add_argument("--list", action="store_true", help="every mutant there is, without building any")
    arguments = parser.parse_args()
    mutants = all_mutants(arguments.files)
    if arguments.list:
        for mutant in mutants:
            print(mutant.name())
        return 0
    os.makedirs(WORK, exist_ok=True)
    if arguments.again:
        living = {name for name, line in done_before(arguments.again).items() if line["result"] == "alive"}
        chosen = [mutant for mutant in mutants if mutant.name() in living]
        log = arguments.again.removesuffix(".jsonl") + ("-sanitized" if arguments.sanitize else "-again") + ".jsonl"
    else:
        chosen = random.Random(arguments.seed).sample(mutants, min(arguments.count, len(mutants)))
        log = os.path.join(WORK, f"seed-{arguments.seed}.jsonl")
    known = done_before(log)
    todo = [mutant for mutant in chosen if mutant.name() not in known]
    print(f"{len(chosen)} mutants of {len(mutants)}, {len(todo)} to do; {log}", flush=True)

    copies = queue.Queue()
    for number in range(min(arguments.jobs, len(todo))):
        copies.put(Copy(number, arguments.sanitize))
    writing = threading.Lock()

    def judge(mutant):
        copy = copies.get()
        try:
            result, by = copy.judge(mutant)
        finally:
            copies.put(copy)
        line = {"mutant": mutant.name(), "result": result, "by": by}
        with writing, open(log, "a", encoding="utf-8") as file:
            file.write(json.dumps(line) + "\n")
            known[mutant.name()] = line

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        list(pool.map(judge, todo))
    summary([known[mutant.name()] for mutant in chosen])
    return 0


if __name__ == "__main__":
    sys.exit(main())
