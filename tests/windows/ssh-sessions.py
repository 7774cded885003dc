"""Sessions through an SSH server: the local prompt, the tunnel, the login behind it, and every way in which it fails."""

import contextlib
import os
import re
import shutil
import signal
import socket
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from account import testUser  # noqa: E402
from listener import PortTaken  # noqa: E402
from peers import Peer, TelnetDaemon  # noqa: E402
from program import Failure, Program, check, checkEqual, run, waitFor, writeProfiles  # noqa: E402
from ssh_server import (HOST, TELNET, SlowWay, SshServer, freePort, helpers, loopbacks, noHelpers,  # noqa: E402
                        programFolder, startingClient)
from tcp_table import listeners  # noqa: E402

OPENING = f"Opening SSH connection to host: {HOST}"
TIMED_OUT = "The connection as timed out"
TIMEOUT = 2  # seconds, for the status dialog

scratch = tempfile.TemporaryDirectory(prefix="qxterm-ssh-")
folder = programFolder(scratch.name)


def profile(port, host=HOST):
    """port: of the SSH server."""
    writeProfiles({"tunnel": {"connect": "ssh", "host": host, "SSHnetport": port, "Font": "large"}}, timeout=TIMEOUT)


@contextlib.contextmanager
def atThePrompt():
    with Program("tunnel", folder=folder) as program:
        program.focus()
        yield program
    noHelpers("after the program's end")


def logIn(program, name, word):
    program.type(name)
    program.key("Return")
    program.type(word)
    program.key("Return")


def atTheShell(program):
    program.waitText("ready>", seconds=30)
    # Until it has gone, it is the one that gets the keys.
    program.waitForm("frmConn", loaded=False)


def attemptFails(program):
    """The dialog says that it opens the connection, then that the time is over, and goes; nothing is left."""
    program.waitForm("frmConn")
    checkEqual(program.label("frmConn", "lblConn"), OPENING, "the label")
    noHelpers("while the attempt runs out")
    waitFor(lambda: program.label("frmConn", "lblConn") == TIMED_OUT, "the time is over")
    idle(program)


def idle(program):
    program.waitForm("frmConn", loaded=False)
    program.waitState("g_bConnectActive", False)
    waitFor(lambda: not any(program.rows()), lambda: f"an empty screen:\n{program.page()}")
    checkEqual(program.boxes(), [], "message boxes")
    enabled = [entry["enabled"] for entry in program.ask("menus")["connection"]]
    checkEqual(enabled[:3], [True, False, False], "Connect, Disconnect, Send Break")
    noHelpers("after the session")


class Tunnel:
    """A user, a server that knows the user's key, a client that knows the server, and the telnet daemon behind it."""

    def __init__(self, knownKey=True, host=HOST):
        self._knownKey, self._host = knownKey, host

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self.name, self.word, _ = stack.enter_context(testUser())
            self.behind = stack.enter_context(TelnetDaemon(TELNET))
            self.server = stack.enter_context(SshServer(self.name, self._host))
            self.server.introduce(self._knownKey)
            profile(self.server.port, self._host)
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()


def memoryHolds(process, word):
    """Whether the bytes stand anywhere in what the process of this number can write to."""
    with open(f"/proc/{process}/maps", encoding="utf-8") as maps, open(f"/proc/{process}/mem", "rb") as memory:
        for line in maps:
            place, rights = line.split()[:2]
            first, last = (int(number, 16) for number in place.split("-"))
            if not rights.startswith("rw"):
                continue
            try:
                memory.seek(first)
                if word in memory.read(last - first):
                    return True
            except (OSError, ValueError, OverflowError):
                pass  # what a driver has mapped cannot be read in this way
    return False


def knowsVariable(process, name):
    """Whether a Windows program was started with this variable in its environment, which stands in its memory."""
    return memoryHolds(process, f"{name}=".encode("utf-16-le"))


def environments():
    """zpt_ssh alone is told the login name in its environment, and of the event: neither the helper that is started after it,
    nor the client that it starts."""
    others = {process: line for process, line in helpers().items() if not line.startswith("zpt_ssh ")}
    checkEqual(len(others), 2, "the helper and the client besides zpt_ssh")
    for process, line in others.items():
        check(knowsVariable(process, "SystemRoot"), f"no environment is found in the memory of {line!r}")
        for name in ("ZPT_SSH_LOGIN", "ZPT_SSH_READY"):
            check(not knowsVariable(process, name), f"{name} is in the environment of {line!r}")


def listening(own):
    """The tunnel is to be had on this machine alone. The client is told one address; plink may take the other one too."""
    lines = " ".join(helpers().values())
    outer, inner = (int(re.search(pattern, lines).group(1)) for pattern in (r" -L (\d+):", r" -L \S+:(\d+):localhost:"))
    checkEqual(listeners(outer), loopbacks(), f"where port {outer} of zpt_ssh is listened on")
    found = listeners(inner)
    check(own in found and found <= loopbacks(), f"port {inner} of its client is listened on at {found}, not {own}")


def session():
    """From the prompt to Disconnect; a second session that ends with the shell, a third with the program."""
    with Tunnel() as tunnel, atThePrompt() as program:
        program.type(tunnel.name + "x")
        program.key("BackSpace")
        logIn(program, "", tunnel.word)
        atTheShell(program)
        check(tunnel.word not in program.page(), f"the password is shown:\n{program.page()}")
        check(memoryHolds(program.process.pid, tunnel.name.encode()), "the login name is not found in the program's memory")
        # Its end: what is sent later may stand where its beginning stood.
        check(not memoryHolds(program.process.pid, tunnel.word[-10:].encode()), "the password is left in the program's memory")
        lines = sorted(helpers().values())
        check(any("zpt_ssh -no-antispoof" in text and f"-P {tunnel.server.port} -4 -ssh -L" in text for text in lines)
              and any("zpt_tnetd 2 " in text and f" 4 {tunnel.name}" in text for text in lines)
              and any("plink" in text and "-batch" in text for text in lines) and len(lines) == 3,
              f"the helpers' command lines are {lines}")
        check(not any(tunnel.word in text for text in lines), "the password stands in a command line")
        environments()
        listening(HOST)
        program.type("clear; echo $TERM $(whoami)")
        program.key("Return")
        program.waitRows({0: f"qxterm {tunnel.name}", 1: "ready>"}, "the shell answers")
        program.connectionMenu("d")
        idle(program)

        program.connectionMenu("c")
        logIn(program, tunnel.name, tunnel.word)
        atTheShell(program)
        program.type("exit")
        program.key("Return")
        program.clickButton(program.messageBox("The connection has been dropped"), "OK")
        idle(program)

        program.connectionMenu("c")
        logIn(program, tunnel.name, tunnel.word)
        atTheShell(program)
        check(helpers(), "helpers run")
        program.process.send_signal(signal.SIGKILL)
        program.process.wait()
        noHelpers("after the program was killed")


def wrongPassword():
    """The remote login refuses; its next prompt is the user's to answer."""
    with Tunnel() as tunnel, atThePrompt() as program:
        logIn(program, tunnel.name, "wrong" + tunnel.word)
        program.waitText("Login incorrect", seconds=30)
        program.waitText("login:")
        checkEqual(program.ask("state")["g_bConnectActive"], True, "g_bConnectActive")
        before = program.page().count("Password:")  # that of the refused login is still there
        program.type(tunnel.name)
        program.key("Return")
        waitFor(lambda: program.page().count("Password:") > before, "the next password prompt")
        program.type(tunnel.word)
        program.key("Return")
        atTheShell(program)
        program.connectionMenu("d")
        idle(program)


def serverDown():
    with testUser() as (name, word, _):
        profile(freePort())
        with atThePrompt() as program:
            logIn(program, name, word)
            attemptFails(program)


def hostKeyUnknown():
    with Tunnel(knownKey=False) as tunnel, atThePrompt() as program:
        logIn(program, tunnel.name, tunnel.word)
        attemptFails(program)
        checkEqual(tunnel.behind.accepted, 0, "connections through the tunnel")


def helperMissing():
    helper, away = folder / "zpt_ssh.exe", folder / "away.exe"
    helper.rename(away)
    try:
        with Tunnel() as tunnel, atThePrompt() as program:
            logIn(program, tunnel.name, tunnel.word)
            attemptFails(program)
            # With the helper back in its place the same window connects.
            away.rename(helper)
            program.connectionMenu("c")
            logIn(program, tunnel.name, tunnel.word)
            atTheShell(program)
            program.connectionMenu("d")
            idle(program)
    finally:
        if away.exists():
            away.rename(helper)


def helpersElsewhere():
    """Helpers in the current folder and in the path are none of the program's."""
    helper, away = folder / "zpt_ssh.exe", folder / "away.exe"
    with Tunnel() as tunnel, tempfile.TemporaryDirectory(prefix="qxterm-path-") as path, \
            Program("tunnel", folder=folder, environment={"WINEPATH": path}) as program:
        for name in ("zpt_ssh.exe", "zpt_tnetd.exe", "plink.exe"):
            for place in (path, program.scratch):
                shutil.copy(folder / name, place)
        helper.rename(away)
        try:
            logIn(program, tunnel.name, tunnel.word)
            attemptFails(program)
        finally:
            away.rename(helper)
        checkEqual(tunnel.behind.accepted, 0, "connections through the tunnel")


def clientMissing():
    client, away = folder / "plink.exe", folder / "away.exe"
    client.rename(away)
    try:
        profile(freePort())
        with atThePrompt() as program:
            logIn(program, "somebody", "something")
            attemptFails(program)
    finally:
        away.rename(client)


def forwardPortTaken():
    """The first free port above is taken instead."""
    with contextlib.ExitStack() as stack:
        with contextlib.suppress(OSError):  # whoever has it already serves as well
            stack.enter_context(socket.create_server((HOST, 3000)))
        with Tunnel() as tunnel, atThePrompt() as program:
            logIn(program, tunnel.name, tunnel.word)
            atTheShell(program)
            check(not any("-L 3000:" in text for text in helpers().values()), f"the taken port is used: {helpers()}")
            program.connectionMenu("d")
            idle(program)


def takePortOfStartingClient():
    """A peer at the port that the client is about to take, or None when the client was faster."""
    client, port = waitFor(startingClient, "the client starts", pause=0)
    os.kill(client, signal.SIGSTOP)
    try:
        return Peer(onConnect=lambda one: one.sendall(b"login: "), port=port)
    except PortTaken:
        return None
    finally:
        os.kill(client, signal.SIGCONT)


def portTakenMeanwhile():
    """Another program takes the port between the search for it and its use: it never sees the login."""
    with testUser() as (name, word, _):
        profile(freePort())
        with atThePrompt() as program:
            logIn(program, name, word)
            for _ in range(20):
                stranger = takePortOfStartingClient()
                if stranger is not None:
                    break
                attemptFails(program)
                program.connectionMenu("c")
                logIn(program, name, word)
            check(stranger is not None, "in 20 attempts the client was faster than who would take its port")
            with stranger:
                program.waitText("login:")
                stranger.send(b"\r\nPassword:")
                program.waitText("Password:")
                checkEqual(bytes(stranger.received), b"", "what the stranger gets")
                noHelpers("after the client could not have the port")
                program.connectionMenu("d")
                idle(program)


def addressOfVersion6():
    try:
        freePort("::1")
    except OSError:
        raise Failure("this machine has no IP version 6: the loopback address ::1 is needed") from None
    with Tunnel(host="::1") as tunnel, atThePrompt() as program:
        logIn(program, tunnel.name, tunnel.word)
        atTheShell(program)
        check(any(" -6 -ssh -L" in text and text.endswith(":localhost:23 ::1") for text in helpers().values()),
              f"the client's command line: {helpers()}")
        listening("::1")
        program.connectionMenu("d")
        idle(program)


def slowLogin():
    """The server takes longer than the program waits for a tunnel; the session comes up all the same."""
    with Tunnel() as tunnel, SlowWay(tunnel.server, seconds=13) as way:
        profile(way.port)
        with atThePrompt() as program:
            logIn(program, tunnel.name, tunnel.word)
            atTheShell(program)
            program.connectionMenu("d")
            idle(program)


def slowLoginThatFails():
    """A connection that waits for the login ends with it."""
    with Tunnel() as tunnel, SlowWay(tunnel.server, seconds=11, arrives=False) as way:
        profile(way.port)
        with atThePrompt() as program:
            logIn(program, tunnel.name, tunnel.word)
            program.clickButton(program.messageBox("The connection has been dropped"), "OK")
            idle(program)
        checkEqual(tunnel.behind.accepted, 0, "connections through the tunnel")


run(session, wrongPassword, serverDown, hostKeyUnknown, helperMissing, helpersElsewhere, clientMissing, forwardPortTaken,
    portTakenMeanwhile, addressOfVersion6, slowLogin, slowLoginThatFails)
