"""Is it flat? The slope of each figure, and how long the window took to answer."""

import statistics
from dataclasses import dataclass

from figures import ANSWER

HOUR = 3600.0
LEAST = 5  # samples, for a slope that says something


@dataclass(frozen=True)
class Verdict:
    title: str
    found: str
    allowed: str
    good: bool


def slope(points):
    """Theil and Sen's estimate: the median of the slopes between any two points. Single samples do not move it.

    points: (x, y, kind). Only points of a kind are compared: what the phase before has left for a while, such as a thread
    of the system's that waits for more work, is then the same on both sides."""
    slopes = [(y2 - y1) / (x2 - x1) for n, (x1, y1, kind) in enumerate(points)
              for x2, y2, other in points[n + 1:] if x2 != x1 and other == kind]
    return statistics.median(slopes) if slopes else None


def kindOf(phase):
    """A phase without the number of its round."""
    return phase.split(" ", 1)[-1] if phase else ""


def percentile(values, share):
    """share: 0 to 1."""
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(share * len(ordered)))]


def judged(rows, figures, axis="seconds"):
    """A verdict for each figure. rows: those that are judged, at rest and behind the warm-up; each sitting has a slope of
    its own, and the one that has come nearest to its bound counts."""
    verdicts = []
    for figure in figures:
        worst, values = None, []
        for sitting in sorted({row["sitting"] for row in rows}):
            points = [(row[axis] / HOUR, row[figure.column], kindOf(row.get("phase"))) for row in rows
                      if row["sitting"] == sitting and row[figure.column] is not None]
            found = slope(points)
            if len(points) < LEAST or found is None:
                continue
            values += [y for _, y, _ in points]
            hours = points[-1][0] - points[0][0]
            # A slope over some minutes says little about an hour.
            bound = figure.grows * max(hours, 1) or 1
            one = (found * hours / bound, found * hours, bound)
            worst = one if worst is None else max(worst, one)
        verdicts.append(verdict(figure, worst, values))
    return verdicts


def verdict(figure, worst, values):
    """worst: the share of the bound, how much was grown, the bound."""
    if worst is None:
        return Verdict(figure.title, "too few samples", "", False)
    share, grown, bound = worst
    lowest, highest = min(values), max(values)
    unit = f" {figure.unit}" if figure.unit else ""
    where = f"{lowest:.0f}" if lowest == highest else f"{lowest:.0f} to {highest:.0f}"
    return Verdict(figure.title, f"{where}{unit}, grown by {grown:.1f}", f"less than {bound:.0f}{unit}", share < 1)


def answers(title, found, idle, share, stretch=1.0):
    """found, idle: milliseconds. stretch: how many times longer everything took because others had the processor. What the
    machine takes for the same without the program is allowed besides."""
    if len(found) < LEAST or not idle:
        return Verdict(title, "too few samples", "", False)
    allowed = ANSWER * stretch + percentile(idle, share)
    late = percentile(found, share)
    return Verdict(title, f"median {statistics.median(found):.1f} ms, {share * 100:g} % within {late:.1f} ms "
                   f"({len(found)} samples)", f"{share * 100:g} % within {allowed:.0f} ms", late <= allowed)


def answersOf(text):
    """Two lists of milliseconds from the asker's lines. No answer counts as one after ten seconds."""
    pairs = [tuple(10000.0 if word == "-1" else int(word) / 1000 for word in line.split())
             for line in text.splitlines() if len(line.split()) == 2]
    return [first for first, _ in pairs], [second for _, second in pairs]
