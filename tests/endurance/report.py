"""Judges a run, draws its chart, and writes its figures into docs/endurance.md."""

import statistics
from pathlib import Path

import samples
from chart import chart
from figures import SCENARIO, WINDOW
from judgement import Verdict, answers, answersOf, judged, percentile

ROOT = Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "endurance.md"
CHART = ROOT / "docs" / "endurance.svg"
BEGIN, END = "<!-- written by ./endure: begin -->", "<!-- written by ./endure: end -->"
WARM_SCENARIO = 0.4 * 3600  # seconds of virtual time in which the scrollback fills
SHARE = 0.95  # of the answers that have to be in time


def roundOf(row):
    return int(row["phase"].split(" ", 1)[0])


def judgedWindow(run):
    """Verdicts on the sittings in the window."""
    resting = [row for row in samples.rows(run.path("window.csv")) if row["rest"]]
    rows = [row for row in samples.withElsewhere(resting) if roundOf(row) > 1]
    verdicts = judged(rows, WINDOW)
    found, idle, keys = [], [], []
    for sitting in run.sittings("window"):
        number = sitting["number"]
        one, other = answersOf(readText(run.path(f"answers-{number}.txt")))
        found, idle = found + one, idle + other
        keys += [float(line) for line in readText(run.path(f"keys-{number}.txt")).split()]
    stretch = stretched(run.sittings("window"))
    verdicts.append(answers("the window answers a message", found, idle, SHARE, stretch))
    verdicts.append(answers("a key reaches the host", keys, idle, SHARE, stretch))
    late = f"; 99 % within {percentile(found, 0.99):.0f} ms, the longest {max(found):.0f} ms" if found else ""
    verdicts[-2] = Verdict(verdicts[-2].title, verdicts[-2].found + late, verdicts[-2].allowed, verdicts[-2].good)
    return verdicts + [failures(run.sittings("window"))]


def judgedScenario(run):
    rows = samples.rows(run.path("scenario.csv"))
    kept = []
    for sitting in {row["sitting"] for row in rows}:
        own = [row for row in rows if row["sitting"] == sitting]
        kept += [row for row in own if row["virtual"] >= WARM_SCENARIO]
    return [*judged(kept, SCENARIO, axis="virtual"), failures(run.sittings("scenario"))]


def stretched(sittings):
    """How many times longer the window's thread took because it waited for a processor."""
    ran = sum(one.get("ran", 0) for one in sittings)
    return (ran + sum(one.get("waited", 0) for one in sittings)) / ran if ran else 1.0


def failures(sittings):
    count = sum(len(sitting["failures"]) for sitting in sittings)
    return Verdict("failures on the way", str(count), "none", count == 0)


def readText(path):
    return path.read_text() if path.exists() else ""


def table(verdicts):
    lines = ["| | found | allowed | |", "|---|---|---|---|"]
    lines += [f"| {one.title} | {one.found} | {one.allowed} | {'good' if one.good else '**not good**'} |" for one in verdicts]
    return lines


def told(run, window, scenario):
    """The page's figures, as Markdown."""
    lines = ["![Memory, objects, timers, processes and answers over the run](endurance.svg)", ""]
    sittings = run.sittings("window")
    if sittings:
        hours = sum(one["seconds"] for one in sittings) / 3600
        lines += ["### In the window", "",
                  f"**{hours:.2f} hours in {counted(len(sittings), 'sitting')}**, of the four that are wanted"
                  f"{' and done' if hours >= 4 else ''}; program {run.known['build']}.", ""]
        lines += [sittingLine(run, one) for one in sittings]
        lines += ["", *table(window), ""]
        lines += [f"- Failure: {text.splitlines()[0]}" for one in sittings for text in one["failures"]]
        lines += [f"- Sitting {one['number']} had no sessions through SSH: {one['without']}." for one in sittings
                  if one.get("without")]
    sittings = run.sittings("scenario")
    if sittings:
        lines += ["", "### In the scenario tool", ""]
        for one in sittings:
            lines.append(f"- {one['date']}, seed {one['seed']}: {one['events']} events in {one['virtual'] / 3600:.2f} hours "
                         f"of virtual time, {one['printed']} objects printed, in {one['seconds']:.0f} s.")
        lines += ["", *table(scenario), ""]
        lines += [f"- Failure: {text.splitlines()[0]}" for one in sittings for text in one["failures"]]
    return "\n".join(line for line in lines).strip() + "\n"


def counted(number, word):
    return f"{number} {word}{'' if number == 1 else 's'}"


def sittingLine(run, one):
    loads = [row["load"] for row in samples.rows(run.path("window.csv"))
             if row["sitting"] == one["number"] and row["load"] is not None]
    load = f"; the machine's load was {statistics.median(loads):.1f}, at most {max(loads):.1f}" if loads else ""
    if one.get("ran"):
        load += f", and the window's thread waited {one['waited'] / one['ran']:.1f} times as long for a processor as it had one"
    remark = f" {one['remark']}" if one.get("remark") else ""
    return (f"- Sitting {one['number']}, {one['date']}, {one['machine']}, seed {one['seed']}: {one['seconds'] / 60:.0f} minutes, "
            f"{counted(one.get('rounds', 0), 'round')}, {one.get('received', 0) / 1e9:.1f} GB of output, "
            f"{counted(one.get('sessions', 0), 'session')}, {sum(one.get('actions', {}).values())} things that the user did, "
            f"{one.get('typed', 0)} bytes typed and pasted{load}.{remark}")


def report(run, write):
    """Prints the verdicts, and writes page and chart when told to. True when all is good."""
    window = judgedWindow(run) if run.sittings("window") else []
    scenario = judgedScenario(run) if run.sittings("scenario") else []
    if not window and not scenario:
        print(f"There are no samples in {run.folder}.")
        return False
    for title, verdicts in (("In the window", window), ("In the scenario tool", scenario)):
        if verdicts:
            print(f"\n{title}:")
        for one in verdicts:
            print(f"  {'good    ' if one.good else 'NOT GOOD'}  {one.title}: {one.found} (allowed: {one.allowed})")
    drawing = chart(samples.rows(run.path("window.csv")), samples.rows(run.path("scenario.csv")))
    text = told(run, window, scenario)
    if write:
        CHART.write_text(drawing)
        page = PAGE.read_text()
        head, rest = page.split(BEGIN)
        PAGE.write_text(f"{head}{BEGIN}\n\n{text}\n{END}{rest.split(END)[1]}")
    else:
        run.path("endurance.svg").write_text(drawing)
        run.path("endurance.md").write_text(text)
    return all(one.good for one in window + scenario)
