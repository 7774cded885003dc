"""What other programs and the system do to the program under test (tests/windows/neighbour)."""

import contextlib
import os
import subprocess

from program import BUILD, Failure, checkEqual


def _start(*wish):
    return subprocess.Popen([os.environ["WINE"], str(BUILD / "neighbour.exe"), *map(str, wish)],
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)


@contextlib.contextmanager
def _holding(what, wish, *arguments):
    with _start(wish, *arguments) as holder:
        try:
            checkEqual(holder.stdout.readline().strip(), "held", f"what {what}")
            yield
        finally:
            holder.kill()


def heldClipboard(seconds=30):
    """The clipboard is another program's."""
    return _holding("holds the clipboard", "hold-clipboard", seconds)


def heldFile(path, seconds=120):
    """Another program has the file open, and lets nobody replace or rename it."""
    return _holding("holds the file", "hold-file", seconds, path)


def keptToItself(path, seconds=120):
    """Another program has the file open, and lets nobody read it."""
    return _holding("keeps the file to itself", "keep-file", seconds, path)


def forgeMessages():
    """Another program posts what the windows of the program send each other, with addresses of nothing in it. All has
    been carried out when the routine returns."""
    with _start("forge") as other:
        said, _ = other.communicate(timeout=60)
        checkEqual(said.strip(), "forged", "what forges messages")


@contextlib.contextmanager
def windowInFront(seconds=60):
    """A window of another program moves about in front of the main window."""
    with _start("cover", seconds) as other:
        try:
            checkEqual(other.stdout.readline().strip(), "over", "what moves in front")
            yield
        finally:
            other.kill()


class SessionEnd:
    """The system asks whether the session may end. Waits for the answer at the end of the with statement's body."""

    def __init__(self, answer):
        """answer: the one expected, yes or no."""
        self.expected = answer

    def __enter__(self):
        self.process = _start("end-session")
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            self.process.kill()
        try:
            said, _ = self.process.communicate(timeout=20)
        except subprocess.TimeoutExpired as late:
            self.process.kill()
            raise Failure("the system gets no answer about the session's end") from late
        if kind is None:
            checkEqual(said.strip(), self.expected, "the answer about the session's end")
