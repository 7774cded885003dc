"""The installer's windows, by keys: cancel, install into another folder, upgrade, repair, remove."""

import os
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import installer  # noqa: E402
from installer import DRIVE, checkInstalled, msiOf, windowsPath, wine  # noqa: E402
from program import BUILD, TITLE, check, checkEqual, run, saveScreen, waitFor, xdotool  # noqa: E402

SETUP = f"{TITLE} Setup"
ELSEWHERE = DRIVE / "Terminals" / "qxterm"


class Setup:
    """The installer with its windows. Each step waits for the text of the window that it acts on."""

    def __init__(self, *arguments):
        self.arguments = arguments

    def __enter__(self):
        self.process = subprocess.Popen([os.environ["WINE"], "msiexec", *self.arguments], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def texts(self):
        return wine(BUILD / "neighbour.exe", "texts", SETUP)[1].splitlines()

    def sees(self, text, picture=None):
        waitFor(lambda: any(text in line for line in self.texts()),
                lambda: f"the installer shows {text!r}; it shows {self.texts()}", 60, pause=0.2)
        if picture:
            saveScreen(f"package-{picture}")

    def key(self, *names, windows=1):
        """Types into the window that stands in front; windows: how many stand then."""

        def height(window):
            told = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], capture_output=True, text=True)
            return int(re.search(r"HEIGHT=(\d+)", told.stdout + "HEIGHT=0").group(1))

        def front():
            # A window that was left a moment ago may still stand, and keys would be lost with it.
            found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{SETUP}$"], capture_output=True,
                                   text=True).stdout.split()
            return min(found, key=height) if len(found) == windows else None

        def active():
            window = front()
            now = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True).stdout.strip()
            if window and window != now:
                subprocess.run(["xdotool", "windowactivate", window], capture_output=True)
            return window and window == now

        waitFor(active, f"{windows} of the installer's windows stand, and the front one has the keyboard", pause=0.1)
        xdotool("key", "--delay", "30", *names)

    def ends(self, status):
        waitFor(lambda: self.process.poll() is not None, lambda: f"the installer ends; it shows {self.texts()}", 60)
        checkEqual(self.process.returncode, status, "the installer's exit status")


def install(old):
    with Setup("/i", windowsPath(msiOf(old))) as setup:
        setup.sees("for all users", "welcome")
        setup.key("alt+n")
        setup.sees("Install in this folder", "folder")
        setup.key("alt+b")
        setup.sees("for all users")
        setup.key("Return")
        setup.sees("Install in this folder")
        setup.key("Home", "shift+End", "Delete")
        xdotool("type", "--delay", "20", "C:\\Terminals\\qxterm")
        waitFor(lambda: any("C:\\Terminals\\qxterm" in line for line in setup.texts()), "the folder is typed")
        setup.key("alt+i")
        setup.sees("is installed. It is", "finished")
        setup.key("Return")
        setup.ends(0)
    check((ELSEWHERE / "qxterm.exe").is_file(), "the program is in the folder that was typed")
    check(not installer.FOLDER.exists(), "and nowhere else")


def cancel(old):
    with Setup("/i", windowsPath(msiOf(old))) as setup:
        setup.sees("for all users")
        setup.key("Escape")
        setup.sees("Do you want to cancel", "cancel")
        setup.key("alt+n", windows=2)
        setup.sees("for all users")
        setup.key("Escape")
        setup.sees("Do you want to cancel")
        setup.key("alt+y", windows=2)
        setup.sees("Nothing has been changed", "cancelled")
        setup.key("Return")
        setup.ends(66)  # 1602, of which a Unix exit status keeps one byte
    check(not installer.FOLDER.exists() and not ELSEWHERE.exists(), "nothing is installed")


def upgrade(new):
    """It goes where the version before is."""
    with Setup("/i", windowsPath(msiOf(new))) as setup:
        setup.sees("for all users")
        setup.key("Return")
        setup.sees("C:\\Terminals\\qxterm", "upgrade-folder")
        setup.key("alt+i")
        setup.sees("is installed. It is")
        setup.key("Return")
        setup.ends(0)
    checkInstalled(new, ELSEWHERE)
    checkEqual([entry["DisplayVersion"] for entry in installer.programsListed()], [installer.projectVersion()],
               "versions in the list of programs")


def repair(new):
    (ELSEWHERE / "QXTERM.ttf").unlink()
    with Setup("/i", windowsPath(msiOf(new))) as setup:
        setup.sees("It is installed on this computer", "maintenance")
        setup.key("alt+r")
        setup.sees("All is again as it was")
        setup.key("Return")
        setup.ends(0)
    checkInstalled(new, ELSEWHERE)


def remove(new):
    with Setup("/i", windowsPath(msiOf(new))) as setup:
        setup.sees("It is installed on this computer")
        setup.key("alt+e")
        setup.sees("has been removed", "removed")
        setup.key("Return")
        setup.ends(0)
    checkEqual(installer.programsListed(), [], "the list of programs")
    check(not ELSEWHERE.exists(), f"the folder is gone: {list(ELSEWHERE.rglob('*')) if ELSEWHERE.exists() else ''}")


def throughWindows():
    with installer.packages() as (new, old):
        cancel(old)
        install(old)
        upgrade(new)
        repair(new)
        remove(new)


run(throughWindows)
