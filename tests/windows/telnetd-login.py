"""A login at the system's telnet daemon: shell, ls, vi and less, every picture compared cell by cell."""

import shutil
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import cells  # noqa: E402
from account import testUser  # noqa: E402
from peers import TelnetDaemon  # noqa: E402
from program import Failure, Program, check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402
from relay import Relay  # noqa: E402

LINES = [f"line {n:02} *" + "abcdefghij" * (n % 6) for n in range(1, 61)]
COLOURS = "di=01;34:ln=01;36:ex=01;32:fi=00"
NORMAL, BOLD = 7 * 256, 2
DIRECTORY, LINK, PROGRAM = BOLD + 4 * 256, BOLD + 6 * 256, BOLD + 2 * 256


def furnish(home):
    with open(home / ".bash_profile", "a") as file:
        file.write(f"export LS_COLORS='{COLOURS}' PAGER=less\n")
    (home / ".vimrc").write_text("set nocompatible noswapfile viminfo= ruler noshowcmd\n")
    (home / "lines").write_text("\n".join(LINES) + "\n")
    things = home / "things"
    (things / "folder").mkdir(parents=True)
    (things / "plain").touch()
    (things / "program").write_text("#!/bin/sh\n")
    (things / "program").chmod(0o755)
    (things / "way").symlink_to("plain")


class Session:
    """Checks after each step: the records against the model, the picture against the records."""

    def __init__(self, program, relay, sheet):
        self.program, self.relay, self.sheet = program, relay, sheet

    def settled(self, name):
        self.relay.waitForAgreement(self.program, name)
        cells.compare(self.program, self.sheet, name)

    def command(self, text):
        self.program.type(text)
        self.program.key("Return")

    def fresh(self):
        """A cleared screen with the prompt in the first row."""
        self.command("clear")
        waitFor(lambda: self.program.rows()[:2] == ["ready>", ""], lambda: f"a clear screen:\n{self.program.page()}")


def fileRows(lines, count=23):
    return dict(enumerate(lines[:count]))


def shell(session):
    program = session.program
    session.fresh()
    session.command('echo "[$TERM]" $(tput cols) $(tput lines)')
    program.waitRows({1: "[qxterm] 80 24", 2: "ready>"}, "the shell's terminal")
    session.settled("shell")
    session.fresh()
    session.command("ls -1 --color=always things")
    program.waitRows({1: "folder", 2: "plain", 3: "program", 4: "way", 5: "ready>"}, "ls")
    words = program.ask("screen")["attrs"]
    checkEqual([words[1][:7], words[2][:6], words[3][:8], words[4][:4]],
               [[DIRECTORY] * 6 + [NORMAL], [NORMAL] * 6, [PROGRAM] * 7 + [NORMAL], [LINK] * 3 + [NORMAL]],
               "the colours of ls")
    session.settled("ls")


def scrolling(session):
    session.command("seq 1 200")
    session.program.waitRows({**{row: str(178 + row) for row in range(23)}, 23: "ready>"}, "seq 1 200")
    session.settled("scrolled")


def editor(session):
    program, lines = session.program, list(LINES)
    session.command("vim.tiny lines")
    program.waitRows(fileRows(lines), "vi")
    session.settled("vi")

    def edited(keys, name, first=0, typed=""):
        for part in keys:
            if len(part) == 1:
                program.type(part)
            else:
                program.key(part)
        if typed:
            program.type(typed)
            program.key("Escape")
        program.waitRows(fileRows(lines[first:]), f"vi after {name}")
        session.settled(f"vi-{name}")

    lines[0] = "new " + lines[0]
    edited(["i"], "insert", typed="new ")
    del lines[2:5]
    edited(["3", "G", "3", "d", "d"], "delete-lines")
    lines[3:3] = ["opened below"]
    edited(["o"], "open-below", typed="opened below")
    lines[3:3] = ["opened above"]
    edited(["O"], "open-above", typed="opened above")
    lines[0] = lines[0][3:]
    edited(["1", "G", "3", "x"], "delete-characters")
    edited(["ctrl+e", "ctrl+e"], "scroll-up", first=2)
    edited(["ctrl+y"], "scroll-down", first=1)
    program.type("/line 50")
    program.key("Return")
    waitFor(lambda: lines.index(LINES[49]) == shownAt(program, lines),
            lambda: f"vi finds line 50 and puts the cursor there:\n{program.page()}")
    session.settled("vi-search")
    program.key("1", "G")
    program.waitRows(fileRows(lines), "vi at the top again")
    program.type(":wq")
    program.key("Return")
    program.waitText("ready>", row=23)
    session.settled("vi-left")


def shownAt(program, lines):
    """Number of the file's line that the cursor stands on."""
    screen = program.ask("screen")
    text = screen["rows"][screen["cursor"][1]].rstrip()
    return lines.index(text) if text in lines else None


def pager(session):
    program = session.program
    session.command("vim.tiny -c q lines; seq -f 'row %g of the pager' 1 100 | less")
    rows = [f"row {n} of the pager" for n in range(1, 101)]
    program.waitRows({**fileRows(rows), 23: ":"}, "less")
    session.settled("less")
    program.key("space")
    program.waitRows({**fileRows(rows[23:]), 23: ":"}, "less, the second page")
    session.settled("less-page")
    program.key("b")
    program.waitRows({**fileRows(rows), 23: ":"}, "less, back")
    session.settled("less-back")
    program.type("/row 60")
    program.key("Return")
    program.waitRows(fileRows(rows[59:]), "less finds row 60")
    session.settled("less-search")
    program.key("q")
    program.waitText("ready>", row=23)


def loginAndWork():
    missing = [one for one in ("vim.tiny", "less", "tic") if shutil.which(one) is None]
    if missing:
        raise Failure(f"{', '.join(missing)} cannot be found: tools/setup/install.sh peers")
    with testUser(furnish) as (name, word, _), TelnetDaemon() as daemon, cells.sheetPeer() as sheets, \
            Relay(daemon.port) as relay:
        writeProfiles({"sheet": netProfile(sheets.port), "host": netProfile(relay.port)})
        with Program("sheet") as program:
            sheet = cells.takeSheet(program)
        with Program("host") as program:
            program.waitText("login:")
            program.waitForm("frmConn", loaded=False)
            program.focus()
            session = Session(program, relay, sheet)
            session.settled("login")
            session.command(name)
            program.waitText("Password:")
            session.command(word)
            program.waitText("ready>")
            check(word not in program.page(), "the password is shown")
            cells.cursorIsSeen(program, sheet)
            for work in (shell, scrolling, editor, pager):
                work(session)
            session.command("exit")
            box = program.messageBox("The connection has been dropped")
            program.clickButton(box, "OK")
            program.waitState("g_bConnectActive", False)


run(loginAndWork)
