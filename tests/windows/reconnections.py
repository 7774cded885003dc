"""Fifty sessions, one after another: handles, windows, processes, timers and memory end as they began."""

import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from account import testUser  # noqa: E402
from listener import Listener, inBackground  # noqa: E402
from program import Failure, Program, check, checkEqual, focusTitle, run, waitFor, writeProfiles  # noqa: E402
from serial_line import SerialLine, nameSerialPorts, serialProfile  # noqa: E402
from ssh_server import HOST, TELNET, SshServer, helpers, noHelpers, programFolder  # noqa: E402

SESSIONS = 50
WARM_UP = 3  # until everything that is made once has been made
MEMORY = 4 * 1024 * 1024  # bytes that 50 sessions may add; a leaked screen of text each would be more

line = SerialLine()
nameSerialPorts({"COM2": line.link})


def held(program):
    """What the program holds while it is not connected."""
    resources, timers, windows = program.ask("resources", "timers", "windows")
    used = [(slot["action"], slot["period"]) for slot in timers["slots"] if not slot["free"]]
    counts = {name: resources[name] for name in ("handles", "gdi", "windows")}
    threads = len(list(Path(f"/proc/{program.process.pid}/task").iterdir()))
    return {**counts, "threads": threads, "timers": used, "visible": len(windows)}, resources["pageFile"]


def menu(program, letter):
    """Without the wait for the menu: the keys wait for it themselves."""
    program.focus()
    program.key("alt+c", letter)


def repeat(program, session):
    for number in range(SESSIONS + WARM_UP):
        if number == WARM_UP:
            before, memoryBefore = held(program)
        session(number)
        menu(program, "d")
        program.waitState("g_bConnectActive", False)
    waitFor(lambda: held(program)[0] == before,
            lambda: f"before {SESSIONS} sessions the program held {before}, afterwards it holds {held(program)[0]}")
    grown = held(program)[1] - memoryBefore
    check(grown <= MEMORY, f"{SESSIONS} sessions have left {grown} bytes")
    checkEqual(program.boxes(), [], "message boxes")


def serialLine():
    writeProfiles({"line": serialProfile()})
    with line, line.program("line") as program:
        program.waitState("g_bConnectActive", True)
        program.waitForm("frmConn", loaded=False)
        program.focus()
        menu(program, "d")
        program.waitState("g_bConnectActive", False)

        def session(number):
            menu(program, "c")
            program.waitState("g_bConnectActive", True)
            program.waitForm("frmConn", loaded=False)
            line.send(b"session %d" % number)
            program.waitRows({0: f"session {number}"}, "the session's text")

        repeat(program, session)


def sshBridge():
    def serve(connection):
        connection.sendall(b"login: ")
        name = readLine(connection)
        connection.sendall(b"Password: ")
        word = readLine(connection)
        connection.sendall(b"\r\nwelcome " + name + b" with " + word)
        while connection.recv(100):
            pass

    with tempfile.TemporaryDirectory(prefix="qxterm-ssh-") as scratch, testUser() as (name, _, _), \
            Listener(inBackground(serve), TELNET) as behind, SshServer(name) as server:
        folder = programFolder(scratch)
        server.introduce()
        writeProfiles({"tunnel": {"connect": "ssh", "host": HOST, "SSHnetport": server.port, "Font": "large"}},
                      timeout=20)
        with Program("tunnel", folder=folder) as program:
            program.focus()

            def session(number):
                if number > 0:
                    menu(program, "c")
                program.type(name)
                program.key("Return")
                program.type("word")
                program.key("Return")
                try:
                    program.waitText(f"welcome {name} with word", seconds=30)
                    program.waitForm("frmConn", loaded=False)
                except Failure as failure:
                    raise Failure(f"session {number + 1}: {failure}\n{told(program, behind, server)}") from failure

            repeat(program, session)
            checkEqual(behind.accepted, SESSIONS + WARM_UP, "connections through the tunnel")
            noHelpers("after the last session")


def told(program, behind, server):
    """What there is to know about a session that did not come up."""
    state, forms, windows = program.ask("state", "forms", "windows")
    return "\n".join([f"forms: {list(forms)}", f"windows: {[(one['class'], one['title']) for one in windows]}",
                      f"keyboard: {focusTitle()!r}", f"state: {state}", f"helpers: {helpers()}",
                      f"connections through the tunnel: {behind.accepted}", "sshd:", *server.log()[-12:]])


def readLine(connection):
    text = b""
    while not text.endswith(b"\r"):
        text += connection.recv(1) or b"\r"
    return text[:-1]


run(serialLine, sshBridge)
