"""A serial line with a login at its other end: shell, vi, break, unplugging, a flood, and ports that do not open."""

import contextlib
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from account import testUser  # noqa: E402
from program import check, checkEqual, run, waitFor, writeProfiles  # noqa: E402
from relay import Watched  # noqa: E402
from serial_line import Login, SerialLine, nameSerialPorts, serialProfile  # noqa: E402

BUSY = "Another application is using the serial port.  You must choose another port or exit the other application"
LINES = [f"line {n:02} *" + "abcdefghij" * (n % 6) for n in range(1, 61)]
WIDTH, SCROLLBACK, PAGE = 80, 500, 24

line = SerialLine()
nameSerialPorts({"COM2": line.link, "COM7": line.folder / "nothing"})
writeProfiles({"line": serialProfile(), "missing": serialProfile(commport=7)})


@contextlib.contextmanager
def session(profile="line"):
    with line.program(profile) as program:
        program.waitState("g_bConnectActive", True)
        program.waitForm("frmConn", loaded=False)
        program.focus()
        yield program


def furnish(home):
    (home / ".vimrc").write_text("set nocompatible noswapfile viminfo= ruler noshowcmd\n")
    (home / "lines").write_text("\n".join(LINES) + "\n")
    (home / "things").mkdir()
    for name in ("folder", "plain", "program"):
        (home / "things" / name).touch()


def loginShell():
    """The screen's records agree with the model after every step, down to the attributes."""
    with testUser(furnish) as (name, word, _), line, session() as program:
        watched = Watched()
        with Login(line, watched.show):
            def command(text):
                program.type(text)
                program.key("Return")

            program.waitText("login:")
            command(name)
            program.waitText("Password:")
            command(word)
            program.waitText("ready>")
            check(word not in program.page(), "the password is shown")
            command("stty rows 24 cols 80; clear")
            waitFor(lambda: program.rows()[:2] == ["ready>", ""], lambda: f"a clear screen:\n{program.page()}")
            command('echo "[$TERM]"; ls -1 --color=always things')
            program.waitRows({1: "[qxterm]", 2: "folder", 3: "plain", 4: "program", 5: "ready>"}, "ls")
            watched.waitForAgreement(program, "ls")
            command("vim.tiny lines")
            program.waitRows(dict(enumerate(LINES[:23])), "vi")
            watched.waitForAgreement(program, "vi")
            program.type("3G3dd1Ginew ")
            program.key("Escape")
            edited = ["new " + LINES[0], LINES[1], *LINES[5:]]
            program.waitRows(dict(enumerate(edited[:23])), "vi, edited")
            program.key("ctrl+d")
            waitFor(lambda: edited[0] not in program.rows(), "vi scrolls")
            watched.waitForAgreement(program, "vi, scrolled")
            program.type(":wq")
            program.key("Return")
            program.waitText("ready>", row=23)
            command("seq 1 200")
            program.waitRows({**{row: str(178 + row) for row in range(23)}, 23: "ready>"}, "seq 1 200")
            watched.waitForAgreement(program, "scrolled")
            program.connectionMenu("d")
            program.waitState("g_bConnectActive", False)


def breakOnLine():
    """By Control+F5 and by the menu: a quarter of a second each; the session goes on, and nothing is sent."""
    with line, session() as program:
        for way in (lambda: program.key("ctrl+F5"), lambda: program.connectionMenu("b")):
            before = len(line.breaks())
            way()
            waitFor(lambda: len(line.breaks()) >= before + 2, lambda: f"a break comes and goes: {line.breaks()}")
            (began, on), (ended, off) = line.breaks()[before:before + 2]
            checkEqual((on, off), (1, 0), "begin and end of the break")
            check(0.24 <= ended - began <= 5, f"the break lasted {ended - began:.3f} s")
        line.received.clear()
        program.type("on")
        line.expect(b"on", "after the breaks")
        # Closing the port in the middle of a break.
        program.key("ctrl+F5")
        program.connectionMenu("d")
        program.waitState("g_bConnectActive", False)
        time.sleep(0.5)
        checkEqual(program.boxes(), [], "boxes after closing during a break")
        checkEqual([slot["action"] for slot in program.ask("timers")["slots"] if not slot["free"]], [],
                   "timers after closing during a break")


def pulledOut():
    """The line goes and comes back: no box, the window answers, the next session works."""
    with line, session() as program:
        line.send(b"before")
        program.waitRows({0: "before"}, "before the line is pulled out")
        line.unplug()
        time.sleep(1)
        program.type("into the void")
        program.key("ctrl+F5", "Return")
        checkEqual(program.boxes(), [], "boxes after the line was pulled out")
        program.waitRows({0: "before"}, "after the line was pulled out")
        line.plug()
        program.connectionMenu("d")
        program.waitState("g_bConnectActive", False)
        line.received.clear()
        program.connectionMenu("c")
        program.waitState("g_bConnectActive", True)
        program.waitForm("frmConn", loaded=False)
        line.send(b"again")
        program.waitRows({0: "again"}, "on the line that came back")
        program.type("yes")
        line.expect(b"yes", "the line that came back")


def flood():
    """10 MB without a pause. Every byte moves all that follow it: the newest lines tell how many came, the place
    of the newest line in the scrollback tells how often the screen scrolled (modulo 500)."""
    rows = 131072
    rowText = "{:07d} the quick brown fox jumps over the lazy dog; 0123456789 ABCDEFGHIJKLMNOPQRS".format
    texts = [rowText(n)[:WIDTH - (n % 3)] for n in range(rows)]
    # Full rows wrap by themselves; the others are ended by the host.
    data = "".join(text if len(text) == WIDTH else text + "\r\n" for text in texts).encode()
    check(len(data) > 10_000_000, f"the flood has {len(data)} bytes")
    with line, session() as program:
        began = time.monotonic()
        line.send(data, seconds=60)
        line.send(b"end")
        program.waitText("end", seconds=60)
        took = time.monotonic() - began
        screen = [row.rstrip() for row in program.rows()]
        # The last row is a full one or is followed by its line end: "end" stands in a row of its own.
        shown = [text.rstrip() for text in texts]
        checkEqual(screen[:PAGE], [*shown[-(PAGE - 1):], "end"], "the last page")
        scrollback = [entry["text"].rstrip() for entry in program.ask("scrollback")["lines"]]
        older = shown[-(PAGE - 1) - SCROLLBACK:-(PAGE - 1)]
        checkEqual(scrollback[:SCROLLBACK][-len(older):], older, "the scrollback")
        scrolled = rows + 1 - PAGE
        checkEqual(program.ask("view")["newestSlot"], SCROLLBACK - (scrolled - 1) % SCROLLBACK, "the newest line's slot")
        checkEqual(bytes(line.received), b"", "what was sent back")
        print(f"  {len(data)} bytes in {took:.1f} s")


def portMissing():
    """The box comes, the status dialog does not."""
    with line.program("missing") as program:
        refused(program)


def portBusy():
    """As with a port that is missing; once the other program is gone, Connect opens it."""
    with line:
        line.setBusy(True)
        with line.program("line") as program:
            refused(program)
            line.setBusy(False)
            program.connectionMenu("c")
            program.waitState("g_bConnectActive", True)
            program.waitForm("frmConn", loaded=False)
            line.send(b"free")
            program.waitRows({0: "free"}, "the port that became free")


def refused(program):
    box = program.messageBox(BUSY)
    check("frmConn" not in program.ask("forms"), "there is no status dialog")
    program.clickButton(box, "OK")
    waitFor(lambda: not program.boxes(), "the box is gone")
    checkEqual(program.ask("state")["g_bConnectActive"], False, "g_bConnectActive")
    enabled = [entry["enabled"] for entry in program.ask("menus")["connection"]]
    checkEqual(enabled[:3], [True, False, False], "Connect, Disconnect, Send Break")


run(loginShell, breakOnLine, pulledOut, flood, portMissing, portBusy)
