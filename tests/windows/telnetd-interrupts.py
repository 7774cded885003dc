"""Interrupt, quit and suspend at a shell behind the system's telnet daemon, which answers each with a Synch."""

import contextlib
import pwd
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from account import testUser  # noqa: E402
from peers import TelnetDaemon  # noqa: E402
from program import Program, check, netProfile, run, waitFor, writeProfiles  # noqa: E402


def interruptions():
    with testUser() as (name, word, _), TelnetDaemon() as daemon:
        writeProfiles({"host": netProfile(daemon.port)})
        with Program("host") as program:
            program.waitText("login:")
            program.waitForm("frmConn", loaded=False)
            program.focus()
            for answer, then in ((name, "Password:"), (word, "ready>")):
                program.type(answer)
                program.key("Return")
                program.waitText(then)
            for command, key, told in (("sleep 100", "ctrl+c", ""), ("cat", "ctrl+c", ""),
                                       ("sleep 100", "ctrl+backslash", "Quit"), ("cat", "ctrl+backslash", "Quit"),
                                       ("sleep 100", "ctrl+z", "Stopped"), ("cat", "ctrl+z", "Stopped")):
                interrupted(program, name, command, key, told)
            program.picture("interruptions")


def runs(name, command):
    """Whether the user's shell has started this command."""
    for process in Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if process.stat().st_uid == pwd.getpwnam(name).pw_uid and \
                    (process / "cmdline").read_bytes() == command.replace(" ", "\0").encode() + b"\0":
                return True
    return False


def interrupted(program, name, command, key, told):
    def send(text):
        program.type(text)
        program.key("Return")

    send("clear")
    waitFor(lambda: program.rows()[:2] == ["ready>", ""], lambda: f"a clear screen:\n{program.page()}")
    send(command)
    program.waitRows({0: f"ready> {command}"}, "the command")
    if command == "cat":
        send("works")
        program.waitRows({1: "works", 2: "works"}, "cat answers")
    else:
        waitFor(lambda: runs(name, command), f"{command} runs")
    program.key(key)
    waitFor(lambda: "ready>" in program.rows()[1:], lambda: f"{command}, {key}: a new prompt:\n{program.page()}")
    send("echo done")
    last = ["ready> echo done", "done", "ready>"]
    waitFor(lambda: [row for row in program.rows() if row][-3:] == last,
            lambda: f"{command}, {key}: the shell's lines {last}:\n{program.page()}")
    rows = [row for row in program.rows() if row]
    said = f"{command}, {key}:\n{program.page()}"
    check("\xf2" not in "".join(rows), f"DM is shown; {said}")
    check(told in "".join(rows[1:-3]), f"what the shell says: {told!r}; {said}")


run(interruptions)
