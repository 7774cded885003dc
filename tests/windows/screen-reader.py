"""What a screen reader or a magnifier in another process learns: the screen's text, the caret, news, the controls."""

import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, clipboard, silentHost  # noqa: E402
from peers import DemonstrationHost, Peer  # noqa: E402
from program import check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402
from reader import (FOCUSABLE, FOCUSED, READ_ONLY, SELECTED, STATIC_TEXT, TEXT, Listening, heldObject,  # noqa: E402
                    readControls, readScreen, rowsRead)

ROWS = list(range(1, 26))
INVALID_ARGUMENT = 0x80070057
SHIFT_OUT, BLINK = 1, 8


def asRead(desk):
    """What the records make of each row: line drawing and text in the colour of its background are blanks."""
    screen = desk.ask("screen")
    rows = []
    for text, words in zip(screen["rows"], screen["attrs"]):
        row = ""
        for character, word in zip(text, words):
            lines = word & SHIFT_OUT and "j" <= character <= "x"
            row += " " if lines or (word >> 8) & 15 == (word >> 12) & 15 else character
        rows.append(row.rstrip())
    return rows


def agrees(desk, what):
    waitFor(lambda: rowsRead() == asRead(desk), lambda: f"{what}: what is read, and what stands there:\n"
            + "\n".join(f"{a!r}\n{b!r}" for a, b in zip(rowsRead(), asRead(desk)) if a != b))


def caretIsAtCursor(desk, what):
    """The caret covers the cursor's cell, in pixels of the picture box."""

    def wanted():
        screen, view = desk.ask("screen", "view")
        (column, row), (width, height) = screen["cursor"], view["cell"]
        return {"here": True, "focus": True, "place": [min(column, 79) * width, row * height, width, height]}

    waitFor(lambda: readScreen()["caret"] == wanted(),
            lambda: f"the caret {what}: {wanted()}; there is {readScreen()['caret']}")


def structure(desk):
    """One object for the screen, and each row a child of it, which is found by every way that there is."""
    screen = readScreen()
    checkEqual((screen["name"], screen["role"]), ("Terminal screen", TEXT), "the screen's object")
    checkEqual(screen["state"] & (READ_ONLY | FOCUSABLE | FOCUSED), READ_ONLY | FOCUSABLE | FOCUSED, "its state")
    checkEqual([row["name"] for row in screen["rows"]], [f"Row {n}" for n in ROWS[:-1]] + ["Status line"], "the rows' names")
    checkEqual({row["role"] for row in screen["rows"]}, {STATIC_TEXT}, "the rows' roles")
    checkEqual(screen["value"], "".join(f"{row['value']}\r\n" for row in screen["rows"]), "the screen's value")
    for way in ("forward", "children", "hits"):
        checkEqual(screen[way], ROWS, f"the rows, {way}")
    checkEqual(screen["backward"], ROWS[::-1], "the rows from the last")
    checkEqual((screen["outside"], screen["beyond"]), (1, INVALID_ARGUMENT), "beside the screen, and behind its last row")
    checkEqual((screen["focus"], screen["selection"], screen["parent"]), (0, None, "the window"), "focus and parent")
    places, view = desk.ask("places", "view")
    left, top, _, _ = places["picterm"]
    width, height = view["cell"]
    checkEqual(screen["place"], places["picterm"], "the screen's place")
    checkEqual([row["place"] for row in screen["rows"]],
               [[left, top + n * height, 80 * width, height] for n in range(25)], "the rows' places")


def screens():
    """The demonstration host's screens, with boxes, colours and blinking text."""
    with DemonstrationHost() as host:
        writeProfiles({"demo": netProfile(host.port)})
        with Desk("demo") as desk:
            desk.waitText("Sign-on", row=0)
            desk.gone("frmConn")
            desk.focus()
            structure(desk)
            agrees(desk, "the sign-on")
            caretIsAtCursor(desk, "at the sign-on")
            desk.type("Anna")
            desk.waitText("Anna")
            caretIsAtCursor(desk, "behind the name")
            column, row = desk.ask("screen")["cursor"]
            described = readScreen()
            checkEqual(described["rows"][row]["description"], f"Cursor in column {column + 1}", "the cursor's row")
            checkEqual(described["description"], f"Cursor in row {row + 1}, column {column + 1}", "the cursor's place")
            desk.key("Return")
            desk.waitText("Password:")
            desk.type("secret")
            desk.key("Return")
            desk.waitText("Main menu", row=0)
            agrees(desk, "the menu")
            buttons = [control["name"] for control in readControls()["controls"] if control["class"] == "Button"]
            checkEqual([name[:2] for name in buttons], [f"F{n}" for n in range(1, 9)], "the keys of the buttons")
            captions = [" ".join(caption.split()) for caption in desk.ask("keys")["captions"]]
            checkEqual(buttons, captions, "the buttons' names, which the host begins with the key")
            check(any(row["value"] for row in described["rows"]), "rows with text")
            for key, title in (("F2", "Agents and queues"), ("F1", "Display guide"), ("F3", "Call-back request")):
                desk.key(key)
                desk.waitText(title, row=0)
                agrees(desk, title)
                desk.key("F6")
                desk.waitText("Main menu", row=0)
            # The caret is the screen's while the screen has the keyboard.
            desk.menu("c", "o")
            desk.dialog("frmOptions")
            waitFor(lambda: not readScreen()["caret"]["here"], "a dialog takes the caret")
            desk.key("Escape")
            desk.gone("frmOptions")
            caretIsAtCursor(desk, "behind a dialog")


def marking(desk, peer):
    """Selecting in the scrollback, by keyboard alone, as a reader follows it."""
    peer.send(b"".join(b"line %02d of the record\r\n" % n for n in range(60)))
    desk.waitText("line 59", row=22)
    peer.received.clear()
    desk.key("shift+Prior")
    waitFor(lambda: rowsRead()[0] == "line 13 of the record", lambda: f"Shift+Page Up: {rowsRead()[0]!r} at the top")
    desk.key("shift+Home")
    waitFor(lambda: rowsRead()[0] == "line 00 of the record", lambda: f"Shift+Home: {rowsRead()[0]!r} at the top")
    desk.key("ctrl+Next", "ctrl+Next", "ctrl+Next")  # the first puts up the mark
    desk.key("alt+shift+End", "ctrl+shift+Next")
    waitFor(lambda: readScreen()["selection"] == [3, 4], lambda: f"two rows are selected: {readScreen()['selection']}")
    screen = readScreen()
    checkEqual([bool(row["state"] & SELECTED) for row in screen["rows"][:6]], [False, False, True, True, False, False],
               "the states of the rows")
    checkEqual(screen["rows"][3]["description"], "Cursor in column 21, selected from column 1 to 21", "the mark's row")
    width, height = desk.ask("view")["cell"]
    checkEqual(screen["caret"]["place"], [20 * width, 3 * height, width, height], "the caret at the mark")
    desk.key("ctrl+Insert")
    expected = "line 02 of the record\r\nline 03 of the record"
    waitFor(lambda: clipboard() == expected, lambda: f"the clipboard holds {expected!r}: {clipboard()!r}")
    desk.key("shift+End")
    waitFor(lambda: rowsRead()[22] == "line 59 of the record", lambda: f"Shift+End: {rowsRead()[22]!r} in row 23")
    caretIsAtCursor(desk, "on the live screen")
    time.sleep(0.3)
    checkEqual(bytes(peer.received), b"", "what these keys have sent")


def news(desk, peer):
    """Few changes are told of at once, many a few times a second, and nothing while nothing changes."""
    peer.send(b"\x1b[H\x1b[J\x1b[5mblinking\x1b[m\r\n")
    desk.waitText("blinking", row=0)
    waitFor(lambda: rowsRead()[0] == "blinking", "the blinking text is read")
    time.sleep(0.5)
    with Listening(2) as quiet:
        pass
    checkEqual((quiet.count("value"), quiet.count("selection")), (0, 0), "announced while text blinks")
    with Listening(3) as typing:
        for letter in b"typed":
            peer.send(bytes([letter]))
            time.sleep(0.25)
    # Each letter, and perhaps two of them once on a slow machine.
    check(3 <= typing.rows.get(1, 0) <= 5, f"five letters are announced one by one: {typing.rows}")
    checkEqual(sorted(typing.rows), [1], "rows announced while somebody types")
    # Wine, unlike Windows, does not announce where its caret goes; the caret itself can be asked.
    caretIsAtCursor(desk, "behind the letters")

    seconds = 4
    stop = time.monotonic() + 2.5
    with Listening(seconds) as flood:
        number = 0
        while time.monotonic() < stop:
            peer.send(b"".join(b"%07d %s\r\n" % (number + n, b"x" * 60) for n in range(200)))
            number += 200
        peer.send(b"\r\nend of the flood")
        desk.waitText("end of the flood", row=23)
    # Every fourth of a second, and for the few lines at the end at once.
    most = max(flood.rows.values())
    check(most <= 4 * seconds + 3, f"a row is announced {most} times in {seconds} s: {flood.rows}")
    check(set(range(24)) <= set(flood.rows), f"every row is announced: {flood.rows}")
    check(flood.count("caret") <= 70 * seconds, f"caret: {flood.counts}")
    checkEqual(rowsRead()[23], "end of the flood", "the last row behind the flood")
    agrees(desk, "the screen behind the flood")


def readingAFlood(desk, peer):
    """A reader asks while output flows: it gets answers, and nothing of the output is lost."""
    stop = threading.Event()

    def flow():
        number = 0
        while not stop.is_set():
            peer.send(b"".join(b"%07d flows\r\n" % (number + n) for n in range(50)))
            number += 50

    feeder = threading.Thread(target=flow)
    feeder.start()
    try:
        for _ in range(2):
            checkEqual(len(rowsRead()), 25, "rows that are read while output flows")
    finally:
        stop.set()
        feeder.join()
    peer.send(b"\r\nall is well")
    desk.waitText("all is well", row=23)
    agrees(desk, "the screen behind the flow")
    desk.noBoxes()


def sessions():
    with Peer() as peer:
        writeProfiles({"record": netProfile(peer.port, Font="medium")})
        with Desk("record") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            desk.focus()
            for part in (marking, news, readingAFlood):
                part(desk, peer)
            # Who still holds the object when the window has gone is told so.
            with heldObject() as answers:
                desk.close()
                desk.answer("A connection is active", "Yes", ends=True)
                checkEqual(desk.process.returncode, 0, "the program's exit status")
                for question, answer in answers().items():
                    check(isinstance(answer, int) and answer >= 0x80000000, f"{question} fails: {answer!r}")


FIELDS = ("Edit", "ComboBox", "ListBox", "SysTabControl32")


def named(desk, form):
    """Each control that can have the keyboard has a name, each field one from a label ahead of it; by letters that the
    visible captions have."""
    controls = readControls()["controls"]
    # Wine tells of nearly everything visible that it can have the keyboard; tab stops, options and fields are those.
    reachable = [one for one in controls if one["tabStop"] or one["class"] in FIELDS or one["shortcut"]]
    check(reachable, f"{form} has controls")
    for one in reachable:
        check(one["name"], f"{form}: a control has no name: {one}")
        if one["class"] in FIELDS:
            check(one["label"], f"{form}: no label stands ahead of a field: {one}")
    return {one["name"]: one for one in controls}


def shortcuts(controls, expected, what):
    """expected: {name: letter}; by the label where the system calls a field so."""
    checkEqual({name: (controls.get(name) or {}).get("shortcut") for name in expected},
               {name: f"Alt+{letter}" for name, letter in expected.items()}, f"the shortcuts, {what}")


def dialogs():
    with silentHost() as silent:
        writeProfiles({"box": {"connect": "modem"}, "silent": netProfile(silent)}, Order="silent box ")
        everyDialog()


def everyDialog():
    with Desk() as desk:
        bar = [one for one in readControls()["controls"] if one["class"] == "ScrollBar"]
        checkEqual([one["name"] for one in bar], ["Scrollback"], "the scroll bar's name")
        for entry, name in (("o", "Open Profile"), ("a", "Save Profile As")):
            desk.menu("p", entry)
            desk.dialog("frmprof")
            check("Profiles" in named(desk, name), f"{name}: the list has a name")
            desk.key("Escape")
            desk.gone("frmprof")
        desk.menu("c", "o")
        desk.dialog("frmOptions")
        desk.key("alt+n")
        shortcuts(named(desk, "Options"), {"Network": "N", "Serial": "S", "Modem": "M", "SSH": "H",
                                           "KRV Network Address:": "A", "Network Port:": "e"}, "network")
        desk.key("alt+m")
        waitFor(lambda: "Flow Control:" in named(desk, "Options"), "the serial settings are shown")
        shortcuts(named(desk, "Options"), {"Port:": "P", "Baud Rate:": "B", "Parity:": "r", "Data Bits:": "D",
                                           "Stop Bits:": "t", "Flow Control:": "F"}, "serial")
        desk.key("ctrl+Tab")
        waitFor(lambda: "Phone Number:" in named(desk, "Options"), "the modem commands are shown")
        shortcuts(named(desk, "Options"), {"Phone Number:": "P", "Dial Prefix:": "D", "Dial Suffix:": "S",
                                           "Hangup String:": "g", "Reset String:": "R"}, "modem")
        desk.key("ctrl+Tab")
        waitFor(lambda: "Auto Retry" in named(desk, "Options"), "the time-out is shown")
        shortcuts(named(desk, "Options"), {"Time (seconds) allowed for connection:": "c", "Auto Retry": "A"}, "time-out")
        desk.key("ctrl+Tab")
        waitFor(lambda: "Sample text" in named(desk, "Options"), "the font sizes are shown")
        shortcuts(named(desk, "Options"), {"Small": "S", "Medium": "M", "Large": "L"}, "font sizes")
        desk.key("Escape")
        desk.gone("frmOptions")
        desk.menu("h", "a")
        desk.dialog("frmSplash")
        check("OK" in named(desk, "About"), "About has its button")
        desk.key("Return")
        desk.gone("frmSplash")
        desk.menu("p", "1")
        desk.dialog("frmConn")
        status = named(desk, "the status dialog")
        checkEqual(sorted(status), ["Cancel", "Opening network connection to host: 127.0.0.1"], "the status dialog")
        desk.key("Escape")
        desk.gone("frmConn")
        desk.menu("p", "a")
        desk.dialog("frmprof")
        desk.type("box")
        desk.key("Return")
        desk.messageBox("exists")
        waitFor(lambda: any("exists" in (one["name"] or "") for one in readControls()["controls"]), "the box is in front")
        shortcuts(named(desk, "a message box"), {"Yes": "Y", "No": "N"}, "of a message box")


run(screens, sessions, dialogs)
