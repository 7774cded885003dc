#!/usr/bin/env python3
"""Plays recorded sessions to the program and to an interpreter of the terminal description, and compares what they show.

Usage: play.py --program QXTERM-SCENARIO [--seed N] [NAME ...]     (default: all)
       play.py --write [NAME ...]      puts what the interpreter shows into NAME.screens, to be read

At every mark of a recording the window must show, cell by cell, what the description promises, however the bytes before were
cut into blocks; and that must be what NAME.screens holds.
"""

import argparse
import difflib
import json
import random
import shlex
import subprocess
import sys
from pathlib import Path

from described import COLUMNS, ROWS, Description, Screen, Unexplained
from screen_text import lookText, screensText

HERE = Path(__file__).resolve().parent
DESCRIPTION = HERE.parents[1] / "packaging" / "terminfo" / "qxterm.ti"
# What a recording may hold besides capabilities (described.RAW says why). Others may hold nothing else.
BEYOND = {
    "aptitude": ("modes",), "dialog": ("modes",), "examples": ("modes",), "htop": ("modes",), "joe": ("modes",),
    "man": ("sgr",), "mc": ("sgr", "modes"), "nano": ("modes", "charset"), "screen": ("charset", "modes"), "shell": ("sgr", "modes"), "tmux": ("modes", "questions"),
    "top": ("below",), "vim": ("sgr", "keys", "keysAsked")}
# The picture's styles (docs/scenario-tool.md).
TERMINAL_FONT, BOLD, UNDERLINED = 1, 2, 4
LINES = dict(zip("┘┐┌└┼⎺⎻─⎼⎽├┤┴┬│", "jklmnopqrstuvwx"))


class Wrong(Exception):
    """What differs, to be read."""


class Recording:
    def __init__(self, name):
        self.name = name
        self.bytes = (HERE / f"{name}.bin").read_bytes()
        self.marks = []  # (bytes before, key)
        for line in (HERE / f"{name}.marks").read_text().splitlines():
            place, key = line.split(" ", 1)
            self.marks.append((int(place), key))

    def screens(self, description):
        """(the interpreter's screen, bytes before, key) at each mark, one screen that goes on."""
        output = self.bytes.decode("latin-1")
        screen, start = Screen(description, BEYOND.get(self.name, ())), 0
        for place, key in self.marks:
            screen.play(output, start, place)
            start = place
            yield screen, place, key

    def scenario(self, seed):
        """Blocks of any size, and a look at the window and the cursor at each mark."""
        source, lines, start = random.Random(f"{self.name} {seed}"), [], 0
        for place, _ in self.marks:
            while start < place:
                size = source.randint(1, source.choice((1, 8, 200, 4096)))
                block = self.bytes[start:min(start + size, place)]
                lines.append(f"host {block.hex()}")
                start += len(block)
            lines += ["dump window", "dump page"]
        return "\n".join(lines) + "\n"


def promised(screen):
    """The cells as the picture must hold them: (character, style, text colour, background); a blank has no text colour."""
    for cells in screen.rows:
        for cell in cells:
            character, text, back, bold, underlined = cell.seen()
            style = BOLD * bold | UNDERLINED * underlined
            if character in LINES:
                yield LINES[character], style | TERMINAL_FONT, text, back
            else:
                yield character, style, text, back


def found(window):
    """The cells of a dump in the same form."""
    for row in range(ROWS + 1):
        for column in range(COLUMNS):
            character, style = window["text"][row][column], window["style"][row][column]
            text, back = window["fg"][row][column], window["bg"][row][column]
            if character == " ":
                yield " ", style & UNDERLINED, text if style & UNDERLINED else None, back
            elif style & TERMINAL_FONT and character not in LINES.values():
                # The font differs in the letters of the lines only.
                yield character, style & ~TERMINAL_FONT, text, back
            else:
                yield character, style, text, back


def compare(screen, window, cursor):
    """Lines about what differs."""
    told = []
    expected, shown = list(promised(screen)), list(found(window))
    for row in range(ROWS + 1):
        part = slice(row * COLUMNS, (row + 1) * COLUMNS)
        if expected[part] == shown[part]:
            continue
        column = next(at for at in range(COLUMNS) if expected[part][at] != shown[part][at])
        told.append(f"row {row}, column {column}")
        for what, cells in (("description", expected[part]), ("window", shown[part])):
            character, style, text, back = cells[column]
            font = " (line drawing)" if style & TERMINAL_FONT else ""
            told += [f"  {what:11} {''.join(cell[0] for cell in cells).rstrip()!r}",
                     f"{'':14}there {character!r}{font} {lookText(text, back, bool(style & BOLD), bool(style & UNDERLINED))}"]
    if not screen.anywhere:
        place = [COLUMNS if screen.wrapWaits else screen.column, screen.row]
        if cursor != place:
            told.append(f"cursor [column, row]: description {place}, program {cursor}")
        seen = [min(place[0], COLUMNS - 1), place[1]] if screen.cursorSeen else None
        if window["cursor"] != seen:
            told.append(f"cursor seen: description {seen}, window {window['cursor']}")
    return told


def dumps(program, scenario):
    """What the program printed for `dump`, in pairs of window and page."""
    done = subprocess.run(program, input=scenario.encode(), capture_output=True)
    if done.returncode != 0:
        raise Wrong(f"{shlex.join(program)} ended with {done.returncode}: {done.stderr.decode(errors='replace')[-2000:]}")
    printed = [json.loads(line) for line in done.stdout.splitlines()]
    strange = [one for one in printed if "dump" not in one and one.get("event") != "beep"]
    if strange:
        raise Wrong(f"the program did more than to show its screen: {strange[:3]}")
    windows = [one for one in printed if one.get("dump") == "window"]
    return list(zip(windows, [one for one in printed if one.get("dump") == "page"], strict=True))


def written(recording, description):
    return screensText(recording.screens(description))


def checkScreens(recording, description):
    stored = (HERE / f"{recording.name}.screens").read_text()
    now = written(recording, description)
    if now != stored:
        change = difflib.unified_diff(stored.splitlines(), now.splitlines(), f"{recording.name}.screens", "interpreter",
                                      lineterm="")
        raise Wrong("\n".join(["what the description promises is no longer what is stored:", *list(change)[:60]]))


def checkProgram(recording, description, program, seed):
    looks = dumps(program, recording.scenario(seed))
    if len(looks) != len(recording.marks):
        raise Wrong(f"{len(looks)} screens for {len(recording.marks)} marks")
    for number, ((screen, place, key), (window, page)) in enumerate(zip(recording.screens(description), looks), 1):
        told = compare(screen, window, page["cursor"])
        if told:
            raise Wrong("\n".join([f'mark {number}, byte {place}, behind "{key}" (seed {seed}):', *told]))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", help="qxterm-scenario, or a command that runs it")
    parser.add_argument("--seed", type=int, default=1, help="of the cuts between the blocks")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("names", nargs="*", metavar="NAME")
    arguments = parser.parse_args()
    if not arguments.program and not arguments.write:
        parser.error("--program or --write is needed")
    description, failed = Description(DESCRIPTION), False
    for name in arguments.names or sorted(path.stem for path in HERE.glob("*.bin")):
        recording = Recording(name)
        try:
            if arguments.write:
                (HERE / f"{name}.screens").write_text(written(recording, description))
            else:
                checkScreens(recording, description)
            if arguments.program:
                checkProgram(recording, description, shlex.split(arguments.program), arguments.seed)
        except (Wrong, Unexplained) as why:
            failed = True
            print(f"FAILED {name}: {why}", flush=True)
        else:
            print(f"passed {name}: {len(recording.marks)} screens", flush=True)
    sys.exit(1 if failed else 0)


main()
