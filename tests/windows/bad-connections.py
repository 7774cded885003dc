"""Connections that do not come about, or do not last: what the status dialog and the message boxes say."""

import contextlib
import socket
import struct
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from program import Program, check, checkEqual, netProfile, readIni, run, waitFor, writeProfiles  # noqa: E402

OPENING = "Opening network connection to host: {}"
TIMED_OUT = "The connection as timed out"
RETRYING = "The connection has timed out, retrying..."
DROPPED = "The connection has been dropped"
TIMEOUT = 2  # seconds


def profile(host, port, **more):
    writeProfiles({"bad": netProfile(port, host=host, **more)}, timeout=TIMEOUT)


@contextlib.contextmanager
def closedPort():
    """A port that refuses: it is taken, and nobody listens."""
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        yield taken.getsockname()[1]


@contextlib.contextmanager
def silentPort():
    """A port that never answers: its queue of connections is full, so the system drops what asks to connect."""
    with contextlib.ExitStack() as stack:
        listener = stack.enter_context(socket.socket())
        listener.bind(("127.0.0.1", 0))
        listener.listen(0)
        port = listener.getsockname()[1]
        for _ in range(4):
            client = stack.enter_context(socket.socket())
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", port))
        yield port


def labelsUntilClosed(program):
    """The texts that frmConn shows, in order."""
    waitFor(lambda: program.label("frmConn", "lblConn"), "frmConn is open")
    seen = []

    def closed():
        text = program.label("frmConn", "lblConn")
        if text is not None and text not in seen[-1:]:
            seen.append(text)
        return text is None

    waitFor(closed, lambda: f"frmConn closes; it showed {seen}")
    return seen


def notConnected(program):
    program.waitState("g_bConnectActive", False)
    enabled = [entry["enabled"] for entry in program.ask("menus")["connection"]]
    checkEqual(enabled, [True, False, False, True], "Connect, Disconnect, Send Break, Options... enabled")
    checkEqual(program.boxes(), [], "message boxes")


def timesOut(host, port):
    profile(host, port)
    with Program("bad") as program:
        # On a busy machine the first text may have gone before anybody looks.
        checkEqual(labelsUntilClosed(program)[-1], TIMED_OUT, "what frmConn shows last")
        notConnected(program)
        # Again, from before it begins: a machine that does much besides is late, but nothing comes early.
        program.focus()
        began = time.monotonic()
        program.connectionMenu("c")
        waitFor(lambda: program.label("frmConn", "lblConn") == OPENING.format(host), "frmConn says what it does")
        waitFor(lambda: program.label("frmConn", "lblConn") == TIMED_OUT, "the time is over")
        after = time.monotonic() - began
        check(TIMEOUT < after < TIMEOUT + 8, f"the time-out came after {after:.1f} s, not {TIMEOUT} s")
        program.waitForm("frmConn", loaded=False)
        notConnected(program)


def refused():
    with closedPort() as port:
        timesOut("127.0.0.1", port)


def unknownName():
    timesOut("no-such-host.invalid", 23)


def neverAnswers():
    with silentPort() as port:
        timesOut("127.0.0.1", port)


def retryAndCancel():
    with silentPort() as port:
        profile("127.0.0.1", port, auto_retry=1)
        with Program("bad") as program:
            waitFor(lambda: program.label("frmConn", "lblConn") == RETRYING, f"frmConn says {RETRYING!r}")
            program.picture("retrying")
            # It goes on saying so.
            end = time.monotonic() + 2.5
            while time.monotonic() < end:
                checkEqual(program.label("frmConn", "lblConn"), RETRYING, "frmConn while it retries")
            program.click("frmConn", "cmdCancel")
            program.waitForm("frmConn", loaded=False)
            notConnected(program)


def cancelAtOnce():
    with silentPort() as port:
        writeProfiles({"bad": netProfile(port)}, timeout=120)
        with Program("bad") as program:
            program.waitForm("frmConn")
            program.picture("opening")
            program.click("frmConn", "cmdCancel")
            program.waitForm("frmConn", loaded=False)  # which waits for less than the attempt would
            notConnected(program)


def closesAtOnce(connection):
    connection.close()


def tornSequence(connection):
    connection.sendall(b"before\x1b[1;3")
    connection.close()


def tornTelnet(connection):
    connection.sendall(b"before\xff\xfa")
    connection.close()


def resets(shown):
    """A peer that resets the connection as soon as its text is shown: sooner, it might be the attempt to connect that
    meets the reset."""

    def reset(connection):
        connection.sendall(b"before")
        shown.wait()
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        connection.sendall(b"more")
        connection.close()

    return reset


def dropped():
    """One window, one connection after another; each one dropped in another way, and then a good one."""
    shown = threading.Event()
    left = [closesAtOnce, tornSequence, tornTelnet, resets(shown), lambda connection: connection.sendall(b"\x1b[3Cgood")]
    with Peer(lambda connection: left.pop(0)(connection)) as peer:
        profile("127.0.0.1", peer.port)
        with Program("bad") as program:
            for number in range(4):
                if number == 3:
                    program.waitText("before")
                    shown.set()
                box = program.messageBox(DROPPED)
                program.picture(f"dropped-{number}")
                checkEqual(program.boxes(), [DROPPED], "message boxes")
                program.clickButton(box, "OK")
                program.waitForm("frmConn", loaded=False)
                notConnected(program)
                waitFor(lambda: not any(program.rows()), lambda: f"an empty screen:\n{program.page()}")
                program.connectionMenu("c")
            program.waitRows({0: "   good"}, "what comes after dropped connections")
            program.waitForm("frmConn", loaded=False)
            program.waitState("g_bConnectActive", True)


def boxOutlastsTheDialog():
    """The host hangs up while frmConn still stands. The box belongs to it then, but does not go with it."""
    left = [closesAtOnce, lambda connection: connection.sendall(b"\x1b[3Cgood")]
    with Peer(lambda connection: left.pop(0)(connection)) as peer:
        profile("127.0.0.1", peer.port)
        with Program("bad") as program:
            box = program.messageBox(DROPPED)
            program.waitForm("frmConn", loaded=False)
            program.picture("dropped-without-dialog")
            checkEqual(program.boxes(), [DROPPED], "message boxes")
            program.clickButton(box, "OK")
            notConnected(program)
            program.connectionMenu("c")
            program.waitRows({0: "   good"}, "what comes after the dropped connection")


def leavesNothingBehind():
    """Connecting and disconnecting again and again: no handle, GDI object, window or timer is left."""

    def cycle():
        program.connectionMenu("d")
        program.waitState("g_bConnectActive", False)
        program.connectionMenu("c")
        program.waitState("g_bConnectActive", True)
        program.waitForm("frmConn", loaded=False)
        program.waitText("hello")

    def figures():
        resources, timers = program.ask("resources", "timers")
        return {**{name: resources[name] for name in ("handles", "gdi", "windows")}, "timers": timers}

    with Peer(lambda connection: connection.sendall(b"\x1b[2J\x1b[Hhello")) as peer:
        profile("127.0.0.1", peer.port)
        with Program("bad") as program:
            program.waitState("g_bConnectActive", True)
            program.waitForm("frmConn", loaded=False)
            for _ in range(2):
                cycle()
            before = figures()
            check(before["handles"] > 0 and before["gdi"] > 0, f"the probe counts: {before}")
            for _ in range(12):
                cycle()
            waitFor(lambda: figures() == before, lambda: f"the figures are {before} again; they are {figures()}")


def emptyHost():
    """No attempt: a message, then the Options dialog."""
    profile("", 23)
    with Program("bad") as program:
        box = program.messageBox("You must specify a hostname to connect to")
        program.clickButton(box, "OK")
        program.waitForm("frmOptions")
        program.picture("options")
        program.key("Escape")
        program.waitForm("frmOptions", loaded=False)
        notConnected(program)


def twoWindows():
    """Two windows on one qxterm.ini: both work, and the file is whole when both have closed."""
    with Peer(lambda connection: connection.sendall(b"hello")) as peer:
        writeProfiles({"one": netProfile(peer.port), "two": netProfile(peer.port, Font="small")}, timeout=TIMEOUT)
        with Program("one") as one, Program("two") as two:
            for program in (one, two):
                program.waitRows({0: "hello"}, "each window's first row")
                program.waitForm("frmConn", loaded=False)
            for program in (two, one):
                peer.received.clear()
                program.focus()
                program.type("x")
                peer.expect(b"x", "a key of one window")
                program.connectionMenu("d")
                program.waitState("g_bConnectActive", False)
            checkEqual(len(peer.connections), 2, "connections")
            for program in (one, two):
                program.close()
        ini = readIni()
        checkEqual(ini["Settings"]["Profiles"].split(), ["one", "two"], "the profiles' names")
        for name in ("one", "two"):
            checkEqual((ini[name]["connect"], ini[name]["netport"]), ("net", str(peer.port)), f"profile {name}")


run(refused, unknownName, neverAnswers, retryAndCancel, cancelAtOnce, dropped, boxOutlastsTheDialog,
    leavesNothingBehind, emptyHost, twoWindows)
