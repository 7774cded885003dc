"""What hosts send: the same bytes at each run. Each routine makes about so many bytes as it is asked for."""

import itertools
import random

from program import ROOT, Failure

RECORDINGS = ROOT / "tests" / "recordings"
COLUMNS, ROWS = 80, 24
LETTERS = "abcdefghijklmnopqrstuvwxyz"
STATES = ("ready", "talking", "wrap-up", "paused", "ringing", "offline")
TABLE = range(5, 19)
STEPS = 60  # changes of a screen before the next one

# Before a payload and after it. Behind it nothing blinks, so that the picture stands still.
HEAD = b"\x1bc\x1b[?7h"
TAIL = b"\x1bc\x1b[?25l\x1b[2J\x1b[Hthe end of it"


def joined(pieces, size):
    """So many pieces of text as make up the size."""
    taken, length = [], 0
    for piece in pieces:
        if length >= size:
            break
        taken.append(piece)
        length += len(piece)
    return "".join(taken).encode()


def words(source, length):
    text = "".join(source.choices(LETTERS, k=length))
    at = source.randint(2, 9)
    while at < length:
        text = text[:at] + " " + text[at + 1:]
        at += source.randint(3, 10)
    return text


def plain(size):
    source = random.Random(1)
    return joined((words(source, source.randint(20, COLUMNS - 1)) + "\r\n" for _ in itertools.count()), size)


def yes(size):
    return joined(itertools.repeat("y\r\n"), size)


def colours(size):
    """Whole screens; each cell has both colours set for it."""

    def screen(number):
        indexes = (cell // COLUMNS + cell + number for cell in range(COLUMNS * ROWS))
        letter = chr(ord("A") + number % 26)
        return "\x1b[H" + "".join(f"\x1b[3{index % 8};4{7 - index % 8}m{letter}" for index in indexes)

    return joined(map(screen, itertools.count()), size)


class Application:
    """A full-screen application: frames, a table with coloured states, a clock, a selection, inserted rows, typing."""

    def __init__(self):
        self._random = random.Random(6)

    def screens(self):
        yield "\x1b)0"
        while True:
            yield self._whole()
            for _ in range(STEPS):
                yield self._step()

    def _whole(self):
        parts = ["\x1b[0m\x1b[H\x1b[2J", self._frame(), "\x1b[7m", goTo(2, 3), " AGENT OVERVIEW", " " * 61, "\x1b[0m",
                 goTo(4, 3), "\x1b[1;33mAgent     Name                State      Calls   Since      Queue\x1b[0m"]
        parts += [self._row(row) for row in TABLE]
        parts += [goTo(24, 1), "\x1b[7mF1\x1b[0m Help  \x1b[7mF2\x1b[0m Search  \x1b[7mF3\x1b[0m Back  \x1b[7mF8\x1b[0m "
                  "Leave\x1b[K"]
        return "".join(parts)

    def _frame(self):
        parts = [goTo(1, 1), lines("l" + "q" * 78 + "k")]
        for row in range(2, 23):
            parts += [goTo(row, 1), lines("x"), goTo(row, 80), lines("x")]
        parts += [goTo(3, 1), lines("t" + "q" * 78 + "u"), goTo(23, 1), lines("m" + "q" * 78 + "j")]
        return "".join(parts)

    def _row(self, row):
        between, state = self._random.randint, self._random.randrange(len(STATES))
        name = "".join(self._random.choices(LETTERS, k=between(5, 15)))
        return "".join([goTo(row, 3), f"{1000 + row:5}     {name}", goTo(row, 33), f"\x1b[3{1 + state}m",
                        f"{STATES[state]:9}\x1b[0m {between(0, 499):6}   {between(0, 23):2}:{between(10, 59)}",
                        goTo(row, 62), f"queue {between(0, 39):2}"])

    def _step(self):
        kinds = (self._clock, self._clock, self._select, self._insert, self._type, self._change, self._change, self._change)
        return self._random.choice(kinds)()

    def _change(self):
        return self._row(self._random.choice(TABLE))

    def _clock(self):
        between = self._random.randint
        return f"\x1b7{goTo(2, 70)}\x1b[7m{between(10, 23)}:{between(10, 59)}:{between(10, 59)}\x1b[0m\x1b8"

    def _select(self):
        row = self._random.choice(TABLE[:-1])
        return goTo(row, 2) + " " + goTo(row + 1, 2) + "\x1b[7m>\x1b[0m\b"

    def _insert(self):
        """A new row at the top of the table pushes the others down, inside a scrolling region of its own."""
        top = TABLE[0]
        return "".join([f"\x1b[{top};{TABLE[-1]}r", goTo(top, 1), "\x1bM\x1b[r", goTo(top, 1), lines("x"), goTo(top, 80),
                        lines("x"), self._row(top)])

    def _type(self):
        typed = "".join(self._random.choices(LETTERS, k=self._random.randint(3, 20)))
        return goTo(21, 3) + "Search: \x1b[4m" + typed + "\x1b[0m\x1b[10C\x1b[5D"


def goTo(row, column):
    return f"\x1b[{row};{column}H"


def lines(text):
    """Line-drawing characters."""
    return f"\x0e{text}\x0f"


def application(size):
    return joined(Application().screens(), size)


def recorded(size):
    """The sessions of tests/recordings one after the other, from the beginning again as long as there is room. Each begins
    from a terminal that was reset."""
    files = sorted(RECORDINGS.glob("*.bin"))
    if not files:
        raise Failure(f"{RECORDINGS} holds no recordings")
    # A session may leave colours, modes and a scrolling region behind.
    sessions = itertools.cycle([HEAD + file.read_bytes() for file in files])
    out = bytearray()
    while len(out) < size:
        out += next(sessions)
    return bytes(out)


PAYLOADS = {"plain": plain, "y": yes, "colours": colours, "application": application, "recorded": recorded}
