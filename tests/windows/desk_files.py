"""Files that nobody should have written: the program starts with any qxterm.ini and loses nothing of it."""

import os
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk  # noqa: E402
from program import check, checkEqual, iniPath, readIni, run  # noqa: E402

LOOP = b"[kept]\r\nconnect=loop\r\nFont=small\r\nnote=of another program\r\n"
SETTINGS = b"[Settings]\r\nProfiles=kept \r\nOrder=kept \r\nColour=blue\r\n"


def survives(what, content, profile="kept", saved=True, phone=""):
    """Starts with the content, connects the profile by its menu entry where it is listed, closes; the file keeps what it held.
    phone: what the profile's key "phone" is read as."""
    iniPath().write_bytes(content)
    with Desk() as desk:
        desk.waitCaption("(untitled)")
        if profile:
            desk.menu("p", "1")
            desk.waitCaption(profile)
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            desk.type("alive")
            desk.waitText("alive", row=0)
            checkEqual(desk.ask("profile")["phone"], phone, f"{what}: the phone number")
            desk.connectionMenu("d")
            desk.waitState("g_bConnectActive", False)
            if saved:
                desk.menu("p", "s")
        checkEqual(desk.ask("state")["g_lPortForwardStart"], 3000, f"{what}: the port range")
    after = iniPath().read_bytes()
    for line in content.split(b"\r\n"):
        if b"=" in line and not line.startswith((b"Profiles", b"Order", b"Font", b"connect")):
            check(line.split(b"=", 1)[1] in after, f"{what}: {line[:40]!r} is still in the file")
    return after


def emptyAndHeadless():
    survives("an empty file", b"", profile="")
    survives("no section at all", b"Profiles=kept\r\nColour=red\r\n;[Settings\r\n]]\r\n", profile="")


def twoEqualSections():
    survives("two equal sections", SETTINGS + LOOP + b"[kept]\r\nconnect=net\r\nsecond=yes\r\n[Settings]\r\nOther=1\r\n")


def longValues():
    """Read as far as one read goes, and whole in the file as long as the profile is not saved."""
    long = b"x" * 65536
    content = SETTINGS + LOOP + b"host=" + long + b"\r\nphone=" + long[:65535] + b"y\r\n"
    after = survives("values of 64 KB", content, saved=False, phone="x" * 512)
    check(long in after, "the long value is whole")


def embeddedZeros():
    """Zero bytes in a value, a key, a section's name, a list of names, and in a line of its own. The system takes a line
    to its first zero; the lines without one are read, and stay when the profile is saved."""
    content = (b"[Settings]\r\nProfiles=kept z\0y \r\nOrder=kept z\0y \r\nColour=blue\r\n\0\r\n[o\0ther]\r\nother=1\r\n"
               + LOOP + b"host=a\0b\r\nho\0st=c\r\nparity=\0\r\nafter=2\r\n")
    iniPath().write_bytes(content)
    with Desk() as desk:
        checkEqual(desk.ask("lists")["profiles"], ["kept", "z"], "the known names")
        desk.menu("p", "1")
        desk.waitCaption("kept")
        desk.waitState("g_bConnectActive", True)
        desk.gone("frmConn")
        desk.type("alive")
        desk.waitText("alive", row=0)
        desk.connectionMenu("d")
        desk.waitState("g_bConnectActive", False)
        desk.menu("p", "s")
        desk.close()
        desk.waitEnd()
    ini = readIni()
    checkEqual([ini["Settings"]["Colour"], ini["kept"]["note"], ini["kept"]["after"], ini["kept"]["connect"]],
               ["blue", "of another program", "2", "loop"], "the lines without a zero")
    check(b"other=1" in iniPath().read_bytes(), "the section with a zero in its name")


def twoWindowsSave():
    """Each window knows only of the profiles it has read or made: the file keeps them all."""
    iniPath().write_bytes(SETTINGS + LOOP)

    def saveAs(desk, name):
        desk.menu("p", "a")
        desk.dialog("frmprof")
        desk.fill(name)
        desk.key("Return")
        desk.gone("frmprof")
        desk.waitCaption(name)

    with Desk() as one:
        saveAs(one, "first")
        with Desk() as two:
            saveAs(one, "second")
            saveAs(two, "third")
            saveAs(one, "fourth")
            checkEqual(two.ask("lists")["profiles"], ["kept", "first", "third"], "what the second window knows")
            two.close()
            two.waitEnd()
        one.close()
        one.waitEnd()
    ini = readIni()
    checkEqual(sorted(ini["Settings"]["Profiles"].split()), ["first", "fourth", "kept", "second", "third"],
               "the names in the file")
    for name in ("first", "second", "third", "fourth"):
        checkEqual(ini[name]["connect"], "ssh", f"profile {name}")
    checkEqual([ini["kept"]["note"], ini["Settings"]["Colour"]], ["of another program", "blue"], "what stood in the file")
    check(all(int(number) >= 0 for number in ini["Settings"]["Window"].split()), "the window's place")


def tenMegabytes():
    filler = b"".join(b"[section%d]\r\nkey=%s\r\n" % (n, b"v" * 1000) for n in range(10000))
    after = survives("10 MB", SETTINGS + LOOP + filler)
    checkEqual(after.count(b"key=" + b"v" * 1000), 10000, "the other sections")


def readOnly():
    """A file that nobody may write to is read; what is saved is lost, and the session goes on."""
    path = iniPath()
    content = SETTINGS + LOOP
    path.write_bytes(content)
    path.chmod(0o444)
    try:
        check(not os.access(path, os.W_OK), "the file is read-only for the user of this test, too")
        with Desk() as desk:
            desk.menu("p", "1")
            desk.waitCaption("kept")
            desk.gone("frmConn")
            check(desk.ask("state")["g_bConnectActive"], "a read-only file is read")
            desk.menu("p", "s")
            desk.noBoxes()
            desk.type("alive")
            desk.waitText("alive", row=0)
        checkEqual(path.read_bytes(), content, "what the file holds")
    finally:
        path.chmod(0o644)


def withoutOverride():
    """Starts this test once more as a user whom the permissions of files hold, which root is not."""
    if os.geteuid() == 0 and os.environ.get("HELD_BY_PERMISSIONS") is None:
        os.environ["HELD_BY_PERMISSIONS"] = "yes"
        os.execvp("setpriv", ["setpriv", "--bounding-set", "-dac_override", "--inh-caps", "-dac_override", sys.executable,
                              *sys.argv])


withoutOverride()
run(emptyAndHeadless, twoEqualSections, longValues, embeddedZeros, tenMegabytes, readOnly, twoWindowsSave)
