"""The line-drawing glyphs of QXTERM.ttf as the system draws them, pixel by pixel, at all sizes that a cell may have."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from program import BUILD, Failure, check, checkEqual, run  # noqa: E402

ARMS = {"j": "LU", "k": "LD", "l": "RD", "m": "RU", "n": "LRUD", "o": "LR", "p": "LR", "q": "LR", "r": "LR", "s": "LR",
        "t": "RUD", "u": "LUD", "v": "LRU", "w": "LRD", "x": "UD"}
GLYPHS = "".join(ARMS)
SCAN_LINES = "opqrs"
WIDTHS = range(6, 41)
STROKE = 1 / 16  # of the cell's height
STROKE_ACROSS = 128 / 1229  # of the cell's width
PIECE = 100  # sizes drawn by one call, whose command line must not become too long


def sizes():
    """Heights of 1.6 to 2.4 times the width."""
    return [(width, height) for width in WIDTHS for height in range((16 * width + 9) // 10, 24 * width // 10 + 1)]


def drawn(wanted):
    """{size: lines of pixels}, as glyphs.exe writes them."""
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder) / "pixels"
        numbers = [str(number) for size in wanted for number in size]
        done = subprocess.run([os.environ["WINE"], str(BUILD / "glyphs.exe"), "Z:" + str(file).replace("/", "\\"),
                               *numbers], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        checkEqual(done.returncode, 0, "the status of glyphs.exe")
        pixels = file.read_text(encoding="ascii")
    sheets, at = {}, 0
    for width, height in wanted:
        length = (2 * len(GLYPHS) + 1) * width
        sheets[width, height] = [pixels[at + y * length:at + (y + 1) * length] for y in range(2 * height)]
        at += 2 * height * length
    checkEqual(len(pixels), at, "the number of pixels")
    return sheets


def cell(lines, column, width):
    return [line[column * width:(column + 1) * width] for line in lines]


def span(numbers, what):
    """First and last of numbers that follow one another."""
    check(numbers, f"{what}: nothing is drawn")
    check(numbers == list(range(numbers[0], numbers[-1] + 1)), f"{what}: {numbers}")
    return numbers[0], numbers[-1]


def inMiddle(first, last, length, halves, what):
    """halves: half pixels that the stroke may be off the middle."""
    check(abs(first + last + 1 - length) <= halves, f"{what}: {first} to {last} is not the middle of {length}")


def expected(arms, columns, rows, width, height):
    """Each arm reaches from the cell's edge over the whole joint."""

    def there(x, y):
        across = rows[0] <= y <= rows[1] and (("L" in arms and x <= columns[1]) or ("R" in arms and x >= columns[0]))
        upright = columns[0] <= x <= columns[1] and (("U" in arms and y <= rows[1]) or ("D" in arms and y >= rows[0]))
        return across or upright

    return ["".join("#" if there(x, y) else " " for x in range(width)) for y in range(height)]


def checkSize(lines, width, height):
    alone = {name: cell(lines[:height], at, width) for at, name in enumerate(GLYPHS)}
    run = {name: cell(lines[height:], 2 * at + 1, width) for at, name in enumerate(GLYPHS)}
    columns = span([x for x, pixel in enumerate(alone["x"][0]) if pixel != " "], "the upright stroke")
    rows = {name: span([y for y, line in enumerate(alone[name]) if line.strip()], f"the rows of {name}")
            for name in SCAN_LINES}
    inMiddle(*columns, width, 1, "the upright stroke")
    inMiddle(*rows["q"], height, 2, "the horizontal stroke")
    across, along = columns[1] - columns[0] + 1, rows["q"][1] - rows["q"][0] + 1
    checkEqual(along, int(height * STROKE + 0.5), "pixels of a horizontal stroke")
    check(abs(across - width * STROKE_ACROSS) < 1, f"an upright stroke has {across} pixels")
    for name in SCAN_LINES:
        checkEqual(rows[name][1] - rows[name][0] + 1, along, f"pixels of {name}")
    for upper, lower in zip(SCAN_LINES, SCAN_LINES[1:]):
        check(rows[upper][1] < rows[lower][0], f"{lower} does not stand below {upper}")
    for name, arms in ARMS.items():
        wanted = expected(arms, columns, rows.get(name, rows["q"]), width, height)
        for where, found in (("alone", alone[name]), ("in a run", run[name])):
            if found != wanted:
                pictures = "\n".join(f"    |{left}|   |{right}|" for left, right in zip(wanted, found))
                raise Failure(f"{name} {where}, expected and found:\n{pictures}")


def everySize():
    wanted, failures = sizes(), []
    for at in range(0, len(wanted), PIECE):
        for (width, height), lines in drawn(wanted[at:at + PIECE]).items():
            try:
                checkSize(lines, width, height)
            except Failure as failure:
                failures.append(f"{width} x {height}: {failure}")
    check(not failures, f"{len(failures)} of {len(wanted)} sizes\n" + "\n".join(failures[:3]))


run(everySize)
