"""Calls of the Windows API that fail, one after the other, while the program is used.

The probe makes them fail (tests/windows/probe/faults.h). Whatever it is, the program tells the user in the words that it
has for that, or copes; afterwards the session goes on, every pixel of the screen is right, and no handle, GDI object or
window is left over. docs/testing/faults.md has the table.
"""

import contextlib
import shutil
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, setClipboard  # noqa: E402
from peers import Peer  # noqa: E402
from program import (BUILD, PATIENCE, TITLE, Failure, capture, check, checkEqual, focusTitle, netProfile, run, waitFor,  # noqa: E402
                     writeProfiles, xdotool)
from serial_line import SerialLine, nameSerialPorts, serialProfile  # noqa: E402
from ssh_server import freePort, helpers, noHelpers, programFolder  # noqa: E402

MANY = 1 << 30
MEMORY = "Out of memory."
DENIED = "An unexpected error 70 has occurred"
DROPPED = "The connection has been dropped"
FIVE = "An unexpected error 5 "
BUSY_PORT = "Another application is using the serial port"

line = SerialLine()
nameSerialPorts({"COM2": line.link})

# Every kind of drawing, without anything that blinks.
PAGE = (b"\x1b[?13h\x1b[?25l\x1b[m\x1b[1;1H\x1b[2Jfaults \x1b[1mbold\x1b[m \x1b[4munder\x1b[m \x1b[31;44mcolours\x1b[m\r\n"
        b"\x0elqqqqk\r\nx    x\r\nmqqqqj\x0f\r\n" + b"\r\n".join(b"line %d" % n for n in range(18)))
KEY_BAR = b"\x1b[1;4;0q  Next    page  \x1bOc\r\x1b[0p"


@contextlib.contextmanager
def failing(desk, *functions, after=0, times=MANY):
    """The calls fail inside the block."""
    desk.ask("faults", more={"faults": {function: [after, times] for function in functions}})
    yield
    if desk.alive():
        for function in functions:
            waitFor(lambda: desk.ask("faults").get(function, [0, 0])[1] > 0, f"{function} is called, and fails", 5)
        desk.ask("faults", more={"faults": {}})


def answerBoxes(desk, expected):
    """Answers with Escape what the program tells; it has to tell what is expected, and nothing else."""
    if expected is not None:
        desk.messageBox(expected)
    deadline = time.monotonic() + PATIENCE
    while boxes := desk.boxes():
        for text in boxes:
            check(expected is not None and expected in text, f"a box says {text!r}")
        check(time.monotonic() < deadline, f"the boxes do not end: {boxes}")
        desk.key("Escape")


def staysFlat(resources, case, what):
    """What the case once leaves behind may be the system's, which keeps things for the next time; what comes each time is a
    leak."""
    for _ in range(4):
        before = resources()
        case()
        after = resources()
        if all(after[name] <= before[name] for name in before):
            return
    raise Failure(f"{what}: each time the program holds more, at last {before}, then {after}")


class Session:
    """A session with a host in this process, and the picture of its page."""

    def __init__(self, desk, host):
        self.desk, self.host = desk, host
        self.awaitSession()
        self.say(PAGE)
        self.rest()
        self.reference = self.pixels()

    def awaitSession(self):
        self.desk.waitState("g_bConnectActive", True)
        self.desk.gone("frmConn")
        self.desk.focus()

    def say(self, text):
        """Sends text; returns when it has been interpreted."""
        self.host.received.clear()
        self.host.send(text + b"\xff\xfd\x63")
        waitFor(lambda: b"\xff\xfc\x63" in bytes(self.host.received), "the text is interpreted")

    def rest(self):
        time.sleep(0.1)  # until the last frame has been shown

    def pixels(self):
        left, top, width, height = self.desk.ask("places")["picterm"]
        return capture(left, top, width, height)

    def resources(self):
        told = self.desk.ask("resources")
        return {name: told[name] for name in ("handles", "gdi", "windows")}

    def isWell(self, what):
        self.desk.noBoxes()
        if self.desk.ask("selection")["end"][0] != -1:  # a copy that failed keeps it
            self.desk.clickAt(*self.desk.cellAt(40, 20))
        self.say(PAGE)
        waitFor(lambda: self.pixels() == self.reference, f"{what}: the page looks as before", 5, pause=0.2)


def draws(session):
    session.say(b"\x1b[2J")
    session.rest()
    session.say(PAGE)
    for number in range(4):  # a frame each, so that the window is scrolled
        session.rest()
        session.say(b"scroll %d\r\n" % number)
    session.rest()


def asksToLeave(session):
    session.desk.close()


def takesAFlood(session):
    session.say(b"a line of many lines\r\n" * 30000)


def opensAMenu(session):
    session.desk.openMenu("p")
    session.say(b"\x1b[2J")
    session.say(PAGE)
    session.desk.closeMenu()
    session.rest()


def showsTheKeyBar(session):
    session.say(KEY_BAR)
    session.rest()


def copies(session):
    desk = session.desk
    desk.drag((0, 0), (6, 0))
    desk.key("ctrl+Insert")


def pastes(session):
    setClipboard("pasted")
    session.desk.menu("e", "p")
    session.desk.focus()


def opensOptions(session):
    session.desk.menu("c", "o")
    waitFor(lambda: "frmOptions" in session.desk.ask("forms") or session.desk.boxes(), "the Options dialog")


def changesTheFont(session):
    desk = session.desk
    for letter, points in (("s", 9), ("l", 11)):
        desk.menu("c", "o")
        desk.dialog("frmOptions")
        desk.key("ctrl+Prior", "alt+" + letter, "Return")
        desk.gone("frmOptions")
        checkEqual(desk.ask("profile")["fontsize"], points, "the font's size")
        session.say(PAGE)
    desk.focus()


def asksForSmallLetters(session):
    desk = session.desk
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    desk.key("ctrl+Prior", "alt+s", "Return")


def saves(session):
    session.desk.menu("p", "s")
    session.desk.focus()


def showsAbout(session):
    session.desk.menu("h", "a")
    waitFor(lambda: "frmSplash" in session.desk.ask("forms") or session.desk.boxes()
            or session.desk.ask("faults").get("CreateDialogParamA", [0, 0])[1], "the About box")


def asksForHelp(session):
    session.desk.menu("h", "c")


def typesAKey(session):
    session.desk.type("k")


def ordinaryUse():
    """(call, what is done meanwhile, what the user is told)."""
    cases = [
        ("ExtTextOutA", draws, None), ("FillRect", draws, None), ("ScrollDC", draws, None), ("GetClipBox", draws, None),
        ("GetRegionData", draws, None), ("ioctlsocket", draws, None),
        ("PostMessageA", draws, None), ("PatBlt", copies, None),
        ("SetTimer", opensAMenu, None), ("GetGUIThreadInfo", takesAFlood, None),
        ("CreatePen", showsTheKeyBar, None),
        ("CreateSolidBrush", showsTheKeyBar, None), ("DrawTextA", showsTheKeyBar, None),
        ("OpenClipboard", copies, DENIED), ("EmptyClipboard", copies, DENIED), ("GlobalAlloc", copies, MEMORY),
        ("GlobalLock", copies, MEMORY), ("SetClipboardData", copies, MEMORY),
        ("GetClipboardData", pastes, None), ("EnableMenuItem", pastes, None),
        ("CreateDialogParamA", opensOptions, MEMORY), ("CreateDialogParamA", showsAbout, MEMORY),
        ("CreateFontA", asksForSmallLetters, MEMORY), ("GetTextExtentPoint32A", changesTheFont, None),
        ("GetDC", changesTheFont, None), ("GetTextMetricsA", changesTheFont, None),
        ("SelectObject", changesTheFont, None),
        ("WritePrivateProfileStringA", saves, None),
        ("CreateDIBSection", showsAbout, MEMORY), ("CreateFileA", showsAbout, "An unexpected error 75 has occurred"),
        ("ReadFile", showsAbout, "An unexpected error 75 has occurred"),
        ("GetFileAttributesA", showsAbout, "An unexpected error 53 has occurred"),
        ("CreateCompatibleDC", showsAbout, None), ("BitBlt", showsAbout, None),
        # Nobody can be asked whether the session is to end, so it goes on.
        ("MessageBoxA", asksToLeave, None),
        ("GetFileAttributesA", asksForHelp, "The help file cannot be found"),
        ("CreateFileA", asksForHelp, "The help file cannot be read"),
        ("LoadLibraryExA", asksForHelp, "HTML Help is not installed"),
        ("CreateFileA", typesAKey, DENIED), ("WriteFile", typesAKey, "An unexpected error 75 has occurred"),
    ]
    with Peer() as host:
        writeProfiles({"net": netProfile(host.port)}, Logging="1")
        with Desk("net") as desk:
            session = Session(desk, host)
            # What is made once, and kept, is made before it is counted. Help is loaded by its own case, and nothing is answered.
            without = (asksForHelp, asksForSmallLetters, asksToLeave)
            for action in dict.fromkeys(action for _, action, _ in cases if action not in without):
                action(session)
                closeForms(desk)
            session.isWell("without failures")
            problems = []
            for function, action, told in cases:
                what = f"{function} fails, the program {action.__name__}"
                try:
                    staysFlat(session.resources, lambda: oneCase(session, function, action, told, what), what)  # noqa: B023
                    print(f"  {what}: {told or 'nothing to tell'}", flush=True)
                except Failure as failure:
                    check(desk.alive(), f"{what}: the program has ended")
                    problems.append(f"{what}: {failure}")
                    print(f"  FAILED {problems[-1]}", flush=True)
                    recover(session)
            check(not problems, "\n".join(problems))
            helpAfterAll(session)
            connections(session)


def helpAfterAll(session):
    """What could not be loaded in its case is loaded now."""
    desk = session.desk
    asksForHelp(session)
    waitFor(lambda: focusTitle() == f"{TITLE} Help", "help is shown")
    xdotool("key", "alt+F4")
    waitFor(lambda: focusTitle() != f"{TITLE} Help", "help is gone")
    desk.focus()


def oneCase(session, function, action, told, what):
    desk = session.desk
    with failing(desk, function):
        action(session)
        if told is not None:
            answerBoxes(desk, told)
    if action is asksForSmallLetters:
        desk.gone("frmOptions")
        # Where a box and the dialog under it go at the same time, Wine may leave the display's keyboard to nobody.
        xdotool("windowactivate", desk.mainWindowId())
    closeForms(desk)
    if action in (changesTheFont, asksForSmallLetters):
        changesTheFont(session)  # the measures of a time without fonts stay until the next change
    session.isWell(what)


def closeForms(desk):
    """The dialog that the action has opened."""
    for form in ("frmSplash", "frmOptions"):
        if form in desk.ask("forms"):
            desk.dialog(form)
            desk.key("Escape")
            desk.gone(form)
    desk.focus()


def recover(session):
    """Whatever stands is closed, so that the next case can be tried."""
    desk = session.desk
    desk.ask("faults", more={"faults": {}})
    for _ in range(5):
        desk.key("Escape")
    if not desk.ask("state")["g_bConnectActive"]:
        reconnect(session, "recovery")


def connections(session):
    """Calls of a connection, with the same program: the attempt fails or the session ends, and the next one is well."""
    desk = session.desk

    def dropped(function):
        with failing(desk, function):
            if function == "send":
                desk.type("k")
            else:
                session.host.send(b"never read")
            answerBoxes(desk, DROPPED)
        desk.waitState("g_bConnectActive", False)
        reconnect(session, function)

    def notMade(function):
        desk.menu("c", "d")
        desk.waitState("g_bConnectActive", False)
        with failing(desk, function):
            desk.menu("c", "c")
            if function == "setsockopt":
                session.awaitSession()
            else:
                desk.dialog("frmConn")
                waitFor(lambda: desk.ask("faults").get(function, [0, 0])[1] > 0, f"{function} is called")
                desk.key("Escape")
                desk.gone("frmConn")
        if function != "setsockopt":
            reconnect(session, function)

    for function in ("send", "recv"):
        staysFlat(session.resources, lambda: dropped(function), function)  # noqa: B023
        print(f"  {function} fails: {DROPPED}", flush=True)
    for function in ("socket", "connect", "WSAAsyncSelect", "QueueUserWorkItem", "getaddrinfo", "setsockopt"):
        staysFlat(session.resources, lambda: notMade(function), function)  # noqa: B023
        print(f"  {function} fails: the attempt is given up, the next one succeeds", flush=True)


def restThatCannotBeSent():
    """The host takes no more for a while. When it does again the rest cannot be sent, and nothing can be posted: nobody but the
    program itself knows that the connection is lost."""
    begins = threading.Event()

    with Peer(lambda connection: begins.wait(60)) as peer:
        writeProfiles({"net": netProfile(peer.port)})
        with Desk("net") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            setClipboard("a line of text\r\n" * 800000)
            desk.menu("e", "p")
            desk.ask("view", seconds=60)  # it has been pasted
            with failing(desk, "send", "PostMessageA"):
                begins.set()
                answerBoxes(desk, DROPPED)
            check(len(peer.received) > 0, "the host takes what had been sent")
            desk.waitState("g_bConnectActive", False)


def reconnect(session, what):
    session.desk.menu("c", "c")
    session.awaitSession()
    session.isWell(what)


def serialPort():
    """While the port is opened, and while it is open."""
    opening = [("CreateFileA", BUSY_PORT), ("GetCommState", BUSY_PORT), ("SetCommState", "An unexpected error 5 "),
               ("CreateEventA", MEMORY), ("CreateThread", MEMORY)]
    using = ["WaitCommEvent", "WriteFile", "ReadFile"]

    class SerialDesk(Desk):
        pass

    writeProfiles({"line": serialProfile()})
    with line:
        environment = line.program("line", waiting=False).environment
        with SerialDesk("line", environment=environment) as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            desk.focus()

            def refused(function, told):
                desk.menu("c", "d")
                desk.waitState("g_bConnectActive", False)
                with failing(desk, function):
                    desk.menu("c", "c")
                    answerBoxes(desk, told)
                checkEqual(desk.ask("state")["g_bConnectActive"], False, "no session")
                lineIsWell(desk, function)

            def broken(function):
                with failing(desk, function):
                    desk.type("k")
                    line.send(b"x")
                    waitFor(lambda: desk.ask("faults").get(function, [0, 0])[1] > 0 or None, f"{function} is called")
                    desk.noBoxes()
                desk.menu("c", "d")
                desk.waitState("g_bConnectActive", False)
                lineIsWell(desk, function)

            for function, told in opening:
                staysFlat(lambda: handles(desk), lambda: refused(function, told), function)  # noqa: B023
                print(f"  {function} fails while the port is opened: {told}", flush=True)
            for function in using:
                staysFlat(lambda: handles(desk), lambda: broken(function), function)  # noqa: B023
                print(f"  {function} fails on an open port: nothing to tell", flush=True)
            # What could not be told when it came is told as soon as it can be.
            with failing(desk, "PostMessageA"):
                line.send(b"\x1b[2J\x1b[1;1Hlate news")
                waitFor(lambda: desk.ask("faults").get("PostMessageA", [0, 0])[1] > 5, "it is tried again and again")
            desk.waitText("late news", row=0)
            print("  PostMessageA fails on an open port: what has come is shown afterwards", flush=True)


def handles(desk):
    return {"handles": desk.ask("resources")["handles"]}


def lineIsWell(desk, what):
    desk.menu("c", "c")
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")
    desk.focus()
    line.send(b"\x1b[2J\x1b[1;1Hbehind " + what.encode())
    desk.waitText("behind " + what, row=0)


def sshHelpers():
    """Helpers that cannot be started, tied to the program, or told apart: none is left, and the user can go on."""
    # The job is made once, so its refusal comes first.
    cases = [("CreateJobObjectA", None), ("CreatePipe", MEMORY), ("CreateEventA", MEMORY), ("CreateProcessA", None),
             ("AssignProcessToJobObject", None), ("ResumeThread", None), ("GetTcpTable", None), ("GetUdpTable", None),
             ("SetHandleInformation", None)]
    writeProfiles({"ssh": {"connect": "ssh", "host": "127.0.0.1", "SSHnetport": str(freePort()), "Font": "large"}})
    with Desk("ssh") as desk:

        def notStarted(function, told):
            desk.focus()
            with failing(desk, function):
                logsIn()
                if told is not None:
                    answerBoxes(desk, told)
                givesUp()
            desk.noBoxes()
            noHelpers(function)
            desk.menu("c", "c")

        def logsIn():
            for text in ("bob", "secret"):
                desk.type(text)
                desk.key("Return")

        def givesUp():
            desk.waitForm("frmConn")
            desk.dialog("frmConn")
            desk.key("Escape")
            desk.gone("frmConn")

        for function, told in cases:
            staysFlat(lambda: handles(desk), lambda: notStarted(function, told), function)  # noqa: B023
            print(f"  {function} fails: {told or 'nothing to tell'}", flush=True)
        # Anybody may have put programs of these names into the folder that happens to be the current one.
        desk.focus()
        for helper in ("zpt_ssh.exe", "zpt_tnetd.exe"):
            shutil.copy(BUILD / helper, desk.scratch)
        with failing(desk, "GetModuleFileNameA"):
            logsIn()
            desk.waitForm("frmConn")
            time.sleep(1)  # in which the helpers would have been started
            checkEqual(desk.ask("faults").get("CreateProcessA"), None, "a helper is started")
            givesUp()
        print("  GetModuleFileNameA fails: no helper is started", flush=True)
    noHelpers("the program has ended")


def helpersThatStay():
    """What cannot be ended is noted, and goes with the program; the next session is as any other."""
    writeProfiles({"ssh": {"connect": "ssh", "host": "127.0.0.1", "SSHnetport": str(freePort()), "Font": "large"}}, Logging="1")
    with tempfile.TemporaryDirectory(prefix="qxterm-faults-") as scratch:
        with Desk("ssh", folder=programFolder(scratch, BUILD / "stand-in.exe")) as desk:
            logIn(desk)
            before = set(helpers())
            with failing(desk, "TerminateProcess"):
                desk.menu("c", "d")
                waitFor(lambda: not desk.ask("state")["g_bConnectActive"], "the session ends", 60)
            desk.noBoxes()
            checkEqual(set(helpers()), before, "the helpers have stayed")
            log = Path(desk.scratch, "output.txt").read_text(encoding="latin-1")
            check("TerminateProcess(proc.hProcess,lErr) failed lErr=5" in log, "the trace log tells")
            desk.menu("c", "c")
            logIn(desk)
            check(len(helpers()) == 2 * len(before), f"helpers of two sessions: {helpers()}")
            desk.close()
        noHelpers("the program has ended")
    print("  TerminateProcess fails: nothing to tell", flush=True)


def logIn(desk):
    """Through the stand-in of the client, which greets."""
    desk.focus()
    for text in ("bob", "secret"):
        desk.type(text)
        desk.key("Return")
    desk.waitState("g_bConnectActive", True)
    desk.waitText("ready", row=0)
    desk.gone("frmConn")


def menuEntries():
    """Entries that the system would not take away are gone when the menu is opened next: a letter of which there were two
    would choose none."""
    loop = {"connect": "loop", "Font": "large"}
    writeProfiles({"one": loop, "two": loop}, order="two one ")
    with Desk("one") as desk:
        connected(desk, "one")
        with failing(desk, "DeleteMenu"):
            desk.menu("p", "2")
            connected(desk, "one")
        desk.menu("p", "2")
        connected(desk, "two")
    print("  DeleteMenu fails: nothing to tell", flush=True)


def connected(desk, profile):
    """Waits for the profile's session, and ends it."""
    desk.waitCaption(profile)
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")
    desk.menu("c", "d")
    desk.waitState("g_bConnectActive", False)


def start():
    """What the program needs fails while it starts: it says so and ends. Without the rest it starts all the same."""
    writeProfiles({"loop": {"connect": "loop", "Font": "large"}})
    for fault in ("CreateWindowExA 0 1000", "CreateWindowExA 2 1000", "CreateDialogParamA 0 1000", "CreateMenu 0 1000",
                  "CreatePopupMenu 0 1000", "AppendMenuA 0 1000", "RegisterClassA 0 1000", "RegisterClassExA 0 1000"):
        with Desk("loop", waiting=False, environment={"QXTERM_FAULT": fault}) as desk:
            desk.messageBox(MEMORY, seconds=60)
            waitFor(lambda: not desk.alive() or desk.key("Escape"), "the program ends", pause=0.3)
            desk.waitEnd()
            checkEqual(desk.process.returncode, 0, "the program's exit status")
            print(f"  {fault}: {MEMORY} The program ends", flush=True)
    with Desk("loop", environment={"QXTERM_FAULT": "GetPrivateProfileStringA 0 1000000"}) as desk:
        checkEqual(desk.ask("lists")["profiles"], [], "profiles of a file that cannot be read")
        print("  GetPrivateProfileStringA 0 1000000: nothing to tell, and no profiles", flush=True)
    for fault in ("AddFontResourceExA 0 1", "SetTimer 0 3", "GetUpdateRgn 0 1000", "CreateRectRgn 0 1", "LoadImageA 0 1000",
                  "BeginPaint 0 3", "WSAStartup 0 1", "SetWindowTextA 0 1000"):
        with Desk("loop", environment={"QXTERM_FAULT": fault}) as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            desk.type("survived")
            desk.waitText("survived", row=0)
            print(f"  {fault}: nothing to tell", flush=True)


run(ordinaryUse, restThatCannotBeSent, serialPort, sshHelpers, helpersThatStay, menuEntries, start)
