"""The native tests, as tools/mutate runs them: one program or many at a time, with limits, and stopping at the first that
fails."""

import glob
import os
import resource
import subprocess
import sys
import threading
from dataclasses import dataclass, field

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tools", "checks"))
import scenario_file  # noqa: E402

UNIT_TESTS = ("terminal-tests", "unit-tests")
PROGRAMS = ("terminal-tests", "unit-tests", "qxterm-scenario", "fuzz-replay")
MEMORY = 3 * 1024 ** 3  # bytes; a mutant may ask for ever more
WALL = 300  # seconds; for what waits for ever
QUICK = 0.03  # seconds: tests that run before all others


@dataclass
class Test:
    name: str
    kind: str  # "terminal-tests" or "unit-tests": many of them run in one process; "scenario"; "command"
    command: list = field(default_factory=list)
    seconds: float = 0.0  # of processor time, by the unchanged program
    output: bytes = b""  # of the unchanged program
    reached: int = 0  # how many mutants


class Tests:
    """The tests of one build folder. `root` is the tree whose scenarios, corpora and pages are used."""

    def __init__(self, root, build):
        self.root, self.build = root, build
        program = {name: os.path.join(build, name) for name in PROGRAMS}
        self._program, self._expected, self._lock = program, {}, threading.Lock()
        self.all = []
        for name in UNIT_TESTS:
            self.all += [Test(case, name) for case in self._cases(name)]
        scenarios = sorted(glob.glob(os.path.join(root, "tests", "scenarios", "**", "*.scn"), recursive=True))
        for path in scenarios:
            path = os.path.relpath(path, root)
            self.all.append(Test(path, "scenario", [program["qxterm-scenario"], "--lines", path]))
        python, scenario = sys.executable, program["qxterm-scenario"]
        for fuzzer in sorted(os.listdir(os.path.join(root, "fuzz", "corpus"))):
            self._command(f"fuzz-corpus/{fuzzer}", [program["fuzz-replay"], fuzzer, f"fuzz/corpus/{fuzzer}"])
        for recording in sorted(glob.glob(os.path.join(root, "tests", "recordings", "*.bin"))):
            name = os.path.basename(recording).removesuffix(".bin")
            self._command(f"recordings/{name}", [python, "tests/recordings/play.py", "--program", scenario, name])
        self._command("check/examples", [python, "tools/checks/check-examples.py", "--program", scenario])
        self._command("scenario/thousand-times", [python, "tests/reconnections/thousand_times.py", scenario])
        self._command("replay/pictures", [python, "tests/replay/test_pictures.py"])
        self._command("replay/round-trip", [python, "tests/replay/round_trip.py", scenario])

    def _command(self, name, command):
        self.all.append(Test(name, "command", command))

    def _cases(self, program):
        listed = subprocess.run([self._program[program], "--gtest_list_tests"], check=True, capture_output=True, text=True)
        suite = ""
        for line in listed.stdout.splitlines():
            name = line.split("#")[0].rstrip()
            if name.startswith("  "):
                yield suite + name.strip()
            elif name.endswith("."):
                suite = name

    def _run(self, command, seconds, environment):
        """(exit status or None when a limit was met, what was printed, processor time)."""
        limit = int(2 + 5 * seconds)

        def limits():
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit + 1))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        process = subprocess.Popen(command, cwd=self.root, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, preexec_fn=limits, start_new_session=True,
                                   env={**os.environ, **environment})
        late = threading.Timer(WALL, lambda: _end(process))
        late.start()
        try:
            chunks, size = [], 0
            while chunk := process.stdout.read(1 << 16):
                size += len(chunk)
                if size > 200 << 20:  # bytes: it prints for ever
                    _end(process)
                    break
                chunks.append(chunk)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            return process.returncode, b"".join(chunks), usage.ru_utime + usage.ru_stime
        finally:
            late.cancel()
            _end(process)
            process.stdout.close()

    def _passes_scenario(self, test, status, output):
        if output == test.output and status in (0, 2):
            return True
        return not _scenario_run(test, status, output, self.root, self._expected)

    def run_one(self, test, environment):
        """(whether it passes, its processor time, what it printed)"""
        command = test.command
        if test.kind in UNIT_TESTS:
            command = [self._program[test.kind], "--gtest_brief=1", f"--gtest_filter={test.name}"]
        environment = {**environment, "QXTERM_SCENARIO": self._program["qxterm-scenario"]}
        status, output, seconds = self._run(command, test.seconds, environment)
        passed = self._passes_scenario(test, status, output) if test.kind == "scenario" else status == 0
        return passed, seconds, output

    def first_failure(self, tests, environment, quick=True, slow=True):
        """The name of a test that fails, or "". Those that are likeliest to notice come first: what reaches little is about
        what it reaches."""
        ordered = sorted((test for test in tests if test.seconds <= QUICK), key=lambda test: (test.reached, test.name))
        units = {program: [test for test in ordered if test.kind == program] for program in UNIT_TESTS}
        others = [test for test in ordered if test.kind not in UNIT_TESTS]
        steps = []
        if quick:
            for first, last in ((0, 10), (10, 60), (60, len(ordered))):
                steps += [(program, units[program][first:last]) for program in UNIT_TESTS]
                steps += [("", [test]) for test in others[first:last]]
        if slow:
            heavy = sorted((test for test in tests if test.seconds > QUICK), key=lambda test: test.seconds)
            steps += [("", [test]) for test in heavy]
        for program, group in steps:
            if program and group:
                failed = self._first_case(program, group, environment)
            else:
                failed = next((test.name for test in group if not self.run_one(test, environment)[0]), "")
            if failed:
                return failed
        return ""

    def _first_case(self, program, cases, environment):
        names = ":".join(test.name for test in cases)
        command = [self._program[program], "--gtest_fail_fast", f"--gtest_filter={names}"]
        status, output, _ = self._run(command, sum(test.seconds for test in cases), environment)
        if status == 0:
            return ""
        last = ""  # the test that ran when the program ended
        for line in output.decode("utf-8", "replace").splitlines():
            if line.startswith("[  FAILED  ] "):
                return line[len("[  FAILED  ] "):].split(" (")[0].split(",")[0]
            if line.startswith("[ RUN      ] "):
                last = line[len("[ RUN      ] "):]
        return last or program


def _end(process):
    try:
        os.killpg(process.pid, 9)
    except ProcessLookupError:
        pass


def _scenario_run(test, status, output, root, expected):
    """What differs from the scenario's file, as run-scenario.py sees it."""
    import importlib
    run_scenario = importlib.import_module("run-scenario")
    if test.name not in expected:
        commands = scenario_file.read(os.path.join(root, test.name))
        expected[test.name] = [[run_scenario.canonical(item) for item in command.expected()] for command in commands]
    with_fault = [run_scenario.canonical(item) for item in _objects(output)]
    wanted = [item for items in expected[test.name] for item in items]
    faults = [item for item in wanted if '"event": "fault"' in item]
    if status not in (0, 2) or (status == 2) != bool(faults):
        return True
    return with_fault != [item for item in wanted if item not in faults]


def _objects(output):
    import json
    for text in output.decode("utf-8", "replace").split("\n"):
        if text.strip():
            try:
                item = json.loads(text)
            except ValueError:
                yield {"no JSON": text}
                continue
            if not (isinstance(item, dict) and list(item) == ["file", "line"]):
                yield item


def measure(tests, jobs, watch_file, size):
    """Runs each test alone with the unchanged program. {name of the test: numbers of the mutants that it reaches}; stops
    when a test fails. Each worker has a file of its own."""
    import concurrent.futures
    import queue
    files = queue.Queue()
    for number in range(jobs):
        files.put(f"{watch_file}.{number}")

    def one(test):
        path = files.get()
        try:
            with open(path, "wb") as file:
                file.truncate(size)
            passed, test.seconds, output = tests.run_one(test, {"QXTERM_MUTANTS_REACHED": path})
            if test.kind == "scenario":
                test.output = output
            with open(path, "rb") as file:
                reached = [number for number, byte in enumerate(file.read()) if byte]
            return passed, reached
        finally:
            files.put(path)

    found = {}
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for test, (passed, reached) in zip(tests.all, pool.map(one, tests.all)):
            if not passed:
                print(f"mutate: without any change {test.name} fails; it is left out", file=sys.stderr)
                continue
            found[test.name] = reached
            test.reached = len(reached)
    tests.all = [test for test in tests.all if test.name in found]
    return found
