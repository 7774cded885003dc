"""Draws the samples of a run: docs/endurance.svg."""

import statistics
from html import escape

from judgement import kindOf

WIDTH, LEFT, RIGHT = 960, 64, 20  # pixels
PANEL, GAP, HEAD = 110, 46, 54
BUCKETS = 120  # points of a line at most
HOUR = 3600.0
COLOURS = ("#1f5fa8", "#c2571a", "#2e7d32", "#8e3b97", "#6b6b6b")
PHASES = {"y lines": "#cfe3f7", "no line end": "#d9f0dd", "recorded": "#fbe5cf", "reconnections": "#f6d5dc",
          "by hand": "#e9dcf3", "serial": "#fdf3c4", "loop": "#d5eeee", "ssh": "#e3e3e3"}
MIB = 1024.0  # KiB


def chart(window, scenario):
    """window, scenario: the samples. Returns the drawing."""
    window, ends = joined(window, "seconds")
    scenario, scenarioEnds = joined(scenario, "virtual")
    bands = phaseBands(window)
    parts, y = [], HEAD
    if window:
        parts.append(heading(y - 30, "In the window: hours of the clock; each colour is a phase"))
        parts.append(phaseKey(y - 14))
        for title, lines, line in windowPanels(window):
            parts.append(panel(y + 18, title, lines, bands, ends, line))
            y += PANEL + GAP
        y += HEAD
    if scenario:
        parts.append(heading(y - 20, "In qxterm-scenario: hours of virtual time"))
        for title, lines, line in scenarioPanels(scenario):
            parts.append(panel(y + 18, title, lines, [], scenarioEnds, line))
            y += PANEL + GAP
    height = y + 10
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" height="{height}" '
            'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="#ffffff"/>\n'
            + "".join(parts) + "</svg>\n")


def windowPanels(rows):
    def of(column, scale=1.0):
        return [(row["x"], row[column] / scale) for row in rows if row[column] is not None]

    yield "memory, MiB", {"resident": of("resident", MIB), "private": of("private", MIB),
                          "Wine's server": of("server", MIB), "asked of the heaps": of("heap", MIB)}, None
    yield "objects", {"GDI objects": of("gdi"), "handles": of("handles"), "USER objects": of("user"),
                      "Unix file descriptors": of("files")}, None
    yield "timers, threads, processes", {"timers of the system": of("timers"), "of the registry": of("registry"),
                                         "threads": of("threads"), "helper processes": of("helpers")}, None
    yield "the window's answer, ms (1 of 100 takes longer)", {"window": of("answer99"),
                                                              "an idle one beside it": of("idle99")}, 100
    yield "output received, GB", {"since the sitting began": of("received", 1e9)}, None
    yield "load of the machine", {"processes that want to run": of("load")}, None


def scenarioPanels(rows):
    def of(column, scale=1.0):
        return [(row["x"], row[column] / scale) for row in rows if row[column] is not None]

    yield "memory, MiB", {"resident": of("resident", MIB), "private": of("private", MIB)}, None
    yield "objects", {"timers of the registry": of("registry"), "forms": of("forms"), "sockets": of("sockets"),
                      "serial ports": of("ports"), "helper processes": of("helpers")}, None
    yield "lines of the scrollback", {"lines": of("lines")}, None


def joined(rows, axis):
    """The samples of all sittings one behind the other, with their place on the axis in hours; and where each sitting
    ended."""
    placed, start, ends = [], 0.0, []
    for sitting in sorted({row["sitting"] for row in rows}):
        own = [row for row in rows if row["sitting"] == sitting]
        placed += [row | {"x": start + row[axis] / HOUR} for row in own]
        start = placed[-1]["x"]
        ends.append(start)
    return placed, ends


def phaseBands(rows):
    """[(from, to, kind)] in hours."""
    bands = []
    for row, following in zip(rows, rows[1:]):
        kind = kindOf(following["phase"])
        if bands and bands[-1][2] == kind:
            bands[-1][1] = following["x"]
        else:
            bands.append([row["x"], following["x"], kind])
    return bands


def thinned(points, most):
    """(x, lowest, median, highest) of so many stretches."""
    first, last = points[0][0], points[-1][0]
    width = max((last - first) / BUCKETS, 1e-9)
    stretches = {}
    for x, y in points:
        stretches.setdefault(int((x - first) / width), []).append((x, min(y, most)))
    return [(statistics.fmean(x for x, _ in part), min(y for _, y in part), statistics.median(y for _, y in part),
             max(y for _, y in part)) for _, part in sorted(stretches.items())]


def roundTop(value):
    """The next number that an axis can end with."""
    size = 1.0
    while size * 10 <= value:
        size *= 10
    while size > value and size > 1:
        size /= 10
    return next(size * step for step in (1, 1.5, 2, 3, 4, 5, 6, 8, 10) if size * step >= value)


def panel(y, title, lines, bands, ends, limit):
    """limit: a line that is drawn across, and about which the axis is laid out."""
    lines = {name: points for name, points in lines.items() if points}
    total = ends[-1] or 1e-9
    across = (WIDTH - LEFT - RIGHT) / total
    highest = max((value for points in lines.values() for _, value in points), default=1)
    top = roundTop(max(highest, 1)) if limit is None else 4 * limit

    def at(x, value):
        return f"{LEFT + x * across:.0f},{y + PANEL - min(value, top) / top * PANEL:.0f}"

    parts = [f'<rect x="{LEFT + begin * across:.1f}" y="{y}" width="{max((end - begin) * across, 0.2):.1f}" '
             f'height="{PANEL}" fill="{PHASES.get(kind, "#ffffff")}"/>\n' for begin, end, kind in bands]
    parts.append(f'<rect x="{LEFT}" y="{y}" width="{WIDTH - LEFT - RIGHT}" height="{PANEL}" fill="none" '
                 'stroke="#999999"/>\n')
    for share in (0, 0.5, 1):
        parts.append(f'<text x="{LEFT - 6}" y="{y + PANEL - share * PANEL + 4:.0f}" text-anchor="end">'
                     f'{top * share:g}</text>\n')
    parts += hours(y, total, across)
    for end in ends[:-1]:
        parts.append(f'<line x1="{LEFT + end * across:.1f}" y1="{y - 6}" x2="{LEFT + end * across:.1f}" '
                     f'y2="{y + PANEL}" stroke="#000000" stroke-dasharray="5 3"/>\n')
    if limit is not None:
        parts.append(f'<polyline points="{at(0, limit)} {at(total, limit)}" stroke="#b00020" stroke-dasharray="4 3" '
                     'fill="none"/>\n')
    parts.append(f'<text x="{LEFT}" y="{y - 5}" font-weight="bold">{escape(title)}</text>\n')
    x = LEFT + 16 + 7.6 * len(title)
    for (name, points), colour in zip(lines.items(), COLOURS):
        thin = thinned(points, top)
        outline = [at(x_, high) for x_, _, _, high in thin] + [at(x_, low) for x_, low, _, _ in reversed(thin)]
        if any(low != high for _, low, _, high in thin):
            parts.append(f'<polygon points="{" ".join(outline)}" fill="{colour}" fill-opacity="0.25"/>\n')
        middle = " ".join(at(x_, value) for x_, _, value, _ in thin)
        parts.append(f'<polyline points="{middle}" fill="none" stroke="{colour}" stroke-width="1.4"/>\n')
        parts.append(f'<text x="{x:.0f}" y="{y - 5}" fill="{colour}">{escape(name)}</text>\n')
        x += 16 + 6.6 * len(name)
    return "".join(parts)


def hours(y, total, across):
    step = next(step for step in (0.05, 0.1, 0.25, 0.5, 1, 2, 4, 8, 24) if total / step <= 10)
    parts, mark = [], 0.0
    while mark <= total + 1e-9:
        x = LEFT + mark * across
        parts.append(f'<line x1="{x:.1f}" y1="{y + PANEL}" x2="{x:.1f}" y2="{y + PANEL + 4}" stroke="#999999"/>\n')
        parts.append(f'<text x="{x:.1f}" y="{y + PANEL + 16}" text-anchor="middle">{mark:g} h</text>\n')
        mark += step
    return parts


def heading(y, text):
    return f'<text x="{LEFT}" y="{y}" font-size="15" font-weight="bold">{escape(text)}</text>\n'


def phaseKey(y):
    parts, x = [], LEFT
    for kind, colour in PHASES.items():
        parts.append(f'<rect x="{x}" y="{y - 9}" width="10" height="10" fill="{colour}" stroke="#999999"/>\n'
                     f'<text x="{x + 14}" y="{y}">{escape(kind)}</text>\n')
        x += 30 + 7 * len(kind)
    return "".join(parts)
