"""A host that sends without end: the window goes on answering, and what comes afterwards is shown rightly. What waits behind
a box is not kept in the program's memory."""

import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from peers import Peer  # noqa: E402
from program import Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402

MEGABYTES = 128
BLOCK = b"yes, a line of ordinary output\r\n" * 32768  # 1 MiB
MODES = b"\x1b[?5h\x1b[?5l\a\x1b[2p\x1b[0p\x1b[1;5H\x1b[31mx\x1b[m\x1b[2K" * 2048
LATENCY = 0.1  # seconds in which the window answers
PROBE = 0.06  # seconds that a question to the probe may take besides
OVERFLOW = "An unexpected error 6 has occurred\r\nroutine: doEscBracket\r\nmessage: Overflow"
KEPT = 8  # MiB by which the program may grow behind a box: it reads 256 KiB ahead
BEEPS = 10  # that the program makes within a second; the others are dropped


def resident(program):
    """MiB that the program has in memory, now and at the most."""
    status = Path(f"/proc/{program.process.pid}/status").read_text()
    values = dict(line.split(":", 1) for line in status.splitlines())
    return tuple(int(values[name].split()[0]) / 1024 for name in ("VmRSS", "VmHWM"))


class Flood:
    """The first connection gets the flood, later ones a word."""

    def __init__(self, block, blocks, end=b"\x1b[?5l\x1b[2J\x1b[Hthe end of it"):
        self.block, self.blocks, self.end = block, blocks, end
        self.sent = 0
        self.done = False
        self.first = True

    def __call__(self, connection):
        if not self.first:
            connection.sendall(b"\x1b[m\x1b[2J\x1b[Hafter the flood")
            return
        self.first = False
        try:
            for _ in range(self.blocks):
                connection.sendall(self.block)
                self.sent += len(self.block)
            connection.sendall(self.end)
        finally:
            self.done = True


def answersInTime(program):
    times = [program.answerTime() for _ in range(40)]
    longest = max(ran for _, ran in times)
    check(longest <= LATENCY, f"the window works for {longest:.3f} s before it answers")
    late = [seconds for seconds, _ in times if seconds > LATENCY + PROBE]
    # A machine that does something else besides may delay one or the other: the system and the display work for it too.
    check(len(late) <= 2, f"the window answers late {len(late)} times of 40, after up to {max(late, default=0):.2f} s")


def connected(program):
    program.waitState("g_bConnectActive", True)
    program.waitForm("frmConn", loaded=False)
    program.focus()


def menusWhileFlooded():
    flood = Flood(BLOCK, 10000)
    with Peer(flood) as peer:
        writeProfiles({"flood": netProfile(peer.port)})
        with Program("flood") as program:
            connected(program)
            before = flood.sent
            waitFor(lambda: flood.sent > before + 4 * len(BLOCK), "the flood moves on")
            answersInTime(program)
            program.key("alt+p")
            program.waitMenu()
            program.picture("profile-menu")
            moved = flood.sent
            program.key("Escape", "Escape")
            waitFor(lambda: not any(w["class"] == "#32768" for w in program.ask("windows")), "the menu is closed")
            waitFor(lambda: flood.sent > moved, "the flood moves on behind the menu")
            program.connectionMenu("d")
            program.waitState("g_bConnectActive", False)
            waitFor(lambda: flood.done, "the host sees the end of the connection")
            check(flood.sent < 10000 * len(BLOCK), "the flood was still running")
            waitFor(lambda: not program.ask("view")["busy"], "the last block has been interpreted")
            stands = program.rows()
            program.connectionMenu("c")
            program.waitRows({0: "after the flood"}, "the next connection")
            checkEqual(program.rows()[1:], [""] * 24, f"the screen below, after {stands}")


def modesWhileFlooded():
    """Beeps, reverse screen and the key bar without end: the window answers, and the user can leave."""
    flood = Flood(MODES, 100000)
    with Peer(flood) as peer:
        writeProfiles({"flood": netProfile(peer.port)})
        with Program("flood") as program:
            connected(program)
            answersInTime(program)
            beepsAreThinnedOut(program)
            sent = flood.sent
            waitFor(lambda: flood.sent > sent, "the flood moves on")
            program.connectionMenu("d")
            program.waitState("g_bConnectActive", False)
            program.connectionMenu("c")
            program.waitRows({0: "after the flood"}, "the next connection")


def beepsAreThinnedOut(program):
    """As the system's routine is called, of which the probe keeps count."""

    def beeps():
        return program.ask("faults")["MessageBeep"][0]

    began = time.monotonic()
    before = beeps()
    waitFor(lambda: beeps() > before + 2 * BEEPS, "it goes on beeping")
    made = beeps() - before
    seconds = time.monotonic() - began + 0.05  # the program's clock is a coarser one
    check(made <= BEEPS * (int(seconds) + 1), f"{made} beeps in {seconds:.1f} s")


def stalled(flood):
    """Whether the host gets no byte sent for a second."""
    sent = flood.sent
    time.sleep(1)
    return flood.sent == sent


def behindABox():
    """While an error box stands the host is held up, and the program keeps but little of what it sends; after the box every
    byte is interpreted. The text goes round in 79 characters, the lines in 80: what was lost would show in the last lines."""
    megabytes = 50
    block = b"".join(bytes([33 + n % 79]) for n in range(79 * 13000))
    begin, flood = threading.Event(), Flood(block, megabytes, end=b"")

    def host(connection):
        begin.wait(60)
        connection.sendall(b"\x1b[?7h\x1b[32768m\r")
        flood(connection)

    with Peer(host) as peer:
        writeProfiles({"flood": netProfile(peer.port)})
        with Program("flood") as program:
            connected(program)
            before = resident(program)[0]
            begin.set()
            box = program.messageBox(OVERFLOW)
            waitFor(lambda: stalled(flood), "the host is held up")
            grown = resident(program)[1] - before
            # What has gone waits with the system, whose buffers take some MB.
            check(flood.sent < 20e6, f"{flood.sent / 1e6:.1f} MB are sent while the box stands")
            check(grown < KEPT, f"the program has grown by {grown:.1f} MiB behind the box")
            program.clickButton(box, "OK")
            waitFor(lambda: flood.done, "all is sent", 60)
            whole = (block * megabytes).decode()
            lines = [whole[at:at + 80] for at in range(0, len(whole), 80)]
            program.waitRows(dict(enumerate(lines[-24:])), "the end of the flood", 60)
            checkEqual([line["text"] for line in program.ask("scrollback")["lines"]], lines[-524:-24], "the scrollback")
            grown = resident(program)[1] - before
            check(grown < KEPT, f"the program has grown by {grown:.1f} MiB afterwards")
            checkEqual(program.boxes(), [], "message boxes")


def toTheEnd(block, blocks, name):
    """All of it arrives, and the picture of what stands at the end is right."""
    flood = Flood(block, blocks)
    with cells.sheetPeer() as sheets, Peer(flood) as peer:
        writeProfiles({"sheet": netProfile(sheets.port), "flood": netProfile(peer.port)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
        with Program("flood") as program:
            connected(program)
            began = time.monotonic()
            program.waitRows({row: "the end of it" if row == 0 else "" for row in range(25)}, "the end of the flood",
                             120)
            total = blocks * len(block)
            print(f"  {name}: {total / 1e6:.1f} MB in {time.monotonic() - began:.1f} s")
            cells.compare(program, sheet, name)
            checkEqual(program.boxes(), [], "message boxes")
            scrolled = program.ask("scrollback")["lines"]
            return [line["text"].rstrip() for line in scrolled]


def lines():
    scrolled = toTheEnd(BLOCK, MEGABYTES, "lines")
    checkEqual(scrolled, ["yes, a line of ordinary output"] * 500, "the scrollback")


def modes():
    toTheEnd(MODES, 4, "modes")


run(menusWhileFlooded, modesWhileFlooded, behindABox, lines, modes)
