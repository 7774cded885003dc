"""Telnet's Synch: the pair IAC DM, of which one byte is urgent; hosts send it when their user interrupts something.

Neither is it shown, nor does the byte behind it disappear, as it does behind a command that is not urgent.
"""

import itertools
import random
import signal
import socket
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from program import Program, netProfile, run, writeProfiles  # noqa: E402

IAC, DM, WILL = b"\xff", b"\xf2", b"\xfb"
PAUSE = 0.04  # seconds; long enough for the program to read what was sent before


class Urgent(bytes):
    """Bytes whose last one is sent as urgent data."""


class Pause:
    """The program reads what has been sent so far."""


class Asleep:
    """All that follows is sent while the program does nothing."""


class Screen:
    """Shows each case on an empty screen, and compares the first row."""

    def __init__(self, peer, program):
        self.peer, self.program, self.number = peer, program, 0

    def case(self, what, pieces, expected):
        self.number += 1
        end = f"case {self.number}"
        self.peer.send(b"\x1b[2J\x1b[Hstart\r")
        self.program.waitRows({0: "start", 1: ""}, "before a case")
        self.peer.send(b"\x1b[K")
        self.program.waitRows({0: ""}, "before a case")
        try:
            for piece in pieces:
                if piece is Pause:
                    time.sleep(PAUSE)
                elif isinstance(piece, float):
                    time.sleep(piece)
                elif piece is Asleep:
                    self.program.process.send_signal(signal.SIGSTOP)
                else:
                    self.peer.connections[-1].send(piece, socket.MSG_OOB if isinstance(piece, Urgent) else 0)
        finally:
            self.program.process.send_signal(signal.SIGCONT)
        time.sleep(PAUSE)
        self.peer.send(b"\r\n" + end.encode())
        self.program.waitText(end)
        told = [bytes(one) if isinstance(one, bytes) else getattr(one, "__name__", one) for one in pieces]
        self.program.waitRows({0: expected, 1: end}, f"{what}: {told}", 1)


def connected(test):
    """A test routine whose program is connected to a peer of the test."""

    def tested():
        with Peer() as peer:
            writeProfiles({"peer": netProfile(peer.port)})
            with Program("peer") as program:
                program.waitState("g_bConnectActive", True)
                program.waitForm("frmConn", loaded=False)
                test(Screen(peer, program))

    tested.__name__ = test.__name__
    return tested


def divided(stream, urgentAt):
    """Each way to cut these bytes into segments: lists of pieces. urgentAt: places of the urgent bytes."""
    inner = range(1, len(stream))
    for count in range(len(stream)):
        for cuts in itertools.combinations(inner, count):
            pieces, begin = [], 0
            for end in range(1, len(stream) + 1):
                urgent = end - 1 in urgentAt
                if end in cuts or urgent or end == len(stream):
                    pieces.append((Urgent if urgent else bytes)(stream[begin:end]))
                    begin = end
                if end in cuts:
                    pieces.append(Pause)
            yield pieces


@connected
def everyCut(screen):
    stream = b"a" + IAC + DM + b"bc"
    for what, urgentAt in (("IAC is urgent", {1}), ("DM is urgent", {2}), ("both are urgent", {1, 2})):
        for pieces in divided(stream, urgentAt):
            screen.case(what, pieces, "abc")


@connected
def atTheBeginningAndAtTheEnd(screen):
    for pair in ([Urgent(IAC), DM], [Urgent(IAC + DM)]):
        screen.case("a Synch, then text", [*pair, Pause, b"text"], "text")
        screen.case("a Synch and text", [*pair, b"text"], "text")
        screen.case("text, then a Synch", [b"text", Pause, *pair], "text")
        screen.case("a Synch behind text", [b"text", *pair], "text")
        screen.case("a Synch alone", pair, "")


@connected
def inARow(screen):
    iacUrgent, dmUrgent = [Urgent(IAC), DM], [Urgent(IAC + DM)]
    for synch in (iacUrgent, dmUrgent):
        for pause in ([], [Pause]):
            screen.case("three Synchs", [b"one", *pause, *synch, *pause, *synch, *pause, *synch, *pause, b"two"],
                        "onetwo")
            screen.case("with text between", [b"one", *pause, *synch, b"two", *pause, *synch, *pause, b"three"],
                        "onetwothree")
            screen.case("with commands between", [b"one", *synch, *pause, IAC + WILL + b"\x01", *synch, *pause, b"two"],
                        "onetwo")


@connected
def whileTheProgramIsBusy(screen):
    """The system keeps one urgent byte: what it makes of the others must not be seen."""
    iacUrgent, dmUrgent = [Urgent(IAC), DM], [Urgent(IAC + DM)]
    for synch in (iacUrgent, dmUrgent):
        screen.case("two Synchs unread", [Asleep, b"one", *synch, b"two", *synch, b"three"], "onetwothree")
        screen.case("three Synchs unread", [Asleep, *synch, *synch, *synch, b"text"], "text")
        # The first one's place has been reached, which loses its urgent byte.
        screen.case("two Synchs behind what is read", [b"one", Pause, Asleep, *synch, *synch, b"two"], "onetwo")
    screen.case("a DM and a Synch behind what is read",
                [b"one" + IAC, Pause, Asleep, Urgent(DM), *dmUrgent, b"two"], "onetwo")


@connected
def dense(screen):
    """Synchs so close to one another that they arrive between any two steps of the program's reading."""
    for kind, synch in (("IAC", [Urgent(IAC), DM]), ("DM", [Urgent(IAC + DM)]), ("both", [Urgent(IAC), Urgent(DM)])):
        for seed in range(25):
            chance = random.Random(seed)
            pieces, expected = [], ""
            for _ in range(60):
                what = chance.choice(("letter", "letter", "letter", "synch", "synch", "synch", "pause", "command"))
                if what == "letter":
                    expected += chance.choice("abcdefgh")
                    pieces.append(expected[-1:].encode())
                elif what == "synch":
                    pieces += synch
                elif what == "command":
                    pieces.append(IAC + WILL + b"\x01")
                else:
                    pieces.append(chance.choice((0.0005, 0.005)) * chance.random())
            screen.case(f"{kind} urgent, seed {seed}", pieces, expected)


@connected
def otherUrgentBytes(screen):
    for pause in ([], [Pause]):
        screen.case("an urgent letter", [b"one", *pause, Urgent(b"!"), *pause, b"two"], "one!two")
        screen.case("an urgent letter at the end", [b"one", *pause, Urgent(b"!")], "one!")
        screen.case("another urgent command", [b"one", *pause, Urgent(IAC + WILL), *pause, b"\x01two"], "onetwo")


@connected
def theEnd(screen):
    """What stands behind Synchs when the peer has gone is read to its end."""
    for synch in ([Urgent(IAC), DM], [Urgent(IAC + DM)]):
        for pieces in ([b"text", *synch], [*synch, *synch, b"text"], [*synch, *synch, *synch, b"text" + IAC]):
            screen.program.process.send_signal(signal.SIGSTOP)
            try:
                for piece in pieces:
                    screen.peer.connections[-1].send(piece, socket.MSG_OOB if isinstance(piece, Urgent) else 0)
                screen.peer.connections[-1].shutdown(socket.SHUT_RDWR)
            finally:
                screen.program.process.send_signal(signal.SIGCONT)
            box = screen.program.messageBox("The connection has been dropped")
            screen.program.clickButton(box, "OK")
            screen.program.waitState("g_bConnectActive", False)
            screen.program.connectionMenu("c")
            screen.program.waitState("g_bConnectActive", True)
            screen.program.waitForm("frmConn", loaded=False)


@connected
def withoutUrgency(screen):
    """The byte behind the command goes with it."""
    screen.case("DM as any command", [b"one" + IAC + DM + b"two"], "onewo")
    screen.case("behind a Synch, too", [b"one", Urgent(IAC), DM, Pause, b"two" + IAC + DM + b"three"], "onetwohree")


run(everyCut, atTheBeginningAndAtTheEnd, inARow, whileTheProgramIsBusy, dense, otherUrgentBytes,
    theEnd, withoutUrgency)
