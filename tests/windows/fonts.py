"""The three font sizes: cells, every colour and attribute, line drawing, the picture after another window lay on it; text
that blinks."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from program import Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402

SIZES = {"small": 9, "medium": 10, "large": 11}  # points
ATTRIBUTES = ("", "1;", "4;", "7;", "1;4;7;")


def colours():
    """Each of the 64 pairs of colours with five kinds of attributes."""
    out = [b"\x1b[m\x1b[2J\x1b[H"]
    for number in range(64):
        out.append(f"\x1b[{number // 4 + 1};{number % 4 * 20 + 1}H".encode())
        for attribute in ATTRIBUTES:
            out.append(f"\x1b[0;{attribute}3{number % 8};4{number // 8}mAg_".encode())
    return b"".join(out) + b"\x1b[m\x1b[20;1Hcolours"


def table():
    """Line drawing: a grid without gaps, in two colours, with letters in it."""
    out = [b"\x1b[m\x1b[2J\x1b(B\x1b)0\x0e"]
    for row in range(1, 22):
        kind = {1: "lqw k", 21: "mqv j"}.get(row, "tqn u" if row % 4 == 1 else "x x x")
        left, along, cross, _, right = kind
        line = left + "".join(cross if column % 8 == 0 else along for column in range(1, 72)) + right
        out.append(f"\x1b[{row};3H\x1b[3{1 + row % 7}m{line}".encode())
    return b"".join(out) + b"\x0f\x1b[m\x1b[23;1Hjust lqqk\x1b[1;1xstatus row: \x1b[7mreverse\x1b[m\x1b[24;1Htable"


def size(name):
    with cells.sheetPeer() as sheets:
        writeProfiles({"sheet": netProfile(sheets.port, Font=name)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
            program.picture(name)
            checkEqual(program.ask("profile")["fontsize"], SIZES[name], f"points of {name}")
            program.waitForm("frmConn", loaded=False)
            for page, output in (("colours", colours()), ("table", table())):
                sheets.send(output)
                program.waitText(page)
                cells.compare(program, sheet, f"{name}-{page}")
            program.focus()
            covered(program, sheet, f"{name}-uncovered")
            return sheet


def covered(program, sheet, name):
    """An open menu covers a part of the screen; what lay below comes back."""
    program.key("alt+p")
    program.waitMenu()
    program.picture("menu")
    program.key("Escape", "Escape")
    waitFor(lambda: not any(window["class"] == "#32768" for window in program.ask("windows")), "the menu is closed")
    cells.compare(program, sheet, name)


def allSizes():
    sheets = [size(name) for name in SIZES]
    for smaller, larger in zip(sheets, sheets[1:]):
        check(smaller.height < larger.height and smaller.width <= larger.width, "a larger size has larger cells")


def scrollback():
    """The view scrolled back by the wheel shows the lines that left; a key brings the live screen back."""
    lines = [f"line {number}" for number in range(1, 101)]
    with cells.sheetPeer() as sheets:
        writeProfiles({"sheet": netProfile(sheets.port)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
            program.waitForm("frmConn", loaded=False)
            sheets.send(b"\x1b[?25h\x1b[m\x1b[2J\x1b[H" + "\r\n".join(lines).encode())
            program.waitRows({23: "line 100", 0: "line 77"}, "a hundred lines")
            cells.compare(program, sheet, "live")
            program.focus()
            left, top, width, height = program.ask("places")["picterm"]
            program.wheel(left + width // 2, top + height // 2, up=10)
            waitFor(lambda: program.ask("view")["scroll"] < 501, "the view is scrolled back")
            back = 501 - program.ask("view")["scroll"]
            waitForView(program, sheet, lines[76 - back:100 - back], "scrolled-back")
            program.type("x")
            sheets.expect(b"x", "the key")
            waitFor(lambda: program.ask("view")["scroll"] == 501, "the view is live again")
            cells.compare(program, sheet, "live-again")


def blinkingText():
    """Beside text that stays: all of a cell goes with the text, its colour, its line and its reverse video too."""
    rows = [f"\x1b[{row};1H\x1b[{kind}msteady \x1b[5mblinking\x1b[m and \x1b[{kind};5mon\x1b[m".encode()
            for row, kind in enumerate(("0", "1", "4", "7", "33;44", "1;4;7;31;42"), 1)]
    line = b"\x1b[8;1H\x1b(B\x1b)0\x0elqqk\x1b[5mlqqk\x1b[m\x0f\x1b[9;1Hblinks"
    with cells.sheetPeer() as sheets:
        writeProfiles({"sheet": netProfile(sheets.port)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
            sheets.send(b"\x1b[m\x1b[2J" + b"".join(rows) + line)
            program.waitText("blinks", row=8)
            cells.compareBothPhases(program, sheet, "blinking")
            sheets.send(b"\x1b[?5h\x1b[10;1Hreverse screen")
            program.waitText("reverse screen", row=9)
            cells.compareBothPhases(program, sheet, "blinking-reversed")


def waitForView(program, sheet, lines, name):
    """The picture shows these 24 lines, white on black."""

    def good(found, _width, _height):
        wrong = [row for row, line in enumerate(lines)
                 if found[row] != [sheet.cell(character, cells.DEFAULT_WORD, False) for character in line.ljust(80)]]
        return f"rows {wrong} do not show {lines[0]!r} to {lines[-1]!r}" if wrong else None

    complaint = cells.waitForPicture(program, good)
    path = program.picture(name)
    check(complaint is None, f"{complaint}; see {path}")


run(allSizes, scrollback, blinkingText)
