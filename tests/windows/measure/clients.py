"""The programs that are measured side by side: builds of qxterm, PuTTY, and a reader that only receives."""

import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

import display
from host import Host
from program import BUILD, ROOT, TITLE, Failure, netProfile, waitFor, writeProfiles

READER = ROOT / "build" / "windows" / "reader.exe"
COLUMN_WIDTH, ROW_HEIGHT = 790, 560  # pixels: one window's room on the display
COLUMNS = 2
CAPTION = 30
START = 60.0  # seconds

# No window asks anything at its end, keys go to the host at once, the right button calls a menu, and so much is kept of
# what has scrolled off as in qxterm; the font is that of qxterm's setting "large".
PUTTY_SESSION = {"Font": "Courier New", "FontIsBold": 0, "FontCharSet": 0, "FontHeight": 11, "TermWidth": 80,
                 "TermHeight": 24, "ScrollbackLines": 500, "WarnOnClose": 0, "CloseOnExit": 2, "LocalEcho": 1,
                 "LocalEdit": 1, "BlinkCur": 0, "MouseIsXterm": 2, "LineCodePage": "ISO-8859-1"}


class Client:
    """A running client and its host. Use it in a with statement: it is connected then, and has its place on the display.
    """

    title = None  # of its window, as a regular expression; None without a window
    pause = 0.0  # seconds that it rests at its start

    def __init__(self, name, slot):
        """slot: which room on the display is its own."""
        self.name, self._slot = name, slot
        self.window = None
        self.environment = {}  # more of it, for this program
        self.errors = subprocess.DEVNULL  # where its standard error goes

    def command(self):
        raise NotImplementedError

    def prepare(self):
        """What has to be there before the program starts."""

    def callMenu(self, screen):
        """Does what opens one of its menus. The moment before."""
        raise NotImplementedError

    def __enter__(self):
        self.host = Host()
        self._scratch = tempfile.mkdtemp(prefix="qxterm-")
        self.prepare()
        environment = dict(os.environ, **self.environment)
        self.startedAt = time.monotonic()
        self._process = subprocess.Popen(self.command(), cwd=self._scratch, env=environment, stdin=subprocess.DEVNULL,
                                         stdout=subprocess.DEVNULL, stderr=self.errors)
        self.process = self._process.pid
        try:
            self._waitStart()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _waitStart(self):
        if self.title is not None:
            with display.Display() as screen:
                self.window = waitFor(lambda: screen.windowOf(self.process, self.title), f"{self.name} shows its window",
                                      START, pause=0.002)
            self.shownAt = time.monotonic()
        self.host.waitConnected(START)
        if self.window is None:
            return
        display.moveWindow(self.window, self._slot % COLUMNS * COLUMN_WIDTH, self._slot // COLUMNS * ROW_HEIGHT + CAPTION)

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.kill()
        self._process.wait()
        self.host.__exit__()
        shutil.rmtree(self._scratch, ignore_errors=True)

    def alive(self):
        return self._process.poll() is None

    def area(self, screen):
        """The inside of its window, to be looked at."""
        return display.Area(screen, *screen.place(self.window))


class Qxterm(Client):
    title = f"^{TITLE} - "
    pause = 3.0  # the picture at the start (src/app/main.cpp)

    def __init__(self, name, slot, folder):
        super().__init__(name, slot)
        self._program = Path(folder) / "qxterm.exe"
        if not self._program.exists():
            raise Failure(f"{self._program} is missing")

    def prepare(self):
        writeProfiles({self.name: netProfile(self.host.port)})

    def command(self):
        return [os.environ["WINE"], str(self._program), self.name]

    def callMenu(self, screen):
        return screen.key("Alt_L", "c")


class Putty(Client):
    title = "PuTTY"

    def __init__(self, name, slot, program):
        super().__init__(name, slot)
        self._program = program

    def prepare(self):
        lines = ["REGEDIT4", "", r"[HKEY_CURRENT_USER\Software\SimonTatham\PuTTY\Sessions\measured]"]
        for name, value in PUTTY_SESSION.items():
            lines.append(f'"{name}"=dword:{value:08x}' if isinstance(value, int) else f'"{name}"="{value}"')
        settings = Path(self._scratch) / "session.reg"
        settings.write_text("\r\n".join(lines) + "\r\n")
        subprocess.run([os.environ["WINE"], "regedit", "/S", f"Z:{settings}"], check=True)

    def command(self):
        return [os.environ["WINE"], self._program, "-load", "measured", "-telnet", "127.0.0.1", "-P", str(self.host.port)]

    def callMenu(self, screen):
        left, top, width, height = screen.place(self.window)
        return screen.rightClick(left + width // 2, top + height // 2)


class Reader(Client):
    def command(self):
        return [os.environ["WINE"], str(READER), "127.0.0.1", str(self.host.port)]


def puttyProgram():
    """Builds it when it is missing."""
    made = subprocess.run([ROOT / "tools" / "setup" / "plink.sh", "putty"], stdout=subprocess.PIPE, text=True)
    if made.returncode != 0:
        raise Failure("putty.exe could not be built")
    return made.stdout.strip()


def chosen(names, builds):
    """The clients of a run. names: those wanted. builds: {name: folder} of further builds of qxterm."""
    found = []
    for name, folder in {"qxterm": BUILD, **builds}.items():
        if name in names or name in builds:
            found.append(Qxterm(name, len(found), folder))
    if "putty" in names:
        found.append(Putty("putty", len(found), puttyProgram()))
    if "reader" in names:
        found.append(Reader("reader", len(found)))
    return found
