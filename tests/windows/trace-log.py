"""The trace log of the real program, replayed: at each place the replay's screen is the one that the window had."""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import DemonstrationHost, Peer  # noqa: E402
from program import BUILD, Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402
from relay import Relay  # noqa: E402
from serial_line import SerialLine, nameSerialPorts, serialProfile  # noqa: E402

line = SerialLine()
nameSerialPorts({"COM2": line.link})

COMPARED = ["rows", "attrs", "cursor", "attr", "mode", "region", "saved", "used"]


def tool(folder, *words, status=0):
    """Runs qxterm-scenario.exe; returns what it printed."""
    with open(folder / "printed", "wb") as printed, open(folder / "complaints", "wb") as complaints:
        done = subprocess.run([os.environ["WINE"], str(BUILD / "qxterm-scenario.exe"), *words], cwd=folder,
                              stdin=subprocess.DEVNULL, stdout=printed, stderr=complaints, timeout=120)
    checkEqual(done.returncode, status, f"the status of {words}, which said {(folder / 'complaints').read_text()!r}")
    return (folder / "printed").read_bytes().decode("ascii").replace("\r\n", "\n")


class Logged:
    """A program with its trace on. At each place the log so far is kept, with the screen that belongs to it."""

    def __init__(self, program):
        self.program = program
        self.places = []

    def keep(self, name):
        log = Path(self.program.scratch) / "output.txt"

        def together():
            """Nothing may arrive between log and screen."""
            before = log.read_bytes()
            screen, scrollback = self.program.ask("screen", "scrollback")
            return (name, before, screen, scrollback) if log.read_bytes() == before else None

        self.places.append(waitFor(together, f"{name}: the host is quiet for a moment"))

    def replay(self):
        for name, log, screen, scrollback in self.places:
            with tempfile.TemporaryDirectory() as folder:
                folder = Path(folder)
                (folder / "output.txt").write_bytes(log)
                scenario = tool(folder, "--replay", "output.txt")
                (folder / "replay.scn").write_text(scenario + "dump screen\ndump scrollback\n")
                printed = [json.loads(line) for line in tool(folder, "replay.scn").splitlines()]
                again = {each["dump"]: each for each in printed if "dump" in each}
                for key in COMPARED:
                    checkEqual(again["screen"][key], screen[key], f"{name}: {key} of the replay")
                lines = [each["text"] for each in scrollback["lines"]]
                checkEqual([each["text"] for each in again["scrollback"]["lines"]], lines, f"{name}: the scrollback")
                yield name, scenario, folder


def network():
    with DemonstrationHost() as host, Relay(host.port) as relay:
        writeProfiles({"host": netProfile(relay.port)}, Logging="1")
        with Program("host") as program:
            logged = Logged(program)

            def settled(name, title):
                program.waitText(title, row=0)
                relay.waitForAgreement(program, name)
                logged.keep(name)

            program.waitForm("frmConn", loaded=False)
            program.focus()
            settled("sign-on", "Sign-on")
            program.type("Anna")
            program.key("Return")
            program.waitText("Password:")
            program.type("secret")
            program.key("Return")
            settled("menu", "Main menu")
            program.key("1")
            settled("table", "Agents and queues")
            program.connectionMenu("d")
            program.waitState("g_bConnectActive", False)
            program.connectionMenu("c")
            program.waitForm("frmConn")
            program.waitForm("frmConn", loaded=False)
            program.waitText("Sign-on", row=0)
            waitFor(lambda: "Anna" not in program.page(), "a fresh sign-on")
            program.type("Ben")
            program.waitText("Ben")
            logged.keep("second session")
    check(logged.places[-1][1].count(b"BYTES>>") > 5, "the log holds what was received")
    for name, scenario, folder in logged.replay():
        check("REMARK" not in scenario, f"{name}: a remark in\n{scenario}")
    typed = [line for line in scenario.splitlines() if line.startswith(("type ", "key "))]
    checkEqual("".join(line[6:-1] for line in typed if line.startswith("type ")),
               "Anna\\rsecret\\r1Ben", "what was typed")


def pictures():
    with Peer(lambda connection: connection.sendall(b"\x1b[2J\x1b[H\x0elqk\x0f \x1b[1mbold")) as peer:
        writeProfiles({"host": netProfile(peer.port)}, Logging="1")
        with Program("host") as program:
            program.waitText("bold")
            program.waitForm("frmConn", loaded=False)
            logged = Logged(program)
            logged.keep("there")
    for _, _, folder in logged.replay():
        tool(folder, "--replay", "output.txt", "--pictures", "pictures", "--format", "text,svg")
        checkEqual(sorted(each.name for each in (folder / "pictures").iterdir()),
                   ["000001.svg", "000001.txt", "index.html"], "the pictures")
        text = (folder / "pictures" / "000001.txt").read_text(encoding="utf-8")
        checkEqual(text.splitlines()[0], "\u250c\u2500\u2510 bold", "the picture as text")


def serial():
    """What the program's poll reads is not in the log; when all is, the replay shows the same."""
    sent = [f"line {number}\r\n" for number in range(20)]
    writeProfiles({"line": serialProfile()}, Logging="1")
    with line, line.program("line") as program:
        program.waitState("g_bConnectActive", True)
        program.waitForm("frmConn", loaded=False)
        logged = Logged(program)
        for number, text in enumerate(sent):
            line.send(f"\x1b[{31 + number % 7}m{text}".encode())
            program.waitText(text.strip())
        logged.keep("lines")
    log = logged.places[0][1]
    with tempfile.TemporaryDirectory() as folder:
        (Path(folder) / "output.txt").write_bytes(log)
        scenario = tool(Path(folder), "--replay", "output.txt")
    there = [text for text in sent if text.encode() in log]
    checkEqual([text for text in sent if text.replace("\r\n", "\\r\\n") in scenario], there, "the text of the log")
    if there != sent:
        print(f"of {len(sent)} lines the event has read {len(there)}, and the poll the others")
        return
    check(len(list(logged.replay())) == 1, "the replay was compared")


run(network, pictures, serial)
