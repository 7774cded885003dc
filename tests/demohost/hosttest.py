"""Starting the demonstration host, and a client that looks at its screens through the model of the terminal."""

import re
import socket
import subprocess
import sys
import time
import unittest
from pathlib import Path

from model import Model

HOST = Path(__file__).resolve().parents[2] / "tools" / "demohost" / "demohost.py"
PATIENCE = 10.0

DO_TIMING_MARK, TIME_MARKED = b"\xff\xfd\x06", b"\xff\xfb\x06"

KEYS = {"up": b"\x1b[A", "down": b"\x1b[B", "right": b"\x1b[C", "left": b"\x1b[D", "delete": b"\x7f",
        "backspace": b"\b", "tab": b"\t", "enter": b"\r", "escape": b"\x1b"}


class HostProcess:
    def __init__(self, *options):
        self.process = subprocess.Popen([sys.executable, str(HOST), "--port", "0", *options],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        announced = self.process.stdout.readline()
        match = re.fullmatch(r"demonstration host on 127\.0\.0\.1 port (\d+)\n", announced)
        if not match:
            self.process.kill()
            raise AssertionError(f"unexpected announcement {announced!r}: {self.process.communicate()[1]}")
        self.port = int(match.group(1))

    def stop(self):
        """Ends the host; returns what it wrote to its error output."""
        self.process.terminate()
        return self.process.communicate(timeout=PATIENCE)[1]


class Client:
    """A connection; with negotiate, one that answers as the terminal does."""

    def __init__(self, port, negotiate=True, blockSize=4096):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=PATIENCE)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.model = Model()
        self.received = bytearray()
        self.closed = False
        self._negotiate = negotiate
        self._blockSize = blockSize

    def close(self):
        self.socket.close()

    def send(self, data):
        self.socket.sendall(data)

    def receive(self, timeout):
        """Takes one block into the model; False when nothing came."""
        self.socket.settimeout(timeout)
        try:
            block = self.socket.recv(self._blockSize)
        except (TimeoutError, socket.timeout):
            return False
        except ConnectionError:
            self.closed = True
            return False
        if not block:
            self.closed = True
            return False
        self.received += block
        self.model.feed(block)
        if self._negotiate and self.model.replies:
            self.send(bytes(self.model.replies))
            self.model.replies.clear()
        return True

    def settle(self, quiet=0.2):
        """Takes what comes until nothing has come for a while; for clients that do not negotiate."""
        while self.receive(quiet):
            pass

    def settleAfter(self, count, quiet=0.3):
        """Waits for this many bytes in all, then takes what comes beyond them until nothing has come for a while."""
        deadline = time.monotonic() + PATIENCE
        while len(self.received) < count and not self.closed and time.monotonic() < deadline:
            self.receive(0.2)
        self.settle(quiet)

    def synchronise(self):
        """Waits until the host has acted upon everything sent so far, by a telnet timing mark."""
        expected = self.received.count(TIME_MARKED) + 1
        try:
            self.send(DO_TIMING_MARK)
        except OSError:
            self.waitForEnd()
            return
        deadline = time.monotonic() + PATIENCE
        while self.received.count(TIME_MARKED) < expected and not self.closed:
            if time.monotonic() > deadline:
                raise AssertionError(f"the host does not answer; the screen is\n{self.model.page()}")
            self.receive(0.5)

    def waitUntil(self, condition, what):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            if self.closed or time.monotonic() > deadline:
                raise AssertionError(f"waited for {what}; the screen is\n{self.model.page()}")
            self.receive(0.2)

    def waitFor(self, text):
        self.waitUntil(lambda: text in self.model.page(), repr(text))
        if not self.closed:
            self.synchronise()

    def waitForEnd(self):
        deadline = time.monotonic() + PATIENCE
        while not self.closed and time.monotonic() < deadline:
            self.receive(0.2)
        return self.closed

    def press(self, *keys):
        """Presses keys by name (f1 to f8 send what is programmed in the current bank) or types text."""
        for key in keys:
            if re.fullmatch(r"f[1-8]", key):
                self.send(self.model.strings[self.model.bank][int(key[1]) - 1].encode("latin-1"))
            else:
                self.send(KEYS.get(key) or key.encode("latin-1"))
            if key == "escape":
                time.sleep(0.3)
            self.synchronise()

    def signOn(self, name="Anna"):
        self.waitFor("Login:")
        self.press(name, "enter")
        self.waitFor("Password:")
        self.press("secret", "enter")
        self.waitFor("Main menu")


class HostTest(unittest.TestCase):
    """A test case with a host of its own class, and a fresh client for each test."""

    options = ("--fixed-clock",)

    @classmethod
    def setUpClass(cls):
        cls.host = HostProcess(*cls.options)

    @classmethod
    def tearDownClass(cls):
        errors = cls.host.stop()
        assert not errors, errors

    def open(self, **options):
        client = Client(self.host.port, **options)
        self.addCleanup(client.close)
        return client

    def signedOn(self, name="Anna", **options):
        client = self.open(**options)
        client.signOn(name)
        return client
