"""Profiles in the real window: the first start, New, Save As, Open, the recent entries, closing, the next start."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, silentHost  # noqa: E402
from peers import DemonstrationHost, Peer  # noqa: E402
from program import (check, checkEqual, iniPath, netProfile, readIni, run, waitFor, writeIni,  # noqa: E402
                     writeProfiles, xdotool)

TWIPS = 15  # per pixel at 96 dots per inch
SCREEN = (1024, 768)


def section(name):
    return {key.lower(): value for key, value in readIni()[name].items()}


def newThroughToAConnection(desk, port):
    desk.menu("p", "n")
    desk.dialog("frmOptions")
    checkEqual(desk.ask("forms")["frmOptions"]["caption"], "Options for profile: profile1", "the dialog's caption")
    desk.key("alt+n")
    waitFor(lambda: desk.text("frmOptions", "txtNetPort") == "23", "Network proposes port 23")
    desk.key("alt+a")
    desk.fill("127.0.0.1")
    desk.key("alt+e")
    desk.fill(str(port))
    desk.key("Return")
    desk.dialog("frmprof")
    desk.focusIs("txtprof")
    check(not desk.controls("frmprof")["cmd3Dconn"]["enabled"], "OK waits for a name")
    desk.type("my prof-1_")
    waitFor(lambda: desk.text("frmprof", "txtprof") == "myprof1", "the name keeps letters and digits")
    desk.key("Return")
    desk.waitText("Login:")
    desk.gone("frmConn")
    desk.waitCaption("myprof1")


def firstStart():
    iniPath().unlink(missing_ok=True)
    with DemonstrationHost() as host:
        with Desk() as desk:
            desk.waitCaption("(untitled)")
            left, top, width, height = desk.ask("places")["frmterm"]["place"]
            check(abs(left * 2 + width - SCREEN[0]) <= 2 and abs(top * 2 + height - SCREEN[1]) <= 2,
                  f"the window is in the middle: {(left, top, width, height)}")
            checkEqual(readIni(), {"Settings": {"PortForwardRangeStart": "3000"}}, "qxterm.ini after the first start")
            checkEqual(desk.entries("profile"), {"&New": True, "&Open...": True, "&Save": True, "Save &As...": True,
                                                 "E&xit": True}, "the Profile menu without profiles")
            newThroughToAConnection(desk, host.port)
            profile = section("myprof1")
            keys = ("connect", "host", "netport", "sshnetport", "timeout", "baud")
            checkEqual({key: profile.get(key) for key in keys},
                       {"connect": "net", "host": "127.0.0.1", "netport": str(host.port), "sshnetport": None,
                        "timeout": "45", "baud": "9600"}, "the saved profile")
            checkEqual([section("Settings")[key].split() for key in ("profiles", "order")], [["myprof1"], ["myprof1"]],
                       "the lists")
            checkEqual(desk.entries("profile"), {"&New": False, "&Open...": False, "&Save": True, "Save &As...": True,
                                                 "&1 myprof1": False, "E&xit": True}, "the Profile menu in a session")
            # Closing with a session, refused: nothing has happened.
            desk.close()
            desk.answer("A connection is active, exit anyway?", "No")
            check(desk.alive() and desk.ask("state")["g_bConnectActive"], "the session goes on")
            check("window" not in section("Settings"), "the position is not written")
            desk.menu("c", "d")
            desk.waitState("g_bConnectActive", False)
            checkEqual(desk.entries("profile")["&1 myprof1"], True, "the recent entry after the session")
            unsavedChanges(desk)
        secondStart(host.port)


def changeTimeout(desk, seconds):
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    desk.key("ctrl+Tab", "ctrl+Tab", "alt+c")
    desk.focusIs("txtConnectTimeout")
    desk.fill(str(seconds))
    desk.key("Return")
    desk.gone("frmOptions")
    desk.waitState("g_bProfileChanged", True)


def unsavedChanges(desk):
    changeTimeout(desk, 44)
    checkEqual(section("myprof1")["timeout"], "45", "the time-out before Save")
    desk.menu("p", "s")
    desk.waitState("g_bProfileChanged", False)
    checkEqual(section("myprof1")["timeout"], "44", "the time-out after Save")
    changeTimeout(desk, 43)
    desk.close()
    desk.answer("Save changes to profile: myprof1?", "Cancel")
    check(desk.alive(), "Cancel keeps the window")
    window = desk.ask("places")["frmterm"]["place"]
    checkEqual(section("Settings")["window"], f"{window[0] * TWIPS} {window[1] * TWIPS}", "the position after Cancel")
    found = desk.mainWindowId()
    xdotool("windowmove", "--sync", found, 40, 60)
    waitFor(lambda: desk.ask("places")["frmterm"]["place"][:2] != window[:2], "the window has moved")
    firstStart.place = desk.ask("places")["frmterm"]["place"]
    desk.close()
    desk.answer("Save changes to profile: myprof1?", "Yes", ends=True)
    checkEqual(section("myprof1")["timeout"], "43", "the time-out after closing with Yes")


def secondStart(port):
    with Desk("myprof1") as desk:
        desk.waitText("Login:")
        desk.gone("frmConn")
        desk.waitCaption("myprof1")
        checkEqual(desk.ask("places")["frmterm"]["place"], firstStart.place, "the window stands where it stood")
        profile = desk.ask("profile")
        checkEqual({key: profile[key] for key in ("name", "connect", "host", "port", "timeout")},
                   {"name": "myprof1", "connect": 0, "host": "127.0.0.1", "port": port, "timeout": 43}, "the profile")
        checkEqual(desk.ask("lists")["profiles"], ["myprof1"], "the known profiles")
        check("&1 myprof1" in desk.entries("profile"), "the recent entry is there")
        desk.close()
        desk.answer("A connection is active, exit anyway?", "Yes", ends=True)


def openAndRecent():
    with Peer(lambda connection: connection.sendall(b"Welcome")) as peer:
        profiles = {name: netProfile(peer.port) for name in ("north", "south", "east")}
        writeProfiles(profiles, Order="south east ")
        # A name whose section is missing stands in the list all the same.
        ini = readIni()
        ini["Settings"]["Profiles"] += "gone "
        ini["Settings"]["Colour"] = "blue"
        ini["east"]["note"] = "kept"
        writeIni(ini)
        with Desk("South") as desk:
            desk.waitCaption("(untitled)")
            openByKeyboard(desk)
            recent(desk, peer)
            saveAs(desk)
            openASectionThatIsMissing(desk)
            desk.menu("p", "x")
            desk.waitEnd()
        checkEqual([readIni()["Settings"]["Colour"], section("east")["note"]], ["blue", "kept"],
                   "what the program does not know stays")


def openByKeyboard(desk):
    desk.menu("p", "o")
    desk.dialog("frmprof")
    desk.focusIs("lstprof")
    controls = desk.controls("frmprof")
    checkEqual(controls["lstprof"]["items"], ["north", "south", "east", "gone"], "the list")
    checkEqual([controls[name]["enabled"] for name in ("cmd3Dconn", "cmd3Dopen")], [False, False],
               "the buttons before a choice")
    desk.key("Down", "Down")
    waitFor(lambda: desk.text("frmprof", "txtprof") in ("south", "north", "east"), "the list chooses")
    desk.key("Home")
    waitFor(lambda: desk.text("frmprof", "txtprof") == "north", "Home chooses the first name")
    for control in ("cmd3Dconn", "cmd3Dopen", "cmd3Dcancel", "cmd3Dhelp", "lstprof", "cmd3Dconn", "cmd3Dopen"):
        desk.key("Tab")
        desk.focusIs(control)
    desk.key("space")
    desk.gone("frmprof")
    desk.waitCaption("north")
    check(not desk.ask("state")["g_bConnectActive"], "Open does not connect")
    # Escape leaves everything as it was.
    desk.menu("p", "o")
    desk.dialog("frmprof")
    desk.focusIs("lstprof")
    desk.key("End", "Escape")
    desk.gone("frmprof")
    desk.waitCaption("north")
    # Enter in the list connects.
    desk.menu("p", "o")
    desk.dialog("frmprof")
    desk.focusIs("lstprof")
    # The first key chooses the entry with the frame, whichever key it is.
    desk.key("Down", "End", "Up")
    waitFor(lambda: desk.text("frmprof", "txtprof") == "east", "the third name is chosen")
    desk.key("Return")
    desk.waitText("Welcome")
    desk.gone("frmConn")
    desk.waitCaption("east")
    desk.menu("c", "d")
    desk.waitState("g_bConnectActive", False)
    checkEqual(desk.ask("lists")["mru"][:3], ["east", "north", "south"], "the recent names")


def recent(desk, peer):
    desk.menu("p", "3")
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")
    desk.waitCaption("south")
    check(len(peer.connections) >= 2, "the recent entry connects")
    desk.menu("c", "d")
    desk.waitState("g_bConnectActive", False)
    checkEqual([entry for entry in desk.entries("profile") if entry[:2] in ("&1", "&2", "&3")],
               ["&1 south", "&2 east", "&3 north"], "the recent entries")
    checkEqual(section("Settings")["order"].split(), ["south", "east", "north"], "the recent names in the file")


def saveAs(desk):
    before = readIni()["north"]
    desk.menu("p", "a")
    desk.dialog("frmprof")
    desk.type("north")
    desk.key("Return")
    desk.answer("The profile north exists, do you want to replace it?", "No")
    desk.dialog("frmprof")
    checkEqual(desk.text("frmprof", "txtprof"), "north", "the name after No")
    checkEqual(readIni()["north"], before, "the profile after No")
    for control in ("lstprof", "cmd3Dconn", "cmd3Dcancel", "cmd3Dhelp", "txtprof"):
        desk.key("Tab")
        desk.focusIs(control)
    desk.fill("west2")
    desk.key("Return")
    desk.gone("frmprof")
    desk.waitCaption("west2")
    checkEqual([readIni()["Settings"]["Profiles"].split(), section("west2")["connect"]],
               [["north", "south", "east", "gone", "west2"], "net"], "the new profile in the file")
    checkEqual(next(iter(entry for entry in desk.entries("profile") if entry.startswith("&1"))), "&1 west2",
               "the first recent entry")


def openASectionThatIsMissing(desk):
    desk.menu("p", "o")
    desk.dialog("frmprof")
    desk.focusIs("lstprof")
    desk.key("Home", "Down", "Down", "Down")
    waitFor(lambda: desk.text("frmprof", "txtprof") == "gone", "the name without a section is chosen")
    desk.key("Tab", "Tab", "space")
    desk.gone("frmprof")
    desk.noBoxes()
    desk.waitCaption("gone")
    checkEqual({key: desk.ask("profile")[key] for key in ("connect", "baud", "parity", "timeout")},
               {"connect": 1, "baud": 9600, "parity": "n", "timeout": 45}, "the defaults of an empty profile")


def smallDialogs():
    """About and the status dialog by keyboard, and a start with a file that cannot be right."""
    with silentHost() as port:
        writeProfiles({"silent": netProfile(port)}, Order="silent ", Window="far left", timeout=30)
        with Desk(waiting=False) as desk:
            box = desk.messageBox("routine: readIniFile", 60)
            check(any("Type mismatch" in child["text"] for child in box["children"]), f"the report: {box}")
            desk.answer("routine: readIniFile", "OK")
            desk.waitStart()
            desk.waitCaption("(untitled)")
            for key in ("Return", "Escape", "space"):
                desk.menu("h", "a")
                desk.dialog("frmSplash")
                desk.focusIs("cmdOK")
                checkEqual(desk.label("frmSplash", "lblVersion"), "Version 19.2.NC.06", "the version")
                desk.key(key)
                desk.gone("frmSplash")
            desk.menu("p", "1")
            desk.dialog("frmConn")
            desk.focusIs("cmdCancel")
            checkEqual(desk.label("frmConn", "lblConn"), "Opening network connection to host: 127.0.0.1", "the status")
            desk.key("Escape")
            desk.gone("frmConn")
            check(not desk.ask("state")["g_bConnectActive"], "the attempt is given up")
            checkEqual(desk.entries("connection"), {"&Connect": True, "&Disconnect": False, "Send &Break": False,
                                                    "&Options...": True}, "the Connection menu afterwards")
            # The box for the host's name that is missing, and the options behind it.
            desk.menu("c", "o")
            desk.dialog("frmOptions")
            desk.key("alt+a")
            desk.fill("")
            desk.key("Return")
            desk.gone("frmOptions")
            desk.menu("c", "c")
            desk.answer("You must specify a hostname to connect to", "OK")
            desk.dialog("frmOptions")
            desk.key("Escape")
            desk.gone("frmOptions")


run(firstStart, openAndRecent, smallDialogs)
