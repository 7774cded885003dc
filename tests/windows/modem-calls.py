"""Calls through a modem: reset, dialling, carrier, the end of a call, calls that do not come about."""

import contextlib
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from program import check, checkEqual, run, waitFor, writeProfiles  # noqa: E402
from serial_line import SerialLine, nameSerialPorts, serialProfile  # noqa: E402

OPENING = "Opening modem connection on port COM2 at speed 9600"
TIMED_OUT = "The connection as timed out"
RETRYING = "The connection has timed out, retrying..."
DROPPED = "The connection has been dropped"
NO_CARRIER = "Failed to detect carrier"
RESET, DIAL = b"ATZ0\r", b"ATDP0,5551234;\r"

line = SerialLine()
nameSerialPorts({"COM2": line.link})


def modem(**more):
    return serialProfile("modem", **{"reset": "ATZ0", "prefix": "ATDP", "phone": "0,5551234", "suffix": ";",
                                     "timeout": 30, **more})


writeProfiles({"call": modem(), "short": modem(timeout=3), "again": modem(timeout=3, auto_retry=1),
               "waiting": modem(cd_timeout=2)})


@contextlib.contextmanager
def calling(profile="call"):
    """The program has sent the reset string, at program.resetAt."""
    line.received.clear()
    line.setCarrier(False)
    with line, line.program(profile) as program:
        line.expect(RESET, "the reset string", 60)
        program.resetAt = line.arrived
        program.waitForm("frmConn")
        yield program


def reply(text):
    line.send(b"\r\n" + text + b"\r\n")


def dialled():
    reply(b"OK")
    line.expect(DIAL, "the dial string")


def connected(program):
    reply(b"CONNECT 9600")
    time.sleep(0.4)
    checkEqual(program.ask("state")["g_bConnectActive"], False, "connected without a carrier")
    line.setCarrier(True)
    program.waitState("g_bConnectActive", True)
    program.waitForm("frmConn", loaded=False)
    program.focus()


def idle(program):
    """Not connected, the screen empty, nothing more is sent."""
    program.waitState("g_bConnectActive", False)
    program.waitForm("frmConn", loaded=False)
    waitFor(lambda: not any(program.rows()), lambda: f"an empty screen:\n{program.page()}")
    checkEqual(program.boxes(), [], "message boxes")
    enabled = [entry["enabled"] for entry in program.ask("menus")["connection"]]
    checkEqual(enabled[:3], [True, False, False], "Connect, Disconnect, Send Break")
    line.send(b"nobody listens")
    program.focus()
    program.type("nothing")
    time.sleep(1.3)  # as long as a dialling step could still wait
    checkEqual((bytes(line.received), [row for row in program.rows() if row]), (b"", []), "after the end")


def hear(program):
    """The session works both ways."""
    line.send(b"\x1b[H\x1b[2J\x1b[3;5Hwelcome")
    program.waitRows({2: "    welcome", 3: ""}, "the session's text")
    program.type("ok")
    program.key("Return")
    line.expect(b"ok\r", "what was typed")


def connectAgain(program):
    program.connectionMenu("c")
    line.expect(RESET, "the reset string of the next call")
    dialled()
    connected(program)
    hear(program)


def callAndHangUp():
    with calling() as program:
        checkEqual(program.label("frmConn", "lblConn"), OPENING, "the label")
        dialled()
        waited = line.arrived - program.resetAt
        # 1 to 1.25 s are meant; a machine that does much besides takes longer.
        check(0.5 <= waited <= 10, f"dialled {waited:.2f} s after the reset")
        connected(program)
        checkEqual([row for row in program.rows() if row], [], "the modem's answers on the screen")
        hear(program)
        # The host hangs up.
        line.setCarrier(False)
        program.clickButton(program.messageBox(DROPPED), "OK")
        idle(program)
        connectAgain(program)
        program.connectionMenu("d")
        line.setCarrier(False)
        idle(program)
        connectAgain(program)
        # The modem is pulled out.
        line.unplug()
        program.clickButton(program.messageBox(DROPPED), "OK")
        program.waitState("g_bConnectActive", False)
        line.setCarrier(False)
        line.plug()
        connectAgain(program)


def refusedCalls():
    """BUSY and NO CARRIER are not shown; the attempt goes on until its time is over."""
    for answer in (b"BUSY", b"NO CARRIER"):
        with calling("short") as program:
            dialled()
            reply(answer)
            time.sleep(0.6)
            checkEqual([row for row in program.rows() if row], [], f"the screen after {answer}")
            checkEqual(program.label("frmConn", "lblConn"), OPENING, f"the label after {answer}")
            waitFor(lambda: program.label("frmConn", "lblConn") == TIMED_OUT, "the time is over")
            idle(program)


def retried():
    """Each time-out resets the modem and dials anew, until the call succeeds."""
    with calling("again") as program:
        seen = []

        def label():
            text = program.label("frmConn", "lblConn")
            if text not in seen:
                seen.append(text)
            return text

        for _ in range(2):
            dialled()
            reply(b"BUSY")
            waitFor(lambda: label() == RETRYING, lambda: f"the label of a retry; seen are {seen}")
            line.expect(RESET, "the reset string of the retry")
        dialled()
        checkEqual(seen, [OPENING, RETRYING], "labels")
        connected(program)
        hear(program)


def withoutCarrier():
    with calling("waiting") as program:
        dialled()
        program.clickButton(program.messageBox(NO_CARRIER), "OK")
        program.waitState("g_bConnectActive", False)
        program.click("frmConn", "cmdCancel")
        idle(program)


def timersRefused():
    """A wait for the carrier that nothing could end is not begun, and that is told."""
    with calling("waiting") as program:
        program.click("frmConn", "cmdCancel")
        idle(program)
        program.ask("faults", more={"faults": {"SetTimer": [0, 1 << 30]}})
        program.connectionMenu("c")
        program.clickButton(program.messageBox("Out of memory."), "Cancel")
        program.ask("faults", more={"faults": {}})
        idle(program)
        connectAgain(program)


def cancelled():
    """In each state; the next call works."""
    with calling() as program:
        program.click("frmConn", "cmdCancel")  # before it dials
        idle(program)
        program.connectionMenu("c")
        line.expect(RESET, "the reset string")
        dialled()
        program.waitForm("frmConn")
        program.click("frmConn", "cmdCancel")  # while it waits for the carrier
        idle(program)
        connectAgain(program)
        program.key("ctrl+F5")
        program.connectionMenu("d")  # in a break
        line.setCarrier(False)
        idle(program)
        connectAgain(program)


run(callAndHangUp, refusedCalls, retried, withoutCarrier, timersRefused, cancelled)
