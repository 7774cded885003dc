"""A program in another process that reads the screen to its user (tests/windows/screen-reader)."""

import contextlib
import json
import os
import subprocess

from program import BUILD, PATIENCE, Failure, checkEqual

# What an object is (role) and how it stands (bits of its state), as the system counts them.
TEXT, STATIC_TEXT = 42, 41
SELECTED, FOCUSED, READ_ONLY, FOCUSABLE = 0x2, 0x4, 0x40, 0x100000


def _start(*wish):
    return subprocess.Popen([os.environ["WINE"], str(BUILD / "screen-reader.exe"), *map(str, wish)],
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)


def _line(process, what):
    line = process.stdout.readline()
    if not line.strip():
        raise Failure(f"{what}: the screen reader said nothing")
    return json.loads(line)


def _ask(wish):
    with _start(wish) as process:
        try:
            return _line(process, wish)
        finally:
            process.kill()


def readScreen():
    """The terminal's screen as a reader finds it."""
    screen = _ask("screen")
    if not isinstance(screen, dict):
        raise Failure(f"reading the screen: {screen}")
    return screen


def rowsRead():
    return [row["value"] for row in readScreen()["rows"]]


def readControls():
    """The window in front: its title and its visible controls."""
    return _ask("controls")


class Listening:
    """Hears what is announced while the with statement's body runs, and for the rest of the seconds."""

    def __init__(self, seconds):
        self.seconds = seconds
        self.counts, self.rows = {}, {}

    def __enter__(self):
        self.process = _start("events", self.seconds)
        checkEqual(_line(self.process, "events"), "listening", "what listens")
        return self

    def __exit__(self, kind, *_):
        try:
            if kind is None:
                heard = _line(self.process, "events")
                self.counts = heard["counts"]
                self.rows = {int(row) - 1: count for row, count in heard["rows"].items()}
        finally:
            self.process.kill()
            self.process.wait()

    def count(self, event):
        return self.counts.get(event, 0)


@contextlib.contextmanager
def heldObject():
    """Somebody holds the screen's object; the routine gives what it answers once the window has gone."""
    with _start("held") as process:
        try:
            checkEqual(_line(process, "held"), "held", "who holds the object")
            yield lambda: _line(process, "the answers of the object that was held")
            process.wait(PATIENCE)
        finally:
            process.kill()
