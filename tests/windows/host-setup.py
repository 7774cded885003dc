"""Logins at the system's telnet daemon, with and without packaging/profile.d/qxterm.sh.

The host is one of UTF-8, as they are today. Without the file each symptom that docs/hosts.md names is there; with it none.
"""

import shutil
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from account import testUser  # noqa: E402
from cells import SHIFT_OUT  # noqa: E402
from peers import TelnetDaemon  # noqa: E402
from program import ROOT, Failure, Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402

SETUP = ROOT / "packaging" / "profile.d" / "qxterm.sh"
BOLD, NORMAL, FOLDER = 2, 7 * 256, 2 + 3 * 256
# What a login shell of this host does: first the host's part, then the user's.
PROFILE = """
export LOCPATH=$HOME/locale LANG=en_US.UTF-8
unset LC_ALL
if [ -e "$HOME/with" ]; then . "$HOME/qxterm.sh"; fi
export PS1='ready> ' HISTFILE=
"""


def furnish(home):
    (home / ".bash_profile").write_text(PROFILE)
    shutil.copy(SETUP, home)
    (home / "locale").mkdir()
    for characters in ("UTF-8", "ISO-8859-1"):
        subprocess.run(["localedef", "-i", "en_US", "-f", characters, home / "locale" / f"en_US.{characters}"], check=True)
    things = home / "things"
    (things / "folder").mkdir(parents=True)
    (things / "caf\udce9").touch()


class Login:
    """A program that is logged in, in a with statement."""

    def __init__(self, name, word):
        self._name, self._word = name, word

    def __enter__(self):
        self._program = Program("host")
        program = self._program.__enter__()
        try:
            program.waitText("login:")
            program.waitForm("frmConn", loaded=False)
            program.focus()
            for prompt, answer in (("login:", self._name), ("Password:", self._word)):
                program.waitText(prompt)
                program.type(answer)
                program.key("Return")
            program.waitText("ready>")
        except BaseException:
            self._program.__exit__()
            raise
        return program

    def __exit__(self, *what):
        self._program.__exit__(*what)


def command(program, text):
    """Types a command behind a fresh prompt in the first row; its output begins in the second."""
    # An empty line first: a screen that is clear already must be seen to change.
    program.type("echo; clear")
    program.key("Return")
    waitFor(lambda: program.rows()[:2] == ["ready>", ""], lambda: f"a clear screen:\n{program.page()}")
    program.type(text)
    program.key("Return")


def answers(program, text, *lines):
    command(program, text)
    program.waitRows({1 + at: line for at, line in enumerate((*lines, "ready>"))}, text)


def startMc(program):
    command(program, "mc -u things")
    program.waitText("1Help", row=23)
    program.waitText("UP--DIR")


def leaveMc(program):
    # F10 is the menu's key here; Escape and 0 stand for it.
    program.key("Escape", "0")
    # mc asks with a box that may be unreadable.
    program.type("\n")
    program.waitText("ready>")


def frame(program):
    """The characters of the left panel's left border, those of the line drawing as what they are drawn for."""
    screen = program.ask("screen")
    return "".join(screen["rows"][row][0] if screen["attrs"][row][0] & SHIFT_OUT else "?" for row in range(1, 21))


def without(name, word):
    """What a host does that nobody has told of the terminal."""
    with Login(name, word) as program:
        answers(program, "stty size; stty -a | grep -o ' erase = [^;]*'", "0 0", " erase = ^?")
        answers(program, "locale charmap", "UTF-8")
        answers(program, "ls -1 --color=auto things | cat -v; ls -d --color=auto things/folder",
                "cafM-i", "folder", "things/folder")
        checkEqual(program.ask("screen")["attrs"][3][:13], [NORMAL] * 13, "ls has no colours")
        # Backspace is taken for a character.
        command(program, "cat")
        program.type("abX")
        program.key("BackSpace")
        program.type("c")
        program.waitText("abX^Hc", row=1)
        program.key("ctrl+c")
        startMc(program)
        check("\xe2" in "".join(program.rows()), f"mc's boxes are UTF-8:\n{program.page()}")
        checkEqual(frame(program), "?" * 20, "mc's left border is no line")
        program.picture("without-mc")


def with_(name, word, home):
    (home / "with").touch()
    with Login(name, word) as program:
        answers(program, "stty size; stty -a | grep -o ' erase = [^;]*'", "24 80", " erase = ^H")
        answers(program, "locale charmap; echo $LANG", "ISO-8859-1", "en_US.ISO-8859-1")
        answers(program, "ls -1 --color=auto things", "caf\xe9", "folder")
        checkEqual(program.ask("screen")["attrs"][2][:7], [FOLDER] * 6 + [NORMAL], "the colour of a folder")
        command(program, "cat")
        program.type("abX")
        program.key("BackSpace")
        program.type("c")
        program.key("Return")
        program.waitRows({1: "abc", 2: "abc"}, "cat, after Backspace")
        program.key("ctrl+d")
        program.waitText("ready>", row=3)
        # Delete takes the character under the cursor.
        command(program, "")
        program.type("echo abXc")
        program.key("Left", "Left", "Delete", "Return")
        program.waitText("abc", row=2)
        startMc(program)
        program.waitText("caf\xe9")
        waitFor(lambda: frame(program) == "l" + "x" * 16 + "txm", lambda: f"mc's left border is a line:\n{program.page()}")
        checkEqual(program.rows()[23][:14], " 1Help   2Menu", "mc's keys")
        program.picture("with-mc")
        program.key("Down", "Down")
        leaveMc(program)
        # Nothing happens in shells that nobody types into, and for other terminals.
        program.type("LANG=en_US.UTF-8")
        program.key("Return")
        answers(program, "sh -c '. ./qxterm.sh; echo $TERM $LANG'", "qxterm en_US.UTF-8")
        answers(program, "TERM=vt100 bash -ic '. ./qxterm.sh; echo $TERM $LANG'", "vt100 en_US.UTF-8")


def setup():
    missing = [one for one in ("mc", "localedef", "tic", "dircolors") if shutil.which(one) is None]
    if missing:
        raise Failure(f"{', '.join(missing)} cannot be found: tools/setup/install.sh peers")
    with testUser(furnish) as (name, word, home), TelnetDaemon() as daemon:
        writeProfiles({"host": netProfile(daemon.port)})
        without(name, word)
        with_(name, word, home)


run(setup)
