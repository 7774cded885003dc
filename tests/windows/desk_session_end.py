"""The user's session is to end: the same questions as when the window is closed, and nothing is lost."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk  # noqa: E402
from neighbour import SessionEnd  # noqa: E402
from peers import Peer  # noqa: E402
from program import check, checkEqual, netProfile, readIni, run, waitFor, writeProfiles  # noqa: E402

ACTIVE = "A connection is active, exit anyway?"
SAVE = "Save changes to profile: lab?"


def ended(desk, what):
    desk.waitEnd()
    checkEqual(desk.process.returncode, 0, f"the exit status {what}")


def changeHost(desk, host):
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    desk.key("alt+a")
    desk.fill(host)
    desk.key("Return")
    desk.gone("frmOptions")
    desk.waitState("g_bProfileChanged", True)


def withoutASession():
    """Nothing to ask: the window goes, its place is kept."""
    writeProfiles({"lab": netProfile(23)})
    with Desk() as desk:
        check("Window" not in readIni()["Settings"], "no place is in the file before")
        with SessionEnd("yes"):
            ended(desk, "with nothing to ask")
    check(len(readIni()["Settings"]["Window"].split()) == 2, "the window's place is in the file")


def withASession():
    with Peer() as peer:
        writeProfiles({"lab": netProfile(peer.port)})
        with Desk("lab") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            with SessionEnd("no"):
                desk.answer(ACTIVE, "No")
            peer.send(b"still here")
            desk.waitText("still here", row=0)
            desk.type("x")
            peer.expect(b"x", "a key after the session stayed")
            check("Window" not in readIni()["Settings"], "the place is not written when the window stays")
            # Asked once more while the question of the close box stands: that one is answered first.
            desk.close()
            desk.messageBox(ACTIVE)
            with SessionEnd("no"):
                pass
            checkEqual(desk.boxes(), [ACTIVE], "message boxes after a second question")
            # What the host sends meanwhile is shown, and answered where it is a request.
            peer.send(b"\r\nunder the box\xff\xfd\x01\x1b[")
            desk.waitText("under the box", row=1)
            peer.expect(b"\xff\xfc\x01", "an answer under the box")
            desk.answer(ACTIVE, "No")
            desk.waitState("g_bConnectActive", True)
            peer.send(b"3;1Hand on")
            desk.waitText("and on", row=2)
            with SessionEnd("yes"):
                desk.answer(ACTIVE, "Yes", ends=True)
            ended(desk, "with a session")
            checkEqual(peer.connections[0].recv(1), b"", "what the host reads at the end")


def withChanges():
    """Cancel keeps the window, No loses the changes on request, Yes saves them."""
    for answer, reply, host in (("No", "yes", "before"), ("Yes", "yes", "after")):
        writeProfiles({"lab": netProfile(23, host="before")}, Order="lab ")
        with Desk() as desk:
            # The profile's own entry would connect; Open does not.
            desk.menu("p", "o")
            desk.dialog("frmprof")
            desk.key("Down")
            waitFor(lambda: desk.text("frmprof", "txtprof") == "lab", "the list chooses")
            desk.key("Tab", "Tab", "space")
            desk.gone("frmprof")
            desk.waitCaption("lab")
            changeHost(desk, "after")
            if answer == "Yes":
                with SessionEnd("no"):
                    desk.answer(SAVE, "Cancel")
                checkEqual(desk.ask("state")["g_bProfileChanged"], True, "the changes after Cancel")
            with SessionEnd(reply):
                desk.answer(SAVE, answer, ends=True)
            ended(desk, f"with changes and the answer {answer}")
        checkEqual(readIni()["lab"]["host"], host, f"the host in the file after {answer}")


def underADialog():
    """An open dialog goes with the window; what it would have led to does not come."""
    writeProfiles({"lab": netProfile(23)})
    with Desk() as desk:
        desk.menu("p", "n")
        desk.dialog("frmOptions")
        with SessionEnd("yes"):
            ended(desk, "under a dialog")
    checkEqual(sorted(readIni()), ["Settings", "lab"], "the sections of the file")


run(withoutASession, withASession, withChanges, underADialog)
