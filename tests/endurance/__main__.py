"""./endure: hours of work in the window and in the scenario tool, and whether everything stays flat."""

import argparse
import datetime
import hashlib
import json
import os
import platform
import random
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path.insert(0, str(HERE))
import report  # noqa: E402
import scenario  # noqa: E402
from samples import Run  # noqa: E402

SETUP = ROOT / "tools" / "setup"
TOOL = ROOT / "build" / "release" / "qxterm-scenario"
PROBE = "qxterm-probe.exe"

# A round's measures. A gigabyte of each kind, and enough of the rest; and those of a trial.
WHOLE = {"every": 10, "megabytes": 1000, "reconnections": 20, "actions": 20, "serial": 20}
TRIAL = {"every": 5, "megabytes": 50, "reconnections": 8, "actions": 8, "serial": 5}
EVENTS, VIRTUAL_HOURS = 1_000_000, 8.0
TRIAL_SHARE = 0.1  # of them in a trial
PARTS = ("window", "scenario", "report")


def parsed():
    parser = argparse.ArgumentParser(
        prog="./endure", formatter_class=argparse.RawDescriptionHelpFormatter, description=__doc__,
        epilog="Samples are kept in build/endurance/. A run of the same program goes on where the last one ended: --hours 2 "
               "today and --hours 2 tomorrow are four hours in two sittings; another build begins anew, and puts the "
               "samples before aside. At the end docs/endurance.svg and the figures in docs/endurance.md are written anew "
               "(a trial's go to build/endurance-trial/). Exit status 0: all is flat, in time, and shown rightly.")
    parser.add_argument("--hours", type=float, help="how long the sitting in the window lasts (4)")
    parser.add_argument("--quick", action="store_true", help="a trial of some minutes, with samples of its own")
    parser.add_argument("--only", choices=PARTS, action="append", help="this part alone; may be repeated. report: judge and "
                        "draw what is there")
    parser.add_argument("--new", action="store_true", help="do not go on with the run that is there")
    parser.add_argument("--seed", type=int, help="of what the user and the hosts do (one of its own each time)")
    parser.add_argument("--remark", metavar="TEXT", help="what the page says about the last sitting in the window")
    parser.add_argument("--samples", type=Path, metavar="FOLDER", help="where the samples are kept (build/endurance)")
    arguments = parser.parse_args()
    if arguments.hours is not None and arguments.hours <= 0:
        parser.error("--hours: more than 0 is wanted")
    arguments.hours = arguments.hours or (0.1 if arguments.quick else 4.0)
    arguments.samples = (arguments.samples or ROOT / "build" / ("endurance-trial" if arguments.quick else "endurance")).resolve()
    return arguments


def windowsBuild():
    return Path(os.environ.get("QXTERM_BUILD", ROOT / "build" / "windows"))


def buildOf():
    """What tells one build of the program from another."""
    return hashlib.sha256((windowsBuild() / PROBE).read_bytes() + TOOL.read_bytes()).hexdigest()[:12]


def machine():
    wine = subprocess.run(["bash", "-c", f"source {SETUP}/wine-env.sh && $WINE --version"], capture_output=True, text=True)
    return f"{os.cpu_count()} cores, {platform.freedesktop_os_release().get('PRETTY_NAME', 'Linux')}, {wine.stdout.strip()}"


def noted(part, run, told):
    today = datetime.datetime.now(datetime.timezone.utc).date().isoformat()
    run.add({"part": part, "number": len(run.sittings(part)) + 1, "date": today, "machine": machine(), **told})
    for failure in told["failures"]:
        print(f"FAILED {failure}", flush=True)


def playWindow(run, plan, arguments, seed):
    number = len(run.sittings("window")) + 1
    result = run.path(f"sitting-{number}.json")
    result.unlink(missing_ok=True)
    words = [str(word) for name, value in {**plan, "hours": arguments.hours, "seed": seed, "sitting": number,
                                           "folder": run.folder}.items() for word in (f"--{name}", value)]
    environment = dict(os.environ, QXTERM_BUILD=str(windowsBuild()))
    subprocess.run([SETUP / "with-display.sh", SETUP / "with-prefix.sh", sys.executable, HERE / "window.py", *words],
                   env=environment, stdin=subprocess.DEVNULL, check=False)
    if result.exists():
        noted("window", run, json.loads(result.read_text()))
    else:
        sys.exit("the sitting in the window ended without a word")


def main():
    arguments = parsed()
    parts = arguments.only or PARTS
    run = Run(arguments.samples)
    if "window" in parts or "scenario" in parts:
        run.begin(buildOf(), arguments.new or arguments.quick)
    seed = arguments.seed if arguments.seed is not None else random.randrange(1 << 30)
    if "window" in parts:
        print(f"== In the window, {arguments.hours:g} hours, seed {seed}", flush=True)
        playWindow(run, TRIAL if arguments.quick else WHOLE, arguments, seed)
    if "scenario" in parts:
        share = TRIAL_SHARE if arguments.quick else 1
        print(f"== In the scenario tool, {VIRTUAL_HOURS * share:g} hours of virtual time, seed {seed}", flush=True)
        number = len(run.sittings("scenario")) + 1
        noted("scenario", run, scenario.play(TOOL, run.folder, number, seed, int(EVENTS * share), VIRTUAL_HOURS * share))
    if arguments.remark is not None and run.sittings("window"):
        run.sittings("window")[-1]["remark"] = arguments.remark
        run.save()
    good = report.report(run, write=arguments.samples == ROOT / "build" / "endurance")
    sys.exit(0 if good else 1)


main()
