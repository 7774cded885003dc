"""The program in its window: starting it, the keyboard and the mouse, pictures, and questions to the probe."""

import contextlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import processes

ROOT = Path(__file__).resolve().parents[3]
BUILD = Path(os.environ.get("QXTERM_BUILD", ROOT / "build" / "windows"))
SHOTS = ROOT / "build" / "shots" / "windows"
TEST = Path(sys.argv[0]).stem
TITLE = "Zentora Terminal Emulator"
PATIENCE = 20.0
SKIPPED = 77


class Failure(Exception):
    """What was expected and did not come."""


class Skip(Exception):
    """The privilege that the test lacks here."""


def waitFor(condition, what, seconds=PATIENCE, pause=0.02):
    """Polls until condition() is true and returns it. what: a text, or a routine that makes one at the end. pause:
    between two looks, in seconds."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise Failure(f"after {seconds:g} s: {what() if callable(what) else what}")
        time.sleep(pause)


def check(truth, what):
    if not truth:
        raise Failure(what)


def checkEqual(found, expected, what):
    if found != expected:
        raise Failure(f"{what}:\n  expected {expected!r}\n  found    {found!r}")


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True, stdout=subprocess.DEVNULL)


def focusTitle():
    """The title of the window that has the display's keyboard. The program knows of its windows before the display shows
    them and after it has taken them away: what is typed or clicked meanwhile is lost."""
    done = subprocess.run(["xdotool", "getwindowfocus", "getwindowname"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True)
    return done.stdout.rstrip("\n") if done.returncode == 0 else None


def saveScreen(name):
    """A picture of the whole display below build/shots/windows; returns its path."""
    SHOTS.mkdir(parents=True, exist_ok=True)
    path = SHOTS / f"{name}.png"
    subprocess.run(["import", "-silent", "-window", "root", str(path)], check=True)
    return path


def capture(left, top, width, height):
    """The pixels of a part of the display, three bytes each."""
    done = subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "-depth",
                           "8", "rgb:-"], check=True, capture_output=True)
    if len(done.stdout) != width * height * 3:
        raise Failure(f"a picture of {width} x {height} pixels has {len(done.stdout)} bytes")
    return done.stdout


def iniPath():
    return Path(os.environ["WINEPREFIX"]) / "drive_c" / "windows" / "qxterm.ini"


def writeIni(sections):
    lines = []
    for section, values in sections.items():
        lines.append(f"[{section}]")
        lines += [f"{key}={value}" for key, value in values.items()]
    iniPath().write_text("\r\n".join(lines) + "\r\n", encoding="latin-1")


def readIni():
    sections, current = {}, None
    for line in iniPath().read_text(encoding="latin-1").splitlines():
        if line.startswith("["):
            current = sections.setdefault(line.strip("[]"), {})
        elif "=" in line and current is not None:
            key, value = line.split("=", 1)
            current[key] = value
    return sections


def writeProfiles(profiles, **settings):
    """qxterm.ini with these profiles: {name: {key: value}}."""
    values = {"Profiles": "".join(f"{name} " for name in profiles), "Mru": "", **settings}
    writeIni({"Settings": values, **profiles})


def netProfile(port, **more):
    return {"connect": "net", "host": "127.0.0.1", "netport": port, "Font": "large", **more}


class Program:
    """One running window. Use it in a with statement."""

    def __init__(self, profile="", waiting=True, folder=BUILD, environment=None):
        """waiting: until the main window is shown. folder: where the program's files are. environment: more of it."""
        self.profile = profile
        self.waiting = waiting
        self.folder = Path(folder)
        self.environment = environment or {}

    def __enter__(self):
        self.scratch = tempfile.mkdtemp(prefix="qxterm-")
        self._number = 0
        self._log = open(Path(self.scratch) / "log", "w")
        environment = dict(os.environ, QXTERM_PROBE="Z:" + self.scratch.replace("/", "\\"), **self.environment)
        self.process = subprocess.Popen(self.command(), env=environment, cwd=self.scratch, stdin=subprocess.DEVNULL,
                                        stdout=self._log, stderr=self._log)
        try:
            if self.waiting:
                self.waitStart()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self._log.close()
        shutil.rmtree(self.scratch, ignore_errors=True)

    def command(self):
        """The command line that starts it."""
        program = [os.environ["WINE"], str(self.folder / "qxterm-probe.exe")]
        return program + [self.profile] if self.profile else program

    def waitStart(self):
        waitFor(lambda: self.ask("places", seconds=60).get("frmterm", {}).get("visible"), "the main window is shown", 60)

    def close(self):
        """Closes the window as its user does and waits for the program's end."""
        self.focus()
        self.key("alt+F4")
        waitFor(lambda: not self.alive(), lambda: f"the program ends; there are {self.boxes()}")
        checkEqual(self.process.returncode, 0, "the program's exit status")

    def alive(self):
        return self.process.poll() is None

    # --- the probe ---------------------------------------------------------------------------------------------------

    def ask(self, *subjects, seconds=PATIENCE, more=None):
        """The probe's answer about one subject, or a list of answers. more: what the question says besides."""
        self._number += 1
        folder = Path(self.scratch)
        half = folder / "request.tmp"
        half.write_text(json.dumps({"id": self._number, "want": list(subjects), **(more or {})}))
        half.rename(folder / "request.json")

        def answer():
            if not self.alive():
                end = folder / "end.txt"
                why = f": {end.read_text(errors='replace')}" if end.exists() else ""
                raise Failure(f"the program has ended with status {self.process.returncode}{why}")
            try:
                reply = json.loads((folder / "reply.json").read_bytes())
            except (FileNotFoundError, ValueError):
                return None
            return reply if reply["id"] == self._number else None

        reply = waitFor(answer, f"the probe answers about {', '.join(subjects)}", seconds)
        if "refused" in reply:
            raise Failure(f"the probe: {reply['refused']}")
        for subject in subjects:
            if "fault" in reply[subject]:
                raise Failure(f"the probe on {subject}: {reply[subject]['fault']}")
        return reply[subjects[0]] if len(subjects) == 1 else [reply[subject] for subject in subjects]

    def processor(self):
        """Seconds in which the window's thread has run, and in which it has waited for a processor."""
        return processes.threadTimes(self.process.pid)

    def answerTime(self):
        """Seconds until the window's message loop answers a question, without those in which its thread waited for a
        processor that others had; and those in which it ran, which are the program's own doing on any machine."""
        ran, waited = self.processor()
        began = time.monotonic()
        self.ask("view")
        seconds = time.monotonic() - began
        ranNow, waitedNow = self.processor()
        return seconds - (waitedNow - waited), ranNow - ran

    def rows(self):
        """The 25 rows without trailing blanks."""
        return [row.rstrip() for row in self.ask("screen")["rows"]]

    def page(self):
        return "\n".join(f"  {number:2}|{row}" for number, row in enumerate(self.rows()))

    def waitText(self, text, row=None, seconds=PATIENCE):
        def there():
            rows = self.rows()
            return text in (rows[row] if row is not None else "\n".join(rows))

        where = "" if row is None else f" in row {row}"
        waitFor(there, lambda: f"{text!r} on the screen{where}, which is\n{self.page()}", seconds)

    def waitRows(self, expected, what, seconds=PATIENCE):
        """expected: {row: text without trailing blanks}."""

        def different():
            rows = self.rows()
            return [(row, text, rows[row]) for row, text in expected.items() if rows[row] != text]

        def told():
            lines = [f"{what}: rows differ"]
            for row, text, found in different():
                lines += [f"  row {row:2} expected {text!r}", f"         found    {found!r}"]
            return "\n".join(lines)

        waitFor(lambda: not different(), told, seconds)

    def waitState(self, name, value):
        waitFor(lambda: self.ask("state")[name] == value, f"{name} is {value}")

    def waitForm(self, name, loaded=True, seconds=PATIENCE):
        waitFor(lambda: (name in self.ask("forms")) == loaded, f"{name} is {'open' if loaded else 'closed'}", seconds)

    def label(self, form, control):
        """A caption of a loaded form, or None."""
        forms = self.ask("forms")
        return forms[form]["controls"][control]["caption"] if form in forms else None

    def messageBox(self, text, seconds=PATIENCE):
        """Waits for the message box with this text; returns it as the probe tells it."""

        def find():
            for window in self.ask("windows"):
                for child in window["children"]:
                    if text in child["text"] and window["title"] == TITLE:
                        return window
            return None

        return waitFor(find, lambda: f"a message box with {text!r}; there are {self.ask('windows')}", seconds)

    def boxes(self):
        """Texts of the message boxes that stand."""
        return [child["text"] for window in self.ask("windows") if window["class"] == "#32770"
                and window["title"] == TITLE for child in window["children"] if child["class"].lower() == "static"]

    # --- keyboard and mouse ------------------------------------------------------------------------------------------

    def focus(self):
        """Waits until the main window has the keyboard. Where the program and the display disagree, as now and then behind
        a window that was minimised, the window is activated as if it had not been active."""
        due = time.monotonic() + 1

        def active():
            nonlocal due
            windows, places = self.ask("windows", "places")
            title = places["frmterm"]["title"]
            inFront = any(window["active"] and window["class"] == "QxtermMain" for window in windows)
            if inFront and focusTitle() == title:
                return True
            # What is under way is left its time.
            if inFront and time.monotonic() < due:
                return False
            due = time.monotonic() + 1
            with contextlib.suppress(subprocess.CalledProcessError):
                xdotool("search", "--onlyvisible", "--name", f"^{re.escape(title)}$", "windowactivate")
            return False

        waitFor(active, lambda: f"the main window is the active one: {self.ask('windows')}, {focusTitle()!r} has the keyboard; "
                                f"see {saveScreen(TEST + '-focus')}")

    def settle(self):
        """Waits until the window that the program takes for the active one has the display's keyboard: between the end of
        one window and the beginning of the next, what is typed is lost. Not for long: another program's may be in
        front."""

        def settled():
            active = [window["title"] for window in self.ask("windows") if window["active"]]
            return active and active[0] == focusTitle()

        with contextlib.suppress(Failure):
            waitFor(settled, "the active window has the keyboard", 3)

    def key(self, *names):
        self.settle()
        xdotool("key", "--delay", "15", *names)

    def type(self, text):
        self.settle()
        xdotool("type", "--delay", "15", "--", text)

    def click(self, form, control):
        title = self.ask("places")[form]["title"]
        waitFor(lambda: focusTitle() == title, f"{title!r} has the keyboard")
        left, top, width, height = self.ask("places")[form]["controls"][control]
        self.clickAt(left + width // 2, top + height // 2)

    def clickAt(self, x, y):
        xdotool("mousemove", x, y, "click", "1")

    def wheel(self, x, y, up):
        """Turns the wheel by so many notches."""
        xdotool("mousemove", x, y, "click", "--repeat", up, "--delay", "20", "4")

    def clickButton(self, window, text):
        """A button of a message box. Where it was when the box was found says nothing: a box is there before it is laid out
        and put into its place, and has the keyboard afterwards."""
        waitFor(lambda: focusTitle() == window["title"], f"{window['title']!r} has the keyboard")
        texts = [child["text"] for child in window["children"]]
        now = [one for one in self.ask("windows") if [child["text"] for child in one["children"]] == texts]
        for child in now[0]["children"] if now else []:
            if child["class"] == "Button" and child["text"].replace("&", "") == text:
                left, top, width, height = child["place"]
                self.clickAt(left + width // 2, top + height // 2)
                return
        raise Failure(f"no button {text!r} in {window}")

    def connectionMenu(self, letter):
        """Chooses from the Connection menu by the entry's underlined letter."""
        self.focus()
        self.key("alt+c")
        self.waitMenu()
        self.key(letter)

    def waitMenu(self, seconds=PATIENCE):
        """Waits until a menu is open (class #32768)."""
        waitFor(lambda: any(window["class"] == "#32768" for window in self.ask("windows")), "a menu is open", seconds)

    # --- pictures ----------------------------------------------------------------------------------------------------

    def picture(self, name):
        """The main window, to be looked at; returns the path."""
        left, top, width, height = self.ask("places")["frmterm"]["place"]
        SHOTS.mkdir(parents=True, exist_ok=True)
        path = SHOTS / f"{TEST}-{name}.png"
        left, top = max(left - 4, 0), max(top - 24, 0)
        subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width + 8}x{height + 28}+{left}+{top}",
                        "+repage", str(path)], check=True)
        return path


def run(*tests):
    """Runs the tests of a file, those named on the command line or all, and ends the process. A test that cannot run for
    want of a privilege is named, and the others run all the same."""
    known = {one.__name__: one for one in tests}
    unknown = [name for name in sys.argv[1:] if name not in known]
    if unknown:
        print(f"{TEST} has no test {', '.join(unknown)}; it has {', '.join(known)}")
        sys.exit(2)
    failed = skipped = False
    for name in sys.argv[1:] or known:
        began = time.monotonic()
        try:
            known[name]()
        except Skip as reason:
            skipped = True
            print(f"skipped {name}: {reason}", flush=True)
        except Failure as failure:
            failed = True
            print(f"FAILED {name}: {failure}", flush=True)
        else:
            print(f"passed {name} ({time.monotonic() - began:.1f} s)", flush=True)
    sys.exit(1 if failed else SKIPPED if skipped else 0)
