"""Serial lines: COM2 is a pseudo-terminal, whose other end is in the test's hands."""

import contextlib
import errno
import os
import pty
import re
import select
import subprocess
import tempfile
import threading
import time
import tty
from pathlib import Path

from program import PATIENCE, Failure, Program, waitFor

HERE = Path(__file__).resolve().parent


def nameSerialPorts(ports):
    """Makes Wine take these files for serial ports, {"COM2": path}. Only before Wine starts in this prefix."""
    registry = Path(os.environ["WINEPREFIX"]) / "system.reg"
    text = registry.read_text(encoding="latin-1")
    section = r"[Software\\Wine\\Ports]"
    values = "".join(f'"{name}"="{path}"\n' for name, path in ports.items())
    # The section is followed by the time of its last change, and then by lines that begin with "#".
    found = re.search("^" + re.escape(section) + r".*\n(#.*\n)*", text, re.MULTILINE)
    if found is not None:
        text = text[:found.end()] + values + text[found.end():]
    else:
        text += f"\n{section} 1700000000\n{values}"
    registry.write_text(text, encoding="latin-1")


def serialProfile(kind="serial", **more):
    return {"connect": kind, "commport": 2, "baud": 9600, "flowControl": 0, "Font": "large", **more}


class SerialLine:
    """The line behind COM2: what the program sends is kept, the carrier and the breaks are there to be set and read."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="qxterm-line-")
        self.folder = Path(self._folder.name)
        self.link = self.folder / "com2"
        self.received = bytearray()
        self.arrived = 0.0  # when the last of it came, by the monotonic clock
        self.onData = self.received.extend
        self._master = self._slave = None
        self._reader = None
        self._library = self.folder / "line_signals.so"
        subprocess.run(["gcc", "-shared", "-fPIC", "-O1", "-o", self._library, HERE / "line_signals.c", "-ldl"],
                       check=True)
        self.setCarrier(False)

    def __enter__(self):
        self.plug()
        return self

    def __exit__(self, *_):
        self.unplug()

    def plug(self):
        self._master, self._slave = pty.openpty()
        # The end that the program has is a line, not a terminal: nothing is echoed or translated on it.
        tty.setraw(self._slave)
        os.set_blocking(self._master, False)
        self.link.unlink(missing_ok=True)
        self.link.symlink_to(os.ttyname(self._slave))
        self._plugged = True
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def unplug(self):
        """The line is pulled out; its name stays and leads nowhere."""
        if self._master is None:
            return
        self._plugged = False
        self._reader.join()
        os.close(self._slave)
        os.close(self._master)
        self._master = self._slave = None

    def _read(self):
        while self._plugged:
            if not select.select([self._master], [], [], 0.02)[0]:
                continue
            with contextlib.suppress(BlockingIOError):
                block = os.read(self._master, 65536)
                self.arrived = time.monotonic()
                self.onData(block)

    def send(self, data, seconds=PATIENCE):
        """Waits for as long as the line takes nothing."""
        view, end = memoryview(data), time.monotonic() + seconds
        while view:
            if not select.select([], [self._master], [], 0.1)[1]:
                if time.monotonic() > end:
                    raise Failure(f"after {seconds:g} s the line has not taken {len(view)} of {len(data)} bytes")
                continue
            with contextlib.suppress(BlockingIOError):
                view = view[os.write(self._master, view):]

    def expect(self, data, what, seconds=PATIENCE):
        """Waits until exactly these bytes have come since the last expect."""
        waitFor(lambda: len(self.received) >= len(data),
                lambda: f"{what}: {data!r} arrives; there is {bytes(self.received)!r}", seconds)
        found = bytes(self.received)
        if found != data:
            raise Failure(f"{what}: {data!r} arrives; it was {found!r}")
        self.received.clear()

    def setCarrier(self, on):
        half = self.folder / "carrier.new"
        half.write_text("1" if on else "0")
        half.rename(self.folder / "carrier")

    def setBusy(self, on):
        """Whether opening the port fails, as when another program has it."""
        if on:
            (self.folder / "busy").touch()
        else:
            (self.folder / "busy").unlink(missing_ok=True)

    def breaks(self):
        """Begins (1) and ends (0) of breaks so far: (seconds since 1970, begin or end)."""
        try:
            lines = (self.folder / "breaks").read_text().splitlines()
        except FileNotFoundError:
            return []
        return [(float(line.split()[0]), int(line.split()[1])) for line in lines]

    def program(self, profile, **more):
        """The program with the line's signals."""
        return Program(profile, environment=self.environment(), **more)

    def environment(self):
        """What a program's environment needs to have the line's signals."""
        return {"LD_PRELOAD": str(self._library), "QXTERM_LINE": str(self.folder)}


class Login:
    """A terminal of the system with the login program on it, at the other end of a line."""

    def __init__(self, line, watch=lambda block: None):
        self._line, self._watch = line, watch

    def __enter__(self):
        self._process, self._terminal = pty.fork()
        if self._process == 0:
            os.execve("/bin/login", ["login"], {"TERM": "qxterm", "PATH": "/usr/bin:/bin"})
        self._carrying = threading.Thread(target=self._carry, daemon=True)
        self._carrying.start()
        self._line.onData = self._fromProgram
        return self

    def _fromProgram(self, data):
        with contextlib.suppress(OSError):
            os.write(self._terminal, data)

    def _carry(self):
        while True:
            try:
                block = os.read(self._terminal, 4096)
            except OSError as error:
                if error.errno != errno.EIO:
                    raise
                return  # the shell is gone
            self._watch(block)
            self._line.send(block)

    def __exit__(self, *_):
        self._line.onData = self._line.received.extend
        with contextlib.suppress(ProcessLookupError):
            os.kill(self._process, 9)
        os.waitpid(self._process, 0)
        self._carrying.join()
        os.close(self._terminal)
