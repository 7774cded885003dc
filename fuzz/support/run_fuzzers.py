#!/usr/bin/env python3
"""Runs fuzzers for some minutes of processor time each, merges what they found into their corpora, and tells what came
out. fuzz/run builds them and calls this.

Usage: run_fuzzers.py [--jobs N] [--minutes N] FUZZER ...
"""

import argparse
import concurrent.futures
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

BUILD = "build/fuzz"
FOUND = f"{BUILD}/found"
GIVEN_BY_HAND = re.compile(r"[0-9a-f]{40}$")  # libFuzzer names an input by its hash: all others are given
SLICE = 5 * 60  # seconds of processor time of one run; a fuzzer's table of inputs is read anew with each


stopping = threading.Event()  # asked to end: what has been done counts, and is kept


class Fuzzer:
    def __init__(self, name):
        self.name = name
        self.program = os.path.abspath(f"{BUILD}/{name}")
        self.corpus = os.path.abspath(f"fuzz/corpus/{name}")
        self.dictionary = os.path.abspath(f"fuzz/dictionaries/{name}.dict")
        self.found = os.path.abspath(f"{FOUND}/{name}")
        self.inputs = f"{self.found}/inputs"
        self.totals = f"{self.found}/totals.json"
        self.seconds = 0.0  # of this sitting
        for folder in (self.corpus, self.inputs):
            os.makedirs(folder, exist_ok=True)
        # Of all sittings: sixty minutes may be three times twenty.
        self.total = {"seconds": 0.0, "runs": 0, "edges": 0, "features": 0}
        if os.path.exists(self.totals):
            with open(self.totals, encoding="ascii") as file:
                self.total |= json.load(file)

    def options(self):
        options = ["-timeout=600", "-report_slow_units=600", "-rss_limit_mb=2048", "-print_final_stats=1", f"-artifact_prefix={self.found}/"]
        if os.path.exists(self.dictionary):
            options.append(f"-dict={self.dictionary}")
        return options

    def findings(self):
        return sorted(
            name for name in os.listdir(self.found) if re.match(r"(crash|leak|timeout|oom)-", name)
        )

    def run(self, seconds):
        """One run of so many seconds of processor time. False when it found something."""
        log = f"{self.found}/log-{time.time_ns()}.txt"
        with open(log, "wb") as output:
            process = subprocess.Popen(
                [self.program, *self.options(), self.inputs, self.corpus],
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
                cwd=self.found,
                preexec_fn=lambda: os.nice(19),
                start_new_session=True,  # a key that stops this program does not reach it
            )
            while processor_seconds(process.pid) < seconds and not stopping.wait(1):
                pass
            os.kill(process.pid, signal.SIGINT)  # not by Popen, which would wait for one that has ended
            usage = wait(process)
        self.seconds += usage
        self.total["seconds"] += usage
        self.read(log)
        with open(self.totals, "w", encoding="ascii") as file:
            json.dump(self.total, file)
        return not self.findings()

    def read(self, log):
        with open(log, encoding="latin-1") as file:
            text = file.read()
        for runs in re.findall(r"number_of_executed_units: (\d+)", text):
            self.total["runs"] += int(runs)
        for edges, features in re.findall(r"cov: (\d+) ft: (\d+)", text):
            self.total["edges"] = max(self.total["edges"], int(edges))
            self.total["features"] = max(self.total["features"], int(features))

    def minimise(self):
        """The corpus becomes a small set of inputs that reaches every edge reached, and those with a name of their own."""
        kept = f"{self.found}/kept"
        shutil.rmtree(kept, ignore_errors=True)
        os.makedirs(kept)
        for name in os.listdir(self.corpus):
            if not GIVEN_BY_HAND.match(name):
                shutil.copy(f"{self.corpus}/{name}", f"{kept}/{name}")
        subprocess.run(
            [self.program, "-set_cover_merge=1", "-use_counters=0", "-timeout=600", "-rss_limit_mb=2048", kept, self.corpus, self.inputs],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            cwd=self.found,
            preexec_fn=lambda: os.nice(19),
            check=False,
        )
        for name in os.listdir(self.corpus):
            os.remove(f"{self.corpus}/{name}")
        for name in os.listdir(kept):
            shutil.copy(f"{kept}/{name}", f"{self.corpus}/{name}")

    def line(self):
        return (
            f"{self.name:17} {self.seconds / 60:7.1f} {self.total['seconds'] / 60:7.1f} {self.total['runs']:10} "
            f"{self.total['edges']:6} {self.total['features']:8} {len(os.listdir(self.corpus)):7} {len(self.findings()):9}"
        )


def processor_seconds(pid):
    """What a process has used of the processor so far; without end for one that has ended and is not waited for."""
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    if fields[0] == "Z":
        return float("inf")
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def wait(process):
    """The processor seconds of a process that ends."""
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return usage.ru_utime + usage.ru_stime


def fuzz(fuzzer, minutes):
    while fuzzer.seconds < minutes * 60 and not stopping.is_set():
        if not fuzzer.run(min(SLICE, minutes * 60 - fuzzer.seconds)):
            break
    if minutes == 0 or fuzzer.seconds > 0:
        fuzzer.minimise()
    print(fuzzer.line(), flush=True)


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--jobs", type=int, default=2)
    options.add_argument("--minutes", type=int, default=0)
    options.add_argument("fuzzers", nargs="+")
    chosen = options.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda *_: stopping.set())
    print(f"{'fuzzer':17} {'minutes':>7} {'in all':>7} {'runs':>10} {'edges':>6} {'features':>8} {'inputs':>7} {'findings':>9}", flush=True)
    fuzzers = [Fuzzer(name) for name in chosen.fuzzers]
    with concurrent.futures.ThreadPoolExecutor(chosen.jobs) as pool:
        for done in [pool.submit(fuzz, fuzzer, chosen.minutes) for fuzzer in fuzzers]:
            done.result()
    return 1 if any(fuzzer.findings() for fuzzer in fuzzers) else 0


if __name__ == "__main__":
    sys.exit(main())
