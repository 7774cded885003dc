"""Calls of the Windows API that fail in the helpers: they say why they end, carry on, or lose one connection; no client is
left, and none is taken from a folder that is not the helper's. docs/testing/faults.md has the table."""

import contextlib
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from processes import processorTime  # noqa: E402
from program import BUILD, Failure, check, checkEqual, run, waitFor  # noqa: E402
from ssh_server import freePort, loopbacks, noHelpers  # noqa: E402
from tcp_table import listeners  # noqa: E402

MANY = 1 << 30
HOST = "127.0.0.1"
# What stands before the first connection: the exclusive use of both addresses' ports, and version 6 alone for one. zpt_ssh has
# asked for a free port before.
RELAY_OPTIONS, SSH_OPTIONS = 3, 4


class Helper:
    """A running helper whose calls fail as planned: (FUNCTION, AFTER, TIMES)."""

    def __init__(self, name, words, fault, client=True):
        self.name, self.words, self.fault, self.client = name, words, fault, client

    def __enter__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="qxterm-faults-")
        root = Path(self._scratch.name)
        own, self._current = root / "own", root / "current"
        for folder in (own, self._current):
            folder.mkdir()
        program = shutil.copy(BUILD / f"{self.name}-faults.exe", own)
        # Anybody may have put one into the current folder: it is not to be used.
        shutil.copy(BUILD / "stand-in.exe", self._current / "plink.exe")
        if self.client:
            shutil.copy(BUILD / "stand-in.exe", own / "plink.exe")
        self._told = root / "told"
        # Both are the helper's own; the stand-in does not run with either of them. No event has this number.
        environment = dict(os.environ, ZPT_SSH_LOGIN="bob", ZPT_SSH_READY="none", QXTERM_FAULT=" ".join(map(str, self.fault)),
                           QXTERM_FAULTS_TOLD="Z:" + str(self._told).replace("/", "\\"))
        with open(self._current / "said", "wb") as said:
            self.process = subprocess.Popen([os.environ["WINE"], program, *map(str, self.words)], cwd=self._current,
                                            env=environment, stdin=subprocess.DEVNULL, stdout=said, stderr=said)
        return self

    def __exit__(self, *_):
        # By the system, as the terminal does. Wine's server does not always survive that a program is killed which waits in
        # select().
        while self.process.poll() is None:
            subprocess.run([os.environ["WINE"], "taskkill", "/f", "/im", f"{self.name}-faults.exe"], stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            with contextlib.suppress(subprocess.TimeoutExpired):
                self.process.wait(5)
        self._scratch.cleanup()

    def said(self):
        return (self._current / "said").read_text(errors="replace")

    def hasFailed(self):
        function = self.fault[0]
        waitFor(lambda: self._told.exists() and self._told.read_text().split() == [function],
                lambda: f"{function} is called, and fails; it says {self.said()!r}")

    def ends(self, code, text):
        waitFor(lambda: self.process.poll() is not None, lambda: f"it ends; it says {self.said()!r}", 60)
        checkEqual((self.process.returncode, self.said()), (code, text), "how it ends, and what it says")
        self.hasFailed()

    def connected(self, port):
        """A connection to where the terminal would connect."""

        def tried():
            check(self.process.poll() is None, f"it has ended with {self.process.returncode}: {self.said()!r}")
            with contextlib.suppress(OSError):
                return socket.create_connection((HOST, port), 1)
            return None

        connection = waitFor(tried, "it takes a connection", 60)
        connection.settimeout(60)
        return connection


def lineOf(connection):
    """What comes up to a line's end, or the connection's."""
    text = b""
    while not text.endswith(b"\n"):
        with contextlib.suppress(ConnectionResetError):
            block = connection.recv(4096)
            if block:
                text += block
                continue
        return text
    return text


def each(cases, judge):
    """Judges all, and tells of all that is wrong."""
    problems = []
    for case in cases:
        what = " ".join(map(str, case[0]))
        try:
            judge(*case)
            noHelpers(what)
            print(f"  {what}: {judge.__name__}", flush=True)
        except Failure as failure:
            problems.append(f"{what}: {failure}")
            print(f"  FAILED {problems[-1]}", flush=True)
    check(not problems, "\n".join(problems))


# --- zpt_tnetd -------------------------------------------------------------------------------------------------------


@contextlib.contextmanager
def relay(fault):
    with Peer() as host:
        port = freePort()
        with Helper("zpt_tnetd", (2, port, host.port, 4), fault) as helper:
            helper.port, helper.host = port, host
            yield helper


def carries(helper):
    """A connection both ways, and its end, of which a failing call may keep the host from hearing."""
    host = helper.host
    ended = host.ended
    with helper.connected(helper.port) as connection:
        waitFor(lambda: host.connections, "the forward is connected to", 60)
        host.received.clear()
        connection.sendall(b"outward")
        host.expect(b"outward", "what the terminal sends")
        host.connections[-1].sendall(b"inward\n")
        checkEqual(lineOf(connection), b"inward\n", "what the host sends")
    if helper.fault[0] == "shutdown":
        helper.hasFailed()
        host.connections[-1].shutdown(socket.SHUT_RDWR)  # closing is not enough while it is being read
    else:
        waitFor(lambda: host.ended > ended, "the host hears of the end")
    host.drop()


def relayCannotListen(fault):
    with relay(fault) as helper:
        helper.ends(3, f"zpt_tnetd: port {helper.port} cannot be listened on\n")


def relayCarriesOn(fault):
    with relay(fault) as helper:
        carries(helper)
        checkEqual(listeners(helper.port), loopbacks(), "where it listens")
        helper.hasFailed()
        carries(helper)


def relayLosesOneConnection(fault):
    with relay(fault) as helper:
        with helper.connected(helper.port) as connection:
            waitFor(lambda: helper.host.connections, "the forward is connected to", 60)
            connection.sendall(b"lost")
            checkEqual(lineOf(connection), b"", "the connection ends")
        helper.hasFailed()
        helper.host.drop()
        carries(helper)


def relayFailures():
    each([(("WSAStartup", 0, 1),), (("socket", 0, 1),), (("socket", 1, 1),), (("bind", 0, 1),), (("bind", 1, 1),),
          (("setsockopt", 0, 1),), (("setsockopt", 1, 1),), (("setsockopt", 2, 1),), (("listen", 0, 1),), (("listen", 1, 1),)],
         relayCannotListen)
    each([(("accept", 0, 3),), (("select", 0, 3),), (("connect", 0, 2),), (("ioctlsocket", 0, 2),),
          (("setsockopt", RELAY_OPTIONS, 2),), (("shutdown", 0, 1),)], relayCarriesOn)
    each([(("recv", 0, 1),), (("send", 0, 1),)], relayLosesOneConnection)


def relayRefusedForLong():
    """What nobody accepts stays; meanwhile the processor belongs to others."""
    with relay(("accept", 0, MANY)) as helper, helper.connected(helper.port):
        helper.hasFailed()
        before = processorTime(helper.process.pid)
        time.sleep(2)
        used = processorTime(helper.process.pid) - before
        check(used < 0.5, f"it takes {used:.2f} s of the processor in 2 s")


# --- zpt_ssh ---------------------------------------------------------------------------------------------------------


@contextlib.contextmanager
def tunnel(fault, client=True):
    port = freePort()
    words = ("-no-antispoof", "-P", 22, "-4", "-ssh", "-L", f"{port}:localhost:23", "host")
    with Helper("zpt_ssh", words, fault, client) as helper:
        helper.port = port
        yield helper


def echoes(helper):
    connection = helper.connected(helper.port)
    checkEqual(lineOf(connection), b"ready\n", "the client's greeting")
    connection.sendall(b"sent\n")
    checkEqual(lineOf(connection), b"sent\n", "what comes back")
    return connection


def sshEnds(fault, code, text, client=True):
    with tunnel(fault, client) as helper:
        helper.ends(code, text.format(port=helper.port))


def sshClientNotStarted(fault):
    with tunnel(fault) as helper:
        waitFor(lambda: helper.process.poll() is not None, lambda: f"it ends; it says {helper.said()!r}", 60)
        checkEqual(helper.process.returncode, 4, "its exit code")
        check(helper.said().startswith("zpt_ssh: the SSH client cannot be started: Z:\\") and helper.said().endswith("\\own\\plink.exe\n"),
              f"it says what cannot be started, not {helper.said()!r}")
        helper.hasFailed()


def sshCarriesOn(fault, lastLine=": the stand-in's last line"):
    with tunnel(fault) as helper:
        echoes(helper).close()
        with echoes(helper) as connection:
            connection.sendall(b"quit\n")
            helper.ends(7, f"zpt_ssh: the SSH client ended with code 7{lastLine}\n")


def sshLosesOneConnection(fault):
    with tunnel(fault) as helper:
        with helper.connected(helper.port) as connection:
            lineOf(connection)
            with contextlib.suppress(ConnectionError):
                connection.sendall(b"lost\n")
                checkEqual(lineOf(connection), b"", "the connection ends")
        helper.hasFailed()
        echoes(helper).close()


def sshFailures():
    noPort = (5, "zpt_ssh: this machine's loopback has no free port\n")
    taken = (5, "zpt_ssh: port {port} is another program's\n")
    noClient = (3, "zpt_ssh: there is neither plink.exe beside this program nor OpenSSH in the system\n")
    each([((function, 0, 1), *noPort) for function in ("WSAStartup", "socket", "setsockopt", "bind", "getsockname")] +
         [((function, after, 1), *taken)
          for function, after in (("socket", 1), ("socket", 2), ("setsockopt", 1), ("setsockopt", 2), ("setsockopt", 3), ("bind", 1),
                                  ("bind", 2))] +
         [(("GetFileAttributesA", 0, MANY), *noClient), (("GetModuleFileNameA", 0, MANY), *noClient),
          (("GetSystemDirectoryA", 0, MANY), *noClient, False)] +
         [(("listen", after, 1), 1, "zpt_ssh: the SSH client ended with code 1\n") for after in (0, 1)] +
         [(("WriteFile", 0, MANY), 3, "", False)], sshEnds)
    each([((function, 0, 1),) for function in ("CreateJobObjectA", "SetInformationJobObject", "CreatePipe", "CreateFileA",
                                              "CreateProcessA", "AssignProcessToJobObject", "ResumeThread", "_beginthreadex")] +
         [(("_beginthreadex", 1, 1),)], sshClientNotStarted)
    each([(("accept", 0, 3),), (("select", 0, 3),), (("connect", 0, 2),), (("GetExtendedTcpTable", 0, 4),), (("ioctlsocket", 0, 2),), (("setsockopt", SSH_OPTIONS, 2),),
          (("SetHandleInformation", 0, MANY),), (("TerminateJobObject", 0, MANY),)], sshCarriesOn)
    each([(("ReadFile", 0, 1), "")], sshCarriesOn)
    each([(("recv", 0, 1),), (("send", 0, 1),)], sshLosesOneConnection)


# Wine's server stays from one program to the next; and what the first program of all brings up, which says what it likes
# into the same place as that, is there.
subprocess.run(["wineserver", "--persistent"], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
subprocess.run([os.environ["WINE"], "cmd", "/c", "exit"], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
               stderr=subprocess.DEVNULL)
run(relayFailures, relayRefusedForLong, sshFailures)
