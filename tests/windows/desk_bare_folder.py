"""The program alone in its folder, without font, splash picture, help file and helpers: it says so and works."""

import shutil
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk  # noqa: E402
from peers import Peer  # noqa: E402
from program import BUILD, checkEqual, netProfile, run, writeProfiles  # noqa: E402

NO_PICTURE = "An unexpected error 53 has occurred"
BOX = b"\x1b[2;3H\x1b)0\x0elqqk\x0f and text"


def alone():
    with tempfile.TemporaryDirectory(prefix="qxterm-bare-") as folder, \
            Peer(lambda connection: connection.sendall(BOX)) as peer:
        shutil.copy(BUILD / "qxterm-probe.exe", folder)
        writeProfiles({"net": netProfile(peer.port), "far": {"connect": "ssh", "host": "127.0.0.1"}}, Order="far ",
                      timeout=1)
        with Desk("net", waiting=False, folder=folder) as desk:
            desk.messageBox(NO_PICTURE, 60)
            desk.answer(NO_PICTURE, "OK")
            desk.waitStart()
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            # Line drawing is stored as it came, whatever the font makes of it.
            desk.waitRows({1: "  lqqk and text"}, "the host's text")
            desk.type("x")
            peer.expect(b"x", "a key")
            desk.menu("h", "c")
            desk.answer("The help file cannot be found:", "OK")
            desk.menu("h", "a")
            desk.answer(NO_PICTURE, "OK")
            desk.dialog("frmSplash")
            desk.key("Return")
            desk.gone("frmSplash")
            desk.connectionMenu("d")
            desk.waitState("g_bConnectActive", False)
            # No helper can be started: the attempt runs out.
            desk.menu("p", "1")
            desk.waitCaption("far")
            desk.focus()
            desk.type("bob")
            desk.key("Return")
            desk.type("secret")
            desk.key("Return")
            desk.waitForm("frmConn")
            desk.gone("frmConn")
            desk.noBoxes()
            desk.close()
            desk.waitEnd()
            checkEqual(desk.process.returncode, 0, "the exit status")


run(alone)
