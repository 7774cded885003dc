#!/usr/bin/env python3
"""Instructions that the terminal takes for a byte of host output, counted by callgrind: no noise, no neighbours.

Usage: instructions.py BENCHMARKS RECORDINGS [--filter TEXT]
  BENCHMARKS   the benchmarks program
  RECORDINGS   the folder of recorded sessions, which are one payload together

Processing is counted, drawing into the picture included, starting the program is not.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

# What a payload is meant to take at most.
GOALS = {"y": 90, "colours": 28, "application": 27, "recorded": 24, "motion": 26, "plain": 13.5}


def payloads(program, recordings, folder):
    subprocess.run([program, "--write", folder], check=True)
    folder = pathlib.Path(folder)
    (folder / "recorded").write_bytes(b"".join(p.read_bytes() for p in sorted(pathlib.Path(recordings).glob("*.bin"))))
    return sorted(folder.iterdir())


def instructions(program, payload):
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", "--toggle-collect=*countedFeed*", f"--callgrind-out-file={folder}/out",
             program, "--feed", str(payload)], capture_output=True, text=True, check=False)
    found = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or found is None or found.group(1) == "0":
        sys.exit(f"instructions.py: callgrind failed on {payload.name}:\n{run.stderr}")
    return int(found.group(1))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("recordings")
    parser.add_argument("--filter", default="")
    arguments = parser.parse_args()
    print("Instructions a byte, 64 KiB blocks\n")
    print(f"{'payload':<14}{'instructions':>14}{'goal':>8}")
    with tempfile.TemporaryDirectory() as folder:
        for payload in payloads(arguments.program, arguments.recordings, folder):
            if arguments.filter not in payload.name:
                continue
            count = instructions(arguments.program, payload) / payload.stat().st_size
            print(f"{payload.name:<14}{count:>14.1f}{GOALS.get(payload.name, '-'):>8}", flush=True)


if __name__ == "__main__":
    main()
