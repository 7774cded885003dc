"""Another program of the desktop sends the messages that the program's windows send each other."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk  # noqa: E402
from neighbour import forgeMessages  # noqa: E402
from peers import Peer  # noqa: E402
from program import checkEqual, netProfile, run, writeProfiles  # noqa: E402


def connected(desk):
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")
    desk.focus()


def forged():
    """The session stands, and nothing was sent; a host is still found by its name."""
    with Peer() as peer:
        writeProfiles({"net": netProfile(peer.port)})
        with Desk("net") as desk:
            connected(desk)
            forgeMessages()
            peer.send(b"still here")
            desk.waitText("still here", row=0)
            desk.type("k")
            peer.expect(b"k", "a key behind the forged messages")
            desk.noBoxes()
            desk.connectionMenu("d")
            desk.waitState("g_bConnectActive", False)
            forgeMessages()
            desk.connectionMenu("c")
            connected(desk)
            peer.send(b"again")
            desk.waitText("again", row=0)
            checkEqual(desk.boxes(), [], "message boxes")


run(forged)
