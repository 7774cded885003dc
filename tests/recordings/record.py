#!/usr/bin/env python3
"""Records what real programs send to a QXTERM terminal, beside this script: for each session NAME.bin, the bytes, and
NAME.marks, where in them the program had shown all that it had to show: a byte's number and the key before it in each line.

Needs root (for namespaces of its own: another host name, no processes but its own, a folder /srv that holds nothing else)
and the programs: tools/setup/install.sh recording. Usage: record.py [NAME ...]     (default: all)
"""

import fcntl
import os
import pty
import random
import re
import select
import shlex
import shutil
import struct
import subprocess
import sys
import termios
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
STAGE = Path("/srv")
HOME = STAGE / "desk"
ROWS, COLUMNS = 24, 80
LOCALE = "en_US.ISO-8859-1"
SILENCE = 0.15  # seconds without output: the program waits for the next key
LONGEST = 4.0  # seconds for which a program may go on after a key

KEYS = {"Up": "\x1b[A", "Down": "\x1b[B", "Right": "\x1b[C", "Left": "\x1b[D", "Enter": "\r", "Escape": "\x1b", "Tab": "\t",
        "Space": " ", "Back": "\b"}

# name: (command, keys). Keys are names from KEYS, ^x for Ctrl+x, Alt-x, "type:some text" for a text key by key,
# pause:SECONDS; anything else is a text that comes at once. 6*KEY is pressed six times.
SESSIONS = {
    "vim": (
        "vim -u NONE -c 'set nocp nu hls incsearch showcmd ruler laststatus=2 bg=dark | syntax on' program.cpp",
        """6*^F 2*^B 20*j /const Enter 8*n O 'type:// a comment that is typed here' Escape yy p p u dd :split Enter ^W j 5*^D
        ':vsplit notes.txt' Enter 3*^F V 8*j d u gg G :only Enter :%s/the/THE/g Enter u :q! Enter :qa! Enter"""),
    "less": (
        "less notes.txt",
        "12*Space 4*b /terminal Enter 10*n 25*j 25*k G g -N Enter Space Space q"),
    "man": (
        "man ls",
        "6*Space 12*j 3*b /file Enter 6*n q"),
    "mc": (
        "mc -u",
        """8*Down Tab 6*Down 3*Up ^S type:notes Alt-3 pause:0.5 Space Space b Alt-0 pause:0.5 Alt-9 pause:0.5 Right Right Left 3*Down
        Escape Escape pause:1.2 Alt-1 pause:0.5 Down Down Enter pause:0.5 Alt-0 pause:0.5 ^O pause:0.5 ^O pause:0.5 Alt-4 pause:0.5
        30*Down 'type:a line' Enter ^Y Alt-0 pause:0.5 n Alt-7 type:folder Enter pause:0.5 Alt-0 pause:0.5 Enter"""),
    "htop": (
        "htop -d 3",
        """pause:1.5 Down Down t pause:1 P pause:1 M pause:1 ? pause:0.5 Space / type:ba Escape pause:1 S pause:0.4 3*Down Right
        Down Escape pause:1 q"""),
    "top": (
        "top -d 0.5",
        "pause:1.5 1 pause:1 z b x pause:1.5 < pause:1 V pause:1 c pause:1 h pause:0.5 q pause:1 q"),
    "nano": (
        "nano notes.txt",
        "'type:A line that is typed here.' Enter 30*Down 6*^V 3*^Y ^W host Enter ^K ^K ^U ^G ^V ^X ^X n"),
    "emacs": (
        "emacs -nw -Q program.cpp",
        """pause:1 6*^V 2*Alt-v 20*^N ^S type:const 5*^S Enter ^A ^K ^K ^Y ^X 2 ^X o ^X ^F type:notes.txt Enter 4*^V ^X 3 ^X b
        Enter ^H t pause:0.5 ^V ^V ^X ^C n yes Enter n"""),
    "joe": (
        "joe notes.txt",
        """'type:A line that is typed here.' Enter 30*Down 6*^V 3*^U ^K h ^V ^K h ^Y ^Y ^_ ^K f host Enter i Enter ^K o ^V ^K x ^C
        n"""),
    "dialog": (
        "sh dialogs.sh",
        """3*Down Up Tab Tab Enter Down Space Down Space Up Enter 'type:Mary Ann' Down type:Sales Tab Enter pause:4 Down Down Tab
        Enter Tab Enter 12*Down Tab Enter"""),
    "lynx": (
        "lynx -nopause help/getting-started.htm",
        """8*Down Right Space Space Down Down Left Down Right Space b Left / type:session Enter n o pause:0.5 R Enter ? pause:0.5
        Left q y"""),
    "mutt": (
        "mutt -n -F muttrc -f mailbox",
        """12*Down Enter Space i Down Enter Space q v q t t d d u 'l~f mary' Enter lall Enter o s ? Space q x"""),
    "shell": (
        "bash --noprofile --norc -i",
        """'ls -l --color=always' Enter 'ls --color=always /usr/bin | head -400 | column -c 80' Enter pause:0.5
        'grep -n --color=always const program.cpp' Enter 'cat notes.txt' Enter pause:0.5 'type:echo a line with a mistale'
        2*Back type:ke Enter Up Up Left Left ^R type:gre Enter 'for n in $(seq 400); do echo step $n of 400; done' Enter
        pause:0.5 exit Enter"""),
    "tmux": (
        "tmux -f /dev/null new 'bash --noprofile --norc'",
        """pause:0.5 'ls -l' Enter ^B '"' 'less notes.txt' Enter Space Space ^B % 'cat program.cpp' Enter pause:0.5 ^B o Space
        Space ^B c 'vi -u NONE notes.txt' Enter ^F ^F :q Enter ^B p ^B [ ^B ^B Up Up q ^B ? q ^B w Enter 'seq 500' Enter
        pause:0.5 ^B Space pause:0.5 ^B & y ^B & y"""),
    "screen": (
        "screen -c /dev/null bash --noprofile --norc",
        """pause:0.5 Enter 'ls -l' Enter ^A S ^A Tab ^A c 'less notes.txt' Enter Space Space b q 'seq 400' Enter pause:0.5 ^A ?
        Space Space ^A '"' Enter 'vi -u NONE program.cpp' Enter ^F ^F :q Enter ^A Q ^A [ ^B ^B Escape exit Enter exit Enter
        exit Enter"""),
    "examples": (
        "sh examples.sh",
        """f Enter v v Escape pause:1.3 Enter o Enter 40*Space Enter s Enter pause:0.5 c a d b e a j b Escape pause:1.3 Enter q Enter
        pause:0.5 4*h 4*j Space 8*a q n
        1 3 1 2 3 2 q 12*Down 3*Space 8*Right 4*Left b q 10*Space 10*x ^N 10*y Escape pause:1.3 Space Space q"""),
    "aptitude": (
        "aptitude",
        """pause:4 Down Down Enter pause:1 4*Down Enter 8*Down Enter pause:1 10*Down / type:terminal Enter pause:1.5 n n Enter
        pause:1 10*Down q ? Down Down q q y"""),
}

DIALOGS = """
dialog --title Queue --menu 'Where does the call go?' 16 60 8 1 Sales 2 Service 3 Orders 4 Returns 5 Night 6 Nobody
dialog --title Agents --checklist 'Who takes part?' 16 60 8 a Mary off b John on c Susan off d Peter on e Laura off
dialog --title Entry --form 'A new agent' 14 60 5 Name 1 1 '' 1 10 30 0 Group 2 1 '' 2 10 30 0 Phone 3 1 555-0100 3 10 20 0
for percent in 0 10 20 30 40 50 60 70 80 90 100; do echo $percent; sleep 0.2; done |
    dialog --title Work --gauge 'Copying the records of the day' 8 60
dialog --title Day --calendar 'When?' 3 40 1 6 2020
dialog --title Sure --yesno 'Shall all of that be kept?' 8 50
dialog --title Notes --textbox notes.txt 20 70
"""
EXAMPLES = """
for one in ncurses knight 'hanoi' 'view notes.txt' background inserts lrtest; do /usr/libexec/ncurses-examples/$one; done
"""
MUTT = """
set record="" folder=. sort=threads pager_index_lines=6
color index brightyellow default ~N
color header cyan default .
color status white blue
"""
# What there is to see among the processes.
WORKERS = ("router", "mailer", "queue", "recorder", "statistics", "clock")
NAMES = ("Mary Miller", "John Baker", "Susan Reed", "Peter Hall", "Laura Stone")


def inside():
    return os.environ.get("QXTERM_STAGE") == str(STAGE)


def enter():
    """Starts this script again in namespaces of its own."""
    unshared = ["unshare", "--mount", "--uts", "--pid", "--fork", "--mount-proc", "--kill-child"]
    # By a name without a path: the sessions list processes.
    script = (f"cd '{HERE}' && hostname desk && mount -t tmpfs none {STAGE} && "
              f"exec /usr/bin/python3 {Path(__file__).name} \"$@\"")
    os.environ["QXTERM_STAGE"] = str(STAGE)
    os.execvp(unshared[0], [*unshared, "bash", "-c", script, "bash", *sys.argv[1:]])


def setStage():
    """What the sessions work with: texts of this project, and a mailbox."""
    HOME.mkdir()
    description = ROOT / "packaging" / "terminfo" / "qxterm.ti"
    subprocess.run(["tic", "-x", "-o", STAGE / "terminfo", description], check=True, stderr=subprocess.DEVNULL)
    (STAGE / "locale").mkdir()
    subprocess.run(["localedef", "-i", "en_US", "-f", "ISO-8859-1", STAGE / "locale" / LOCALE], check=True)
    pages = sorted((ROOT / "docs").glob("*.md"))
    for page in pages:
        shutil.copy(page, HOME)
    (HOME / "notes.txt").write_text("".join(page.read_text() for page in pages[:4]))
    shutil.copy(max((ROOT / "src" / "terminal").rglob("*.cpp"), key=lambda file: file.stat().st_size), HOME / "program.cpp")
    shutil.copytree(ROOT / "resources" / "help", HOME / "help")
    (HOME / "dialogs.sh").write_text(DIALOGS)
    (HOME / "examples.sh").write_text(EXAMPLES)
    (HOME / "muttrc").write_text(MUTT)
    (HOME / "mailbox").write_text("".join(mails()))
    for file in HOME.rglob("*"):
        os.utime(file, (1577880000, 1577880000))


def startWorkers():
    """Programs that are almost idle; they end with this one."""
    for number, name in enumerate(WORKERS):
        work = f"while sleep 0.{number + 2}; do i=0; while [ $((i += 1)) -lt 3000 ]; do :; done; done"
        subprocess.Popen(["bash", "-c", f"exec -a {name} bash -c '{work}'"], cwd="/", stdin=subprocess.DEVNULL)


def mails():
    source = random.Random(1)
    for number in range(40):
        sender = source.choice(NAMES)
        address = sender.lower().replace(" ", ".") + "@host.example"
        subject = f"{'Re: ' if number % 3 else ''}Figures of week {number // 3 + 1}"
        text = "\n".join("".join(source.choices("abcdefghijklmnopqrstuvwxyz     ", k=source.randint(20, 70)))
                         for _ in range(source.randint(5, 40)))
        yield (f"From {address} Wed Jan  1 {number // 60:02}:{number % 60:02}:00 2020\nFrom: {sender} <{address}>\n"
               f"To: desk@host.example\nSubject: {subject}\nDate: Wed, 1 Jan 2020 12:{number:02}:00 +0000\n"
               f"Message-ID: <{number}@host.example>\n\n{text}\n\n")


def environment():
    return {"HOME": str(HOME), "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin", "TERM": "qxterm",
            "TERMINFO": str(STAGE / "terminfo"), "LOCPATH": str(STAGE / "locale"), "LC_ALL": LOCALE,
            "USER": "desk", "LOGNAME": "desk", "SHELL": "/bin/bash", "PS1": r"desk:\W\$ ", "TMPDIR": str(STAGE), "TMUX_TMPDIR": str(STAGE),
            "SCREENDIR": str(screenFolder()), "EDITOR": "mcedit",
            "HISTFILE": "", "TZ": "UTC"}


def screenFolder():
    folder = STAGE / "screens"
    folder.mkdir(mode=0o700, exist_ok=True)
    return folder


def presses(text):
    """(the key as it is written, what it sends, seconds to listen or 0) for each key of a session."""
    for word in shlex.split(text):
        count, key = re.fullmatch(r"(?:(\d+)\*)?(.+)", word, re.DOTALL).groups()
        kind, _, rest = key.partition(":")
        for _ in range(int(count or 1)):
            if kind == "type":
                yield from ((letter, letter, 0) for letter in rest)
            elif kind == "pause":
                yield key, "", float(rest)
            elif key.startswith("Alt-"):
                yield key, "\x1b" + key[4:], 0
            elif re.fullmatch(r"\^[A-Z_]", key):
                yield key, chr(ord(key[1]) & 0x1F), 0
            else:
                yield key, KEYS.get(key, key), 0


class Recorder:
    def __init__(self, command):
        self.output = bytearray()
        self.marks = []  # (bytes before, key)
        self.ended = False
        self._process, self._terminal = pty.fork()
        if self._process == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", ROWS, COLUMNS, 0, 0))
            os.chdir(HOME)
            words = shlex.split(command)
            os.execvpe(words[0], words, environment())

    def listen(self, key, silence, longest):
        """Takes what comes, until nothing has come for so many seconds; then, if there was anything, there is a mark."""
        end, last = time.monotonic() + longest, time.monotonic()
        while not self.ended and (left := end - time.monotonic()) > 0:
            if not select.select([self._terminal], [], [], min(silence, left))[0]:
                break
            try:
                self.output += os.read(self._terminal, 65536)
                last = time.monotonic()
            except OSError:
                self.ended = True
        quiet = self.ended or time.monotonic() - last >= SILENCE
        if quiet and len(self.output) > (self.marks[-1][0] if self.marks else 0):
            self.marks.append((len(self.output), key))

    def play(self, presses):
        self.listen("start", 1.0, LONGEST)
        for key, sent, pause in presses:
            if self.ended:
                return
            os.write(self._terminal, sent.encode("latin-1"))
            self.listen(key, pause or SILENCE, pause or LONGEST)
        self.listen("end", 1.0, LONGEST)

    def close(self):
        os.close(self._terminal)
        os.kill(self._process, 9)
        os.waitpid(self._process, 0)


def record(name):
    command, keys = SESSIONS[name]
    recorder = Recorder(command)
    recorder.play(presses(keys))
    left = "" if recorder.ended else " (the program was still running)"
    recorder.close()
    (HERE / f"{name}.bin").write_bytes(recorder.output)
    (HERE / f"{name}.marks").write_text("".join(f"{place} {key}\n" for place, key in recorder.marks))
    print(f"{name}: {len(recorder.output)} bytes, {len(recorder.marks)} marks{left}", flush=True)


def main():
    wanted = sys.argv[1:] or list(SESSIONS)
    unknown = [name for name in wanted if name not in SESSIONS]
    if unknown:
        sys.exit(f"record.py: no session {', '.join(unknown)}; there are {', '.join(SESSIONS)}")
    if not inside():
        enter()
    setStage()
    startWorkers()
    for name in wanted:
        record(name)


if __name__ == "__main__":
    main()
