"""The program without font, splash picture, help file and helpers beside it, or with damaged ones: it says so and works."""

import shutil
import struct
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk  # noqa: E402
from neighbour import keptToItself  # noqa: E402
from peers import Peer  # noqa: E402
from program import BUILD, checkEqual, netProfile, run, writeProfiles  # noqa: E402

NO_PICTURE = "An unexpected error 53 has occurred"
UNREADABLE_PICTURE = "An unexpected error 75 has occurred"
BOX = b"\x1b[2;3H\x1b)0\x0elqqk\x0f and text"


def startTells(desk, told):
    """The program says so ahead of its window, and connects all the same."""
    desk.messageBox(told, 60)
    desk.answer(told, "OK")
    desk.waitStart()
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")


def aboutTells(desk, told):
    desk.menu("h", "a")
    desk.answer(told, "OK")
    desk.dialog("frmSplash")
    desk.key("Return")
    desk.gone("frmSplash")


def leave(desk):
    desk.close()
    desk.waitEnd()
    checkEqual(desk.process.returncode, 0, "the exit status")


def alone():
    with tempfile.TemporaryDirectory(prefix="qxterm-bare-") as folder, \
            Peer(lambda connection: connection.sendall(BOX)) as peer:
        shutil.copy(BUILD / "qxterm-probe.exe", folder)
        writeProfiles({"net": netProfile(peer.port), "far": {"connect": "ssh", "host": "127.0.0.1"}}, Order="far ",
                      timeout=1)
        with Desk("net", waiting=False, folder=folder) as desk:
            startTells(desk, NO_PICTURE)
            # Line drawing is stored as it came, whatever the font makes of it.
            desk.waitRows({1: "  lqqk and text"}, "the host's text")
            desk.type("x")
            peer.expect(b"x", "a key")
            desk.menu("h", "c")
            desk.answer("The help file cannot be found:", "OK")
            aboutTells(desk, NO_PICTURE)
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
            leave(desk)


def damaged():
    """All files are there, and none is what it should be."""
    with tempfile.TemporaryDirectory(prefix="qxterm-damaged-") as folder, \
            Peer(lambda connection: connection.sendall(BOX)) as peer:
        shutil.copy(BUILD / "qxterm-probe.exe", folder)
        picture = (Path(BUILD) / "tmspl16.dat").read_bytes()
        # Ten thousand pixels each way are announced, and a few bytes of them follow.
        announced = picture[:18] + struct.pack("<ii", 10000, 10000) + picture[26:200]
        (Path(folder) / "tmspl16.dat").write_bytes(announced)
        (Path(folder) / "QXTERM.ttf").write_bytes((Path(BUILD) / "QXTERM.ttf").read_bytes()[:3000] + b"\xff" * 2000)
        help_file = Path(folder) / "enu_te.chm"
        help_file.write_bytes(b"ITSF" + b"\xff" * 5000)
        writeProfiles({"net": netProfile(peer.port)}, timeout=1)
        with Desk("net", waiting=False, folder=folder) as desk:
            startTells(desk, UNREADABLE_PICTURE)
            desk.waitRows({1: "  lqqk and text"}, "the host's text")
            with keptToItself("Z:" + str(help_file).replace("/", "\\")):
                desk.menu("h", "c")
                desk.answer("The help file cannot be read:", "OK")
            mark = Path(str(help_file) + ":Zone.Identifier")
            mark.write_text("[ZoneTransfer]\r\nZoneId=3\r\n")
            desk.menu("h", "c")
            desk.answer("The help file comes from another computer", "OK")
            # What HTML Help makes of it is its own affair; the program goes on, and does not repeat itself.
            desk.menu("h", "c")
            aboutTells(desk, UNREADABLE_PICTURE)
            desk.noBoxes()
            desk.focus()
            desk.type("x")
            peer.expect(b"x", "a key")
            desk.connectionMenu("d")
            desk.waitState("g_bConnectActive", False)
            leave(desk)


run(alone, damaged)
