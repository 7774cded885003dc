"""The loop connection: what is typed is interpreted as a host's output."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from program import ROOT, Program, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402

sys.path.insert(0, str(ROOT / "tests" / "demohost"))
from model import Model  # noqa: E402

KEYS = {"Return": b"\r", "Up": b"\x1b[A", "Down": b"\x1b[B", "Right": b"\x1b[C", "Left": b"\x1b[D", "BackSpace": b"\b",
        "Tab": b"\t", "ctrl+j": b"\n", "ctrl+n": b"\x0e", "ctrl+o": b"\x0f", "Escape": b"\x1b"}


class Typist:
    """Types into the window and into the model of the terminal."""

    def __init__(self, program, sheet):
        self.program, self.sheet, self.model = program, sheet, Model()

    def text(self, text):
        self.program.type(text)
        self.model.feed(text.encode())

    def keys(self, *names):
        self.program.key(*names)
        for name in names:
            self.model.feed(KEYS[name])

    def sequence(self, text):
        self.keys("Escape")
        self.text(text)

    def settled(self, name):
        def found():
            screen = self.program.ask("screen")
            return screen["rows"], screen["attrs"], screen["cursor"]

        model = self.model
        wanted = ([model.rowText(row) for row in range(25)],
                  [[f + fg * 256 + bg * 4096 for f, fg, bg in model.rows[row].attrs] for row in range(25)],
                  [model.column, model.row])
        waitFor(lambda: found() == wanted, lambda: f"{name}: the model has the cursor at {wanted[2]} and\n"
                f"{model.page()}\nthe program has it at {found()[2]} and\n{self.program.page()}")
        cells.compare(self.program, self.sheet, name)


def typing():
    with cells.sheetPeer() as sheets:
        writeProfiles({"sheet": netProfile(sheets.port), "loop": {"connect": "loop", "Font": "large"}})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
        with Program("loop") as program:
            program.waitState("g_bConnectActive", True)
            program.waitForm("frmConn", loaded=False)
            program.focus()
            typist = Typist(program, sheet)
            typist.text("ab")
            typist.keys("Up")
            typist.text("c!")
            typist.settled("letters")
            cells.cursorIsSeen(program, sheet)
            typist.keys("Return", "Down", "Down", "Right", "Tab")
            typist.text("The quick brown fox: ~@#$%^&*()_+{}|<>?\\/")
            typist.keys("BackSpace", "BackSpace", "Left")
            typist.text("X")
            typist.settled("keys")
            typist.keys("Return", "ctrl+j")
            typist.sequence("[1;31;44m")
            typist.text("bold red on blue")
            typist.sequence("[0;4;7m")
            typist.text("underlined, reverse")
            typist.sequence("[m")
            typist.settled("attributes")
            typist.keys("Return", "ctrl+j")
            typist.sequence("(B")
            typist.sequence(")0")
            typist.keys("ctrl+n")
            for line in ("lqqqwqqqk", "x   x   x", "tqqqnqqqu", "mqqqvqqqj"):
                typist.text(line)
                typist.keys("Return", "ctrl+j")
            typist.keys("ctrl+o")
            typist.settled("box")
            typist.sequence("[3;1H")
            typist.sequence("[2L")
            typist.settled("lines-inserted")
            typist.sequence("[1M")
            typist.settled("line-deleted")
            typist.sequence("[2;4r")
            typist.sequence("[4;1H")
            typist.text("in the region")
            typist.keys("ctrl+j", "ctrl+j", "Return")
            typist.settled("region")
            checkEqual(program.ask("screen")["region"], [1, 3], "the region")
            disconnect(program)


def disconnect(program):
    """Afterwards keys go nowhere."""
    program.connectionMenu("d")
    program.waitState("g_bConnectActive", False)
    waitFor(lambda: not any(program.rows()), lambda: f"an empty screen:\n{program.page()}")
    program.type("nothing")
    program.key("Return", "F1")
    program.connectionMenu("c")
    program.waitState("g_bConnectActive", True)
    program.waitForm("frmConn", loaded=False)
    program.focus()
    program.type("again")
    program.waitRows({0: "again"}, "after the second connection")


run(typing)
