"""One session that lives through all that its machine can run short of: GDI objects, address space, room on the disk for
the profiles and for the trace log, a clock that is set, a file of profiles that others write; and the display that goes
away. After each the next output is shown rightly, and the session is up."""

import os
import random
import re
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from desk import Desk  # noqa: E402
from peers import Peer  # noqa: E402
from program import (Program, Skip, check, checkEqual, iniPath, netProfile, readIni, run, waitFor,  # noqa: E402
                     writeProfiles, xdotool)
from shortages import Display, Machine, SmallDisk  # noqa: E402

NO_MEMORY = "Out of memory.  Please close other applications and try again"
MOUNTS = "QXTERM_MOUNTS"
DAY = 86400  # seconds
SIZES = {"s": 9, "l": 11}  # letter of the Options dialog, points


class Session:
    """The one program of this test, connected to a peer, its profiles on a disk that can be filled."""

    def __enter__(self):
        self._disk = SmallDisk(512) if MOUNTS in os.environ else None
        self.machine = Machine()
        self.peer = cells.sheetPeer()
        writeProfiles({"net": netProfile(self.peer.port), "kept": {"connect": "loop", "note": "of another program"}})
        if self._disk is not None:
            self._disk.over(iniPath().parent)
        self.desk = Desk("net", environment=self.machine.environment).__enter__()
        self.desk.waitState("g_bConnectActive", True)
        self.desk.gone("frmConn")
        self.sheet = cells.takeSheet(self.desk)
        self.random = random.Random(1)
        return self

    def __exit__(self, *_):
        self.desk.__exit__()
        self.peer.__exit__()
        if self._disk is not None:
            self._disk.close()

    @property
    def disk(self):
        if self._disk is None:
            raise Skip("nothing can be mounted here")
        return self._disk

    def show(self, name):
        """A page in all looks, some of it scrolled: nothing of it has stood there before."""
        out = ["\x1b[m\x1b[?25h"]
        for row in range(60):
            look = f"\x1b[0;{self.random.choice(('', '1;', '4;', '7;', '1;4;'))}3{row % 8};4{(row // 8 + 3) % 8}m"
            out.append("".join((look, "".join(self.random.choices(cells.PRINTABLE[1:], k=30)), "\x1b[m \x1b(B\x1b)0\x0e",
                                "".join(self.random.choices(cells.LINES, k=20)), "\x0f\r\n")))
        self.peer.send("".join((*out, name)).encode())
        self.desk.waitText(name, row=23)

    def isWhole(self, name):
        """What stands in the window is right to the pixel, and the session goes on both ways."""
        desk = self.desk
        self.show(name)
        cells.compare(desk, self.sheet, name)
        desk.noBoxes()
        desk.focus()
        self.peer.received.clear()
        desk.type("to the host")
        self.peer.expect(b"to the host", f"{name}: what is typed")
        check(desk.ask("state")["g_bConnectActive"], f"{name}: the session is up")

    def chooseSize(self, letter):
        self.desk.menu("c", "o")
        self.desk.dialog("frmOptions")
        self.desk.focusIs("fptOptions")
        self.desk.key("ctrl+Prior", "alt+" + letter, "Return")


session = None


def gdiObjects():
    """All but a hundred are taken; then all, while output runs. A font that cannot be had is told, and the former one
    stays."""
    desk = session.desk
    size = desk.ask("view")["cell"]
    try:
        taken = desk.ask("fewObjects")["taken"]
        check(taken > 9900, f"{taken} objects are taken")
        session.isWhole("a hundred objects left")
        desk.menu("h", "a")
        desk.dialog("frmSplash")
        desk.key("Escape")
        desk.gone("frmSplash")
        # What lay below the dialog comes back.
        cells.compare(desk, session.sheet, "uncovered")
        for letter, points in SIZES.items():
            session.chooseSize(letter)
            desk.gone("frmOptions")
            checkEqual(desk.ask("profile")["fontsize"], points, "the size")
        cells.compare(desk, session.sheet, "other-sizes")
        desk.ask("noObjects")
        session.show("no objects left")
        cells.compare(desk, session.sheet, "no-objects")
    finally:
        desk.ask("freeObjects")
    desk.ask("noFonts")
    session.chooseSize("s")
    desk.answer(NO_MEMORY, "Cancel")
    desk.gone("frmOptions")
    # Where a box and the dialog under it go at the same time, Wine may leave the display's keyboard to nobody.
    xdotool("windowactivate", desk.mainWindowId())
    checkEqual(desk.ask("view")["cell"], size, "the size of a cell while there is no other font")
    session.isWhole("the former font")
    desk.ask("freeFonts")
    for letter in SIZES:
        session.chooseSize(letter)
        desk.gone("frmOptions")
    checkEqual(desk.ask("view")["cell"], size, "the size of a cell")
    session.isWhole("objects to be had")


def addressSpace():
    """A sequence of 600,000 bytes finds no room: that is told, and the sequence is lost, or taken when Retry finds room."""
    desk, peer = session.desk, session.peer
    for answer in ("Cancel", "Retry"):
        with session.machine.fullAddressSpace(desk, left=8 << 20, largest=400000) as giveBack:
            session.show("little space")
            peer.send(b"\x1b[" + b"1;" * 300000)
            box = desk.messageBox(NO_MEMORY)
            check(box, "the box")
            if answer == "Retry":
                giveBack()
            desk.answer(NO_MEMORY, answer)
            desk.noBoxes()
            desk.menu("c", "o")
            desk.dialog("frmOptions")
            desk.key("Escape")
            desk.gone("frmOptions")
            peer.send(b"1m")
            session.show("still little space")
        session.isWhole(f"after {answer}")


def clockIsSet():
    """A day forward and a day back, twice. The cursor blinks on, and output is shown."""
    desk, machine = session.desk, session.machine
    session.peer.send(b"\x1b[?12h")
    try:
        for moved in (DAY, -DAY, 0):
            before = desk.ask("drawn")["last"]
            machine.setClock(moved)
            session.show(f"{moved} seconds")
            shown = desk.ask("drawn")["last"] - time.time()
            check(abs(shown - moved) < 60, f"the program's clock is {shown} seconds from the right one, not {moved}")
            check(before != shown, "something was drawn")
            seen, end = set(), time.monotonic() + 20
            while seen != {True, False} and time.monotonic() < end:
                seen.add(desk.ask("view")["cursorShown"])
            checkEqual(seen, {True, False}, f"the cursor after {moved} seconds")
            session.isWhole(f"clock set by {moved} s")
    finally:
        machine.setClock(0)
        session.peer.send(b"\x1b[?12l")


def saved():
    """The last key of the profile that is saved is there, the list of names, which follows it, and nothing is being
    written."""
    before = iniPath().read_bytes() if iniPath().exists() else b""
    time.sleep(0.1)
    name = session.desk.ask("profile")["name"]
    listed = b"Profiles=" in before and name in readIni()["Settings"]["Profiles"].split()
    return listed and "auto_retry" in readIni().get(name, {}) and iniPath().read_bytes() == before


def fileOfOthers():
    """Another program changes the file, puts another in its place, takes it away: each save keeps what the file has by
    then."""
    desk, path = session.desk, iniPath()

    def save(what):
        desk.menu("p", "s")
        waitFor(saved, f"{what}: the profile is saved")
        desk.noBoxes()
        ini = readIni()
        checkEqual(ini["net"]["netport"], str(session.peer.port), f"{what}: the saved profile")
        check("net" in ini["Settings"]["Profiles"].split(), f"{what}: the list of names")
        return ini

    theirs = path.read_text(encoding="latin-1").replace("Profiles=", "Profiles=added ")
    theirs = re.sub("netport=.*", "netport=9", re.sub("auto_retry=.*\n", "", theirs))
    path.write_text(theirs + "[added]\nhost=their.example\n", encoding="latin-1", newline="\r\n")
    ini = save("changed")
    checkEqual([ini["added"]["host"], ini["kept"]["note"]], ["their.example", "of another program"], "what others wrote")
    check("added" in ini["Settings"]["Profiles"].split(), "the name of others")

    other = path.with_suffix(".new")
    other.write_bytes(b"[Settings]\r\nProfiles=replaced \r\n[replaced]\r\nhost=b.example\r\n")
    other.rename(path)
    ini = save("replaced")
    checkEqual(ini["replaced"]["host"], "b.example", "the other file's profile")

    path.unlink()
    save("deleted")
    session.isWhole("file of others")


def fullDiskForProfiles():
    """What is saved does not reach a full disk. The file stays whole, and there is room for all of it later."""
    desk, disk, path = session.desk, session.disk, iniPath()
    tail = b"[kept]\r\nconnect=loop\r\nnote=of another program\r\n"
    head = f"[Settings]\r\nProfiles=net kept \r\nLogging=1\r\n[net]\r\nconnect=net\r\nnetport={session.peer.port}\r\n".encode()
    # All but a few bytes of its last block are used: whatever is added needs one more.
    filler = b"[filler]\r\nkey=" + b"v" * (8192 - len(head) - len(tail) - 24) + b"\r\n"
    content = head + filler + tail
    check(8180 < len(content) <= 8192, f"the file has {len(content)} bytes")
    path.write_bytes(content)
    disk.fill()
    try:
        desk.menu("p", "a")
        desk.dialog("frmprof")
        desk.fill("another")
        desk.key("Return")
        desk.gone("frmprof")
        desk.waitCaption("another")
        desk.noBoxes()
        check(path.read_bytes() == content, f"the file on a full disk ends with {path.read_bytes()[-200:]!r}")
        session.isWhole("disk full")
    finally:
        disk.empty()
    desk.menu("p", "s")
    waitFor(saved, "the profile is saved now that there is room")
    ini = readIni()
    checkEqual([ini["another"]["netport"], ini["kept"]["note"], len(ini["filler"]["key"])],
               [str(session.peer.port), "of another program", len(filler) - 16], "the file")
    check("another" in ini["Settings"]["Profiles"].split(), "the list of names")


def fullDiskForTheLog():
    """A line that cannot be written is an error of what wrote it, and stands in the log whole or not at all. The session
    whose log cannot be written ends, as described; the next one is logged when there is room."""
    disk, place = session.disk, session.disk.path / "output.txt"
    with Peer() as peer:
        writeProfiles({"logged": netProfile(peer.port)}, Logging="1")
        with Desk("logged") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            log = Path(desk.scratch) / "output.txt"
            log.unlink()
            log.symlink_to(place)
            desk.focus()
            peer.send(b"first")
            desk.waitText("first", row=0)
            # Forty bytes of the log's last block are left.
            before = waitFor(place.read_bytes, "the log")
            place.write_bytes(before + b"x" * (4096 - (len(before) + 42) % 4096) + b"\r\n")
            disk.fill()
            try:
                peer.send(b"what the log has no room for" * 4)
                desk.messageBox("An unexpected error 75 has occurred\r\nroutine: ")
                # Others follow: also what ends the session is logged.
                for _ in range(20):
                    if desk.boxes():
                        desk.answer(desk.boxes()[0], "OK")
                desk.noBoxes()
                desk.waitState("g_bConnectActive", False)
                waitFor(lambda: peer.ended == 1, "the session ends")
                check(place.read_bytes().endswith(b"\r\n"), f"the log ends with {place.read_bytes()[-80:]!r}")
            finally:
                disk.empty()
            size = place.stat().st_size
            desk.connectionMenu("c")
            desk.gone("frmConn")
            desk.waitState("g_bConnectActive", True)
            peer.send(b"second")
            desk.waitText("second")
            desk.noBoxes()
            check(b"connectPort() - Connection Type: Network\r\n" in place.read_bytes()[size:], "the log goes on")


def displayGone():
    """The program ends, and its session with it; no process is left."""
    display = Display()
    try:
        with Peer() as peer:
            writeProfiles({"net": netProfile(peer.port)})
            with Program("net", environment={"DISPLAY": display.name}) as program:
                program.waitState("g_bConnectActive", True)
                display.kill()
                waitFor(lambda: not program.alive(), "the program ends without its display")
            waitFor(lambda: peer.ended == 1, "the host's session ends")
    finally:
        display.close()


def inMountsOfItsOwn():
    """Starts this test once more where what it mounts is its own, and gone with it. Without the privilege it stays here."""
    words = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    if MOUNTS not in os.environ and subprocess.run([*words, "true"], stderr=subprocess.DEVNULL).returncode == 0:
        os.environ[MOUNTS] = "own"
        os.execvp("unshare", [*words, sys.executable, *sys.argv])


inMountsOfItsOwn()
with Session() as session:
    run(gdiObjects, addressSpace, clockIsSet, fileOfOthers, fullDiskForProfiles, fullDiskForTheLog, displayGone)
