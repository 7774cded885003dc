"""The demonstration host: every screen, reached by keys and by the buttons, each picture compared cell by cell."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from peers import DemonstrationHost  # noqa: E402
from program import Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402
from relay import Relay  # noqa: E402

PAGES = {1: "Display guide", 2: "Agents and queues", 3: "Call-back request", 4: "Call report"}
STRINGS = {key: b"\x1bO" + bytes([ord("b") + key]) for key in range(1, 9)}


class Session:
    def __init__(self, program, relay, sheet):
        self.program, self.relay, self.sheet = program, relay, sheet

    def settled(self, name, picture=True):
        self.relay.waitForAgreement(self.program, name)
        checkEqual((self.relay.model.unknown, self.relay.model.misdrawnRows), ([], 0), "what the host sent")
        if picture:
            cells.compare(self.program, self.sheet, name)

    def title(self, title):
        self.program.waitText(title, row=0)

    def sends(self, data, what):
        waitFor(lambda: bytes(self.relay.sent) == data,
                lambda: f"{what}: {data!r} is sent; it was {bytes(self.relay.sent)!r}")
        self.relay.sent.clear()

    def button(self, number):
        self.relay.sent.clear()
        self.program.click("frmterm", f"CScmdfkey({number})")

    def press(self, *keys):
        self.relay.sent.clear()
        self.program.key(*keys)


def signOn(session):
    program = session.program
    session.title("Sign-on")
    program.waitForm("frmConn", loaded=False)
    program.focus()
    session.settled("sign-on")
    check(not program.ask("keys")["bar"], "the bar is hidden before the sign-on")
    program.type("Anna")
    program.waitText("Anna")
    session.settled("sign-on-name")
    program.key("Return")
    program.waitText("Password:")
    program.type("secret")
    program.key("Return")
    session.title("Main menu")
    session.settled("menu")


def labels(session):
    """The buttons show what the host has programmed."""

    def shown():
        return ["".join(caption.split()) for caption in session.program.ask("keys")["captions"]]

    def wanted():
        return ["".join(label.split()) for label in session.relay.model.shownLabels]

    waitFor(lambda: shown() == wanted(), lambda: f"the buttons show {wanted()}; they show {shown()}")


def pages(session):
    labels(session)
    for number, title in PAGES.items():
        session.button(number)
        session.title(title)
        session.sends(STRINGS[number], f"button {number}")
        session.settled(title.lower().replace(" ", "-"))
        # A click leaves the keyboard with the main window.
        session.press("Escape")
        session.title("Main menu")
        session.press(f"F{number}")
        session.title(title)
        session.sends(STRINGS[number], f"F{number}")
        session.settled(f"F{number}", picture=False)
        session.button(6)
        session.title("Main menu")
    session.settled("menu-again")


def arrows(session):
    for key, data in (("Down", b"\x1b[B"), ("Down", b"\x1b[B"), ("Up", b"\x1b[A"), ("Left", b"\x1b[D"),
                      ("Right", b"\x1b[C"), ("Delete", b"\x7f"), ("Home", b""), ("F9", b""), ("F12", b"")):
        session.press(key)
        if data:
            session.sends(data, key)
    session.press("F6")
    session.sends(STRINGS[6], "F6, and nothing for the keys before it")
    session.settled("menu-arrows")


def form(session):
    program = session.program
    session.press("F3")
    session.title(PAGES[3])
    program.type("Bert")
    program.key("Tab")
    program.type("0123")
    program.key("BackSpace")
    session.settled("form-filled")
    session.press("F6")
    session.title("Main menu")


def report(session):
    session.press("F4")
    session.title(PAGES[4])
    for _ in range(3):
        session.press("Down")
        session.sends(b"\x1b[B", "Down")
    session.settled("report-scrolled")
    session.press("F2")
    session.title(PAGES[2])
    for step in range(2):
        session.press("F5")
        session.sends(STRINGS[5], "F5")
        session.settled(f"agents-{step}")


def tools(session):
    program = session.program
    session.press("F1")
    session.title(PAGES[1])
    session.button(7)
    program.waitText("Tools keys", row=24)
    labels(session)
    session.settled("guide-tools")
    session.button(1)
    session.sends(b"\x1bO1", "button 1 of the other bank")
    waitFor(lambda: program.ask("screen")["mode"] & 2, "the screen is reversed")
    session.settled("guide-reversed")
    session.button(1)
    waitFor(lambda: not program.ask("screen")["mode"] & 2, "the screen is as before")
    session.settled("guide-back")
    full = program.ask("places")["frmterm"]["place"]
    session.button(8)
    program.waitText("The buttons are hidden", row=24)
    waitFor(lambda: program.ask("places")["frmterm"]["place"][3] < full[3], "the window is lower without the bar")
    session.settled("bar-hidden")
    session.press("F7")
    waitFor(lambda: program.ask("places")["frmterm"]["place"] == full, "the window has its size again")
    labels(session)
    session.settled("bar-shown")


def blinking(session):
    """On the sign-off side of things: the tools bank's second key makes the cursor blink."""
    program = session.program
    session.button(2)
    waitFor(lambda: program.ask("screen")["mode"] & 256, "the cursor blinks")
    session.button(7)
    program.waitText("Go-to keys", row=24)
    session.press("F3")
    session.title(PAGES[3])
    seen = set()

    def both():
        seen.add(program.ask("view")["cursorShown"])
        return len(seen) == 2

    waitFor(both, "a blinking cursor is seen and not seen")
    session.settled("form-blinking")


def logOff(session):
    program = session.program
    session.press("F8")
    session.sends(STRINGS[8], "F8")
    box = program.messageBox("The connection has been dropped")
    program.picture("dropped")
    checkEqual(program.boxes(), ["The connection has been dropped"], "the box's text")
    program.clickButton(box, "OK")
    program.waitState("g_bConnectActive", False)
    waitFor(lambda: not any(program.rows()), lambda: f"an empty screen:\n{program.page()}")
    connection = program.ask("menus")["connection"]
    checkEqual([entry["enabled"] for entry in connection], [True, False, False, True], "the Connection menu")


def everyScreen():
    with DemonstrationHost() as host, cells.sheetPeer() as sheets, Relay(host.port) as relay:
        writeProfiles({"sheet": netProfile(sheets.port), "demo": netProfile(relay.port)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
        with Program("demo") as program:
            checkEqual(program.ask("places")["frmterm"]["title"], "Zentora Terminal Emulator - demo", "the caption")
            session = Session(program, relay, sheet)
            for part in (signOn, pages, arrows, form, report, tools, blinking, logOff):
                part(session)


run(everyScreen)
