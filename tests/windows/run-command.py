"""./run, started as its user does: the picture that it takes without a desktop, the demonstration and a profile on a desktop,
what it leaves behind however it ends, and what it says to arguments that it does not know."""

import contextlib
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import processes  # noqa: E402
from peers import DemonstrationHost, Peer  # noqa: E402
from program import (ROOT, TEST, TITLE, SHOTS, Program, check, checkEqual, focusTitle, netProfile, readIni, run,  # noqa: E402
                     waitFor, writeProfiles, xdotool)

# It looks for packages, configures, and has ninja find that nothing is to be built, beside whatever else runs.
PATIENCE = 180.0
CELL = 9 * 18  # pixels of the large font's
MAIN = f"{TITLE} - demo"


class Command:
    """A running ./run, in the prefix of this test."""

    def __init__(self, *words, folder=None, desktop=True):
        self.words, self.folder, self.desktop = words, folder, desktop

    def __enter__(self):
        environment = dict(os.environ, QXTERM_PREFIX=os.environ["WINEPREFIX"])
        if not self.desktop:
            del environment["DISPLAY"]
        self._output = tempfile.TemporaryFile("w+")
        # In a session of its own, so that it is the command alone that ends what it has started; and what this test has been
        # told to ignore, as everything in the background of a script is told of Ctrl+C, the command hears.
        self.process = subprocess.Popen([ROOT / "run", *self.words], cwd=self.folder, env=environment, stdin=subprocess.DEVNULL,
                                        stdout=self._output, stderr=subprocess.STDOUT, start_new_session=True,
                                        preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self._output.close()

    def said(self):
        self._output.seek(0)
        return self._output.read()

    def port(self):
        """Of its demonstration host."""
        pattern = re.compile(r"^== The demonstration host listens on 127\.0\.0\.1, port (\d+)$", re.MULTILINE)
        found = waitFor(lambda: pattern.search(self.said()) or self.process.poll() is not None,
                        lambda: f"the demonstration host listens: {self.said()}", PATIENCE)
        check(found is not True, f"it has ended: {self.said()}")
        return int(found[1])

    def stands(self, title):
        """Its window has the keyboard."""
        waitFor(lambda: focusTitle() == title or self.process.poll() is not None,
                lambda: f"{title!r} has the keyboard, not {focusTitle()!r}: {self.said()}", PATIENCE)
        check(self.process.poll() is None, f"it runs: {self.said()}")

    def ends(self, status):
        waitFor(lambda: self.process.poll() is not None, lambda: f"it ends: {self.said()}", PATIENCE)
        check(self.process.returncode == status, f"it ends with {status}, not {self.process.returncode}: {self.said()}")


def left():
    """Processes of the test's prefix, but for those of the test."""
    return [" ".join(words) for words in processes.inPrefix("QXTERM_PREFIX").values()]


def nothingLeft(port=None):
    waitFor(lambda: not left(), lambda: f"everything has ended; there is {left()}")
    if port is not None:
        with socket.socket() as probe:
            check(probe.connect_ex(("127.0.0.1", port)) != 0, f"nobody listens on port {port}")


def pixels(picture):
    """Its width, its height and the brightness of each pixel."""
    done = subprocess.run(["convert", str(picture), "-colorspace", "gray", "-depth", "8", "pgm:-"],
                          check=True, capture_output=True)
    header = re.match(rb"P5\s(\d+)\s(\d+)\s255\s", done.stdout)
    return int(header[1]), int(header[2]), done.stdout[header.end():]


def whole():
    """The same screen, in a window that the test itself has started, with the frame around it."""
    with DemonstrationHost() as host:
        writeProfiles({"demo": netProfile(host.port)})
        with Program("demo") as program:
            program.waitText("Sign-on", row=0)
            program.waitForm("frmConn", loaded=False)
            program.settle()
            path = SHOTS / f"{TEST}-expected.png"
            SHOTS.mkdir(parents=True, exist_ok=True)
            subprocess.run(["import", "-silent", "-window", "root", "-trim", "+repage", str(path)], check=True)
    return path


def picture():
    with tempfile.TemporaryDirectory() as folder:
        with Command("--shot", "window.png", folder=folder, desktop=False) as command:
            command.ends(0)
            shot = Path(folder, "window.png")
            shutil.copy(shot, SHOTS / f"{TEST}-found.png")
            check(f"\nPicture of the window: {shot}\n" in command.said(), f"it names the picture: {command.said()}")
            port = command.port()
        nothingLeft(port)
        width, height, found = pixels(shot)
    wantedWidth, wantedHeight, wanted = pixels(whole())
    checkEqual((width, height), (wantedWidth, wantedHeight), "pixels of the picture")
    # But for the clock, whose minutes and date may differ, and the cursor.
    different = sum(a != b for a, b in zip(found, wanted))
    check(different < 18 * CELL, f"{different} pixels of the login screen differ")


def demonstration():
    writeProfiles({"mine": netProfile(1)})
    with Command() as command:
        port = command.port()
        command.stands(MAIN)
        checkEqual(readIni()["mine"]["netport"], "1", "the profile that was there")
        checkEqual(readIni()["demo"]["netport"], str(port), "the port of the profile that was added")
        checkEqual(readIni()["Settings"]["Profiles"].split(), ["mine", "demo"], "the list of profiles")
        xdotool("key", "alt+F4")
        waitFor(lambda: focusTitle() == TITLE, lambda: f"it asks whether to leave; {focusTitle()!r}")
        xdotool("key", "y")
        command.ends(0)
        check("== qxterm is running; close its window to end it\n" in command.said(), command.said())
    nothingLeft(port)


def profile():
    with Peer() as peer:
        writeProfiles({"own": netProfile(peer.port)})
        with Command("own", "--seconds", "3600") as command:
            waitFor(lambda: peer.connections, lambda: f"the profile's host is called: {command.said()}", PATIENCE)
            command.stands(f"{TITLE} - own")
            check("demonstration" not in command.said(), "no demonstration host is started")
            xdotool("type", "typed")
            peer.expect(b"typed", "what is typed")
            checkEqual(readIni()["Settings"]["Profiles"].split(), ["own"], "the list of profiles")
            check("demo" not in readIni(), "no profile is added")
            # As Ctrl+C at the terminal, which the shell and all that it has started hear.
            os.killpg(command.process.pid, signal.SIGINT)
            command.ends(130)
        nothingLeft()


def ended():
    with Command() as command:
        port = command.port()
        command.stands(MAIN)
        command.process.terminate()
        command.ends(143)
    nothingLeft(port)


def seconds():
    with Command("--seconds", "2") as command:
        port = command.port()
        command.ends(0)
    nothingLeft(port)


def arguments():
    for words, status, text in ((["--help"], 0, "Usage: ./run [PROFILE] [--shot FILE] [--seconds N]\n"),
                                (["--nonsense"], 2, "run: unknown argument --nonsense\nUsage: "),
                                (["--seconds", "soon"], 2, "run: --seconds takes a whole number\n"),
                                (["--seconds"], 2, "Usage: "), (["--shot"], 2, "Usage: ")):
        with Command(*words) as command:
            command.ends(status)
            check(command.said().startswith(text), f"{words}: it says {text!r}, not {command.said()!r}")


run(picture, demonstration, profile, ended, seconds, arguments)
