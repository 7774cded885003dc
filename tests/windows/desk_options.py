"""The Options dialog by keyboard alone, its messages, and odd input into every text box."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, setClipboard  # noqa: E402
from program import check, checkEqual, iniPath, readIni, run, waitFor, writeProfiles  # noqa: E402

BUTTONS = ["cmdOK", "cmdCancel", "cmdHelp"]
# By tab: what the Tab key visits behind the strip, and the letters of the labels.
NETWORK = (["optNetwork", "txtNetAddress", "txtNetPort"], {"a": "txtNetAddress", "e": "txtNetPort"})
SERIAL = (["optSerial", "cmbPort", "cmbBaudRate", "cmbParity", "cmbData", "cmbStop", "cmbFlow"],
          {"p": "cmbPort", "b": "cmbBaudRate", "r": "cmbParity", "d": "cmbData", "t": "cmbStop", "f": "cmbFlow"})
MODEM = (["txtPhoneNumber", "txtDialPrefix", "txtDialSuffix", "txtHangup", "txtReset"],
         {"p": "txtPhoneNumber", "d": "txtDialPrefix", "s": "txtDialSuffix", "g": "txtHangup", "r": "txtReset"})
TIMEOUT = (["txtConnectTimeout", "chkAuto"], {"c": "txtConnectTimeout"})
FONT = (["option3DMedium"], {})


def openOptions(desk):
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    desk.focusIs("fptOptions")


def walks(desk, tab):
    """Tab visits the controls in reading order and comes round again; letters lead to their boxes."""
    order, letters = tab
    for control in [*order, *BUTTONS, "fptOptions"]:
        desk.key("Tab")
        desk.focusIs(control)
    desk.key("shift+Tab")
    desk.focusIs("cmdHelp")
    desk.key("Tab")
    for letter, control in letters.items():
        desk.key("alt+" + letter)
        desk.focusIs(control)
    # Back on the strip.
    for _ in range(len(order)):
        if desk.ask("focus")["control"] == "fptOptions":
            break
        before = desk.ask("focus")["control"]
        desk.key("shift+Tab")
        waitFor(lambda: desk.ask("focus")["control"] != before, "Shift+Tab goes back")
    desk.focusIs("fptOptions")


def tabIs(desk, index):
    waitFor(lambda: desk.controls("frmOptions")["fptOptions"]["index"] == index, f"tab {index} is shown")


def byKeyboard():
    writeProfiles({"box": {"connect": "net", "host": "a.example", "netport": 2323, "Font": "medium"}},
                  Order="box ")
    with Desk() as desk:
        desk.menu("p", "o")
        desk.dialog("frmprof")
        desk.key("Down", "Home", "alt+o", "Tab", "Tab", "space")
        desk.gone("frmprof")
        desk.waitCaption("box")
        openOptions(desk)
        walks(desk, NETWORK)
        desk.key("Right")
        tabIs(desk, 1)
        walks(desk, MODEM)
        desk.key("Right")
        tabIs(desk, 2)
        walks(desk, TIMEOUT)
        desk.key("Right")
        tabIs(desk, 3)
        walks(desk, FONT)
        desk.key("ctrl+Tab")
        tabIs(desk, 0)
        desk.key("ctrl+Prior")
        tabIs(desk, 3)
        desk.key("ctrl+Next")
        tabIs(desk, 0)
        desk.key("alt+s")
        desk.focusIs("optSerial")
        desk.key("shift+Tab")
        desk.focusIs("fptOptions")
        walks(desk, SERIAL)
        # Escape keeps nothing.
        desk.key("Escape")
        desk.gone("frmOptions")
        state, profile = desk.ask("state", "profile")
        checkEqual([state["g_bProfileChanged"], profile["connect"], profile["host"], profile["port"]],
                   [False, 0, "a.example", 2323], "after Escape")
        fillsByKeyboard(desk)
        messages(desk)
        oddInput(desk)


def fillsByKeyboard(desk):
    """A modem profile, without a mouse."""
    openOptions(desk)
    desk.key("alt+m", "alt+p", "Down", "alt+b", "Up", "alt+r", "Down", "Down", "alt+d", "Up", "alt+t", "End", "alt+f",
             "End")
    desk.key("ctrl+Tab", "alt+p")
    desk.focusIs("txtPhoneNumber")
    desk.fill("0800 12-34")
    desk.key("alt+g")
    desk.fill("ATH0")
    desk.key("ctrl+Tab", "alt+c")
    desk.fill("120")
    desk.key("alt+a")
    waitFor(lambda: desk.controls("frmOptions")["chkAuto"]["value"], "Alt+A ticks Auto Retry")
    desk.key("ctrl+Tab", "alt+l")
    waitFor(lambda: desk.controls("frmOptions")["option3DLarge"]["value"], "Alt+L chooses Large")
    desk.key("Return")
    desk.gone("frmOptions")
    profile = desk.ask("profile")
    expected = {"connect": 2, "commport": 2, "baud": 4800, "parity": "e", "databits": 7, "stopBits": "2",
                "flowControl": 3, "phone": "0800 12-34", "prefix": "ATDT", "hangup": "ATH0", "timeout": 120,
                "auto_retry": True, "fontsize": 11, "host": "a.example"}
    checkEqual({key: type(expected[key])(profile[key]) for key in expected}, expected, "the profile after OK")
    desk.menu("p", "s")
    desk.waitState("g_bProfileChanged", False)
    saved = {key.lower(): value for key, value in readIni()["box"].items()}
    checkEqual({key: saved[key] for key in ("connect", "commport", "phone", "auto_retry", "font", "flowcontrol")},
               {"connect": "modem", "commport": "2", "phone": "0800 12-34", "auto_retry": "1", "font": "large",
                "flowcontrol": "3"}, "the profile in the file")


def refused(desk, title, text):
    desk.key("Return")
    desk.waitBoxTitle(title)
    box = next(window for window in desk.ask("windows") if window["title"] == title)
    texts = [child["text"] for child in box["children"]]
    check(text in texts, f"{text!r} is told: {texts}")
    desk.key("Return")
    desk.dialog("frmOptions")


def messages(desk):
    before = desk.ask("profile")
    openOptions(desk)
    desk.key("alt+n", "ctrl+Tab", "ctrl+Tab", "alt+c")
    for text in ("0", "", "none", "-5"):
        desk.fill(text)
        refused(desk, "Zentora Terminal Emulator", "Connection timeout must be betweeen 1-999")
        checkEqual(desk.text("frmOptions", "txtConnectTimeout"), text, "the entry stays")
    desk.fill("1000")
    desk.key("ctrl+shift+Tab", "ctrl+shift+Tab", "alt+e")
    for text in ("65536", "-1", "99999999999999999999"):
        desk.fill(text)
        refused(desk, "Bad Network Port", "Invalid network port number")
    checkEqual(desk.ask("profile"), before, "the profile after refusals")
    desk.fill("65535")
    desk.key("Return")
    desk.gone("frmOptions")
    profile = desk.ask("profile")
    checkEqual([profile["port"], profile["timeout"], profile["connect"]], [65535, 1000, 0], "the limits pass")
    # More seconds than the record holds: a report, and nothing is lost.
    openOptions(desk)
    desk.key("ctrl+Tab", "ctrl+Tab", "alt+c")
    desk.fill("32768")
    desk.key("Return")
    box = desk.messageBox("recordChanges")
    check(any("Overflow" in child["text"] for child in box["children"]), f"the report names the overflow: {box}")
    desk.key("Return")
    desk.dialog("frmOptions")
    checkEqual(desk.ask("profile")["timeout"], 1000, "the time-out after the overflow")
    desk.key("Escape")
    desk.gone("frmOptions")


BOXES = [(0, "alt+a", "txtNetAddress"), (0, "alt+e", "txtNetPort"), (1, "alt+p", "txtPhoneNumber"),
         (1, "alt+d", "txtDialPrefix"), (1, "alt+s", "txtDialSuffix"), (1, "alt+g", "txtHangup"),
         (1, "alt+r", "txtReset"), (2, "alt+c", "txtConnectTimeout")]


def oddInput(desk):
    """Pasted into every box: too much, line ends and control characters, what means something in the file."""
    desk.menu("p", "s")
    desk.waitState("g_bProfileChanged", False)
    for what, text in (("long", "x" * 40000), ("control", "1\a\b\x1b\x7f\xff;=[]"), ("lines", "7\r\n[evil]\r\nkey=1"),
                       ("quoted", "-h \"a b\" & 'c' %1")):
        setClipboard(text)
        openOptions(desk)
        tab = 0
        for wanted, letter, control in BOXES:
            while tab < wanted:
                desk.key("ctrl+Tab")
                tab += 1
            desk.key(letter)
            desk.focusIs(control)
            desk.key("Home", "shift+End", "ctrl+v")
            waitFor(lambda: desk.text("frmOptions", control)[:1] == text[0], f"{what} text is in {control}")
        # Numbers that are none are refused or taken as far as they are some.
        desk.fill("45")
        desk.key("ctrl+shift+Tab", "ctrl+shift+Tab", "alt+e")
        desk.fill("23")
        desk.key("Return")
        desk.gone("frmOptions")
        desk.menu("p", "s")
        desk.waitState("g_bProfileChanged", False)
        checkEqual(sorted(readIni()), ["Settings", "box"], f"the sections of the file after {what} text")
        check("key" not in readIni()["box"], "no key has slipped in")
        host = desk.ask("profile")["host"]
        if what == "lines":
            checkEqual(host, "7", "the first line alone")
            continue
        # No such host can be connected to, and nothing worse comes of it.
        desk.menu("c", "c")
        desk.dialog("frmConn")
        checkEqual(desk.label("frmConn", "lblConn"), f"Opening network connection to host: {host}", "the status")
        desk.key("Escape")
        desk.gone("frmConn")
        desk.noBoxes()
    namesOfProfiles(desk)


def namesOfProfiles(desk):
    """Pasting into the name box passes the same sieve as typing."""
    desk.menu("p", "a")
    desk.dialog("frmprof")
    setClipboard("new [name]\r\n=7\x1b")
    desk.key("ctrl+v", "shift+Insert")
    waitFor(lambda: desk.text("frmprof", "txtprof") != "", "something is pasted")
    check(desk.text("frmprof", "txtprof") in ("newname7", "newname7newname7"),
          f"letters and digits are pasted: {desk.text('frmprof', 'txtprof')!r}")
    desk.key("Escape")
    desk.gone("frmprof")
    check(iniPath().exists() and desk.alive(), "the program goes on")


run(byKeyboard)
