"""Random output of a full-screen program, block by block."""

import random

PRINTABLE = bytes(range(32, 127))
ACCENTED = bytes(range(0xA1, 0xFF))
STEP = 10  # cells of the status row that count the blocks
FLAGS = ("0", "0", "0", "1", "4", "5", "7", "8", "22", "24", "25", "27", "28", "39", "49")


class Blocks:
    """Blocks that a seed alone decides.

    What the manual for hosts tells them to avoid stays out: there the window may lag behind the records until the next
    repaint.
    """

    def __init__(self, seed, without=()):
        """without: codes of characters that are left out."""
        self._random = random.Random(seed)
        self._accented = bytes(code for code in ACCENTED if code not in without)
        self._suspended = False

    def block(self, number):
        """The next block. It counts in the status row, and leaves the place and the attributes as they are."""
        pieces = [self._piece() for _ in range(self._random.randint(1, 6))]
        if self._random.random() < 0.03:
            pieces.append(self._lines(self._random.randint(10, 60)))
        return b"".join(pieces) + self._count(number)

    def scroll(self, number):
        """A block that moves most of a page by few lines, up or down."""
        self._suspended = False
        top, bottom = self._random.randint(1, 4), self._random.randint(18, 24)
        region = b"\x1b[?10l\x1b[m\x0f\x1b[%d;%dr" % (top, bottom)
        count = self._random.randint(1, 4)
        lines = [bytes(self._random.choices(PRINTABLE, k=self._random.randint(30, 78))) for _ in range(count)]
        if self._random.random() < 0.5:
            moved = b"\x1b[%d;1H" % bottom + b"".join(b"\r\n" + line for line in lines)
        else:
            moved = b"\x1b[%d;1H" % top + b"".join(b"\x1bM\r" + line for line in lines)
        return region + moved + self._count(number)

    def _count(self, number):
        return b"\x1b7\x1b[m\x0f\x1b[1;1x" + b"%-*d" % (STEP, number) + b"\x1b8"

    def _number(self, first, last):
        return b"%d" % self._random.randint(first, last)

    def _go(self):
        return b"\x1b[" + self._number(1, 24) + b";" + self._number(1, 40) + b"H"

    def _text(self, longest=20):
        length = self._random.randint(1, longest)
        kind = self._random.random()
        if kind < 0.1:
            return bytes(self._random.choices(b"jklmnopqrstuvwx ", k=length))
        if kind < 0.15:
            return bytes(self._random.choices(self._accented, k=length))
        if kind < 0.25:
            return b" " * length
        return bytes(self._random.choices(PRINTABLE, k=length))

    def _lines(self, count):
        return b"".join(b"\r\n" + self._text(78) for _ in range(count))

    def _look(self):
        choice = self._random.random()
        if choice < 0.45:
            return b"\x1b[" + self._number(30, 37) + b";" + self._number(40, 47) + b"m"
        if choice < 0.9:
            return b"\x1b[" + self._random.choice(FLAGS).encode() + b"m"
        return self._random.choice((b"\x0e", b"\x0f"))

    def _mode(self):
        name, chance = self._random.choice((("5", 0.4), ("11", 0.5), ("12", 0.5), ("25", 0.8), ("7", 0.8)))
        return b"\x1b[?" + name.encode() + (b"h" if self._random.random() < chance else b"l")

    def _piece(self):
        if self._suspended:
            if self._random.random() < 0.4:
                self._suspended = False
                return b"\x1b[?10l"
            return self._random.choice((self._go() + self._text(), self._look(), self._lines(3)))
        return self._random.choice(self._KINDS)(self)

    def _suspend(self):
        self._suspended = True
        return b"\x1b[?10h"

    # A line that was shifted is redrawn at the cursor's row, so it has to be drawn before the cursor leaves it.
    _KINDS = (
        lambda self: b"\r\n" + self._text(),
        lambda self: b"\r" + self._text(),
        lambda self: b"\r\n\n\n" + self._text(),
        lambda self: b"\r\n" + bytes(self._random.choices(PRINTABLE, k=80)) + b"\r",
        lambda self: self._lines(self._random.randint(1, 8)),
        lambda self: self._lines(self._random.randint(1, 3)),
        lambda self: self._lines(self._random.randint(5, 20)),
        lambda self: self._go() + b"\x1b[4h" + self._text(2) + b"\x1b[4l\r",
        lambda self: self._go() + b"\x1b[" + self._number(1, 3) + b"@\x1b[0A" + self._text(1),
        lambda self: self._go() + b"\x1b[" + self._number(1, 5) + b"P\x1b[0A" + self._text(),
        lambda self: self._go() + b"\x1b[" + self._random.choice((b"0", b"2")) + b"K",
        lambda self: self._go() + (b"\x1b[" + self._random.choice((b"0", b"0", b"1", b"2")) + b"J"
                                   if self._random.random() < 0.3 else b"\r\n") + self._text(),
        lambda self: self._go() + b"\x1b[" + self._number(1, 5) + self._random.choice((b"L", b"M")) + self._text(),
        lambda self: b"\x1b[" + self._number(1, 12) + b";" + self._number(10, 24) + b"r" + self._text(),
        lambda self: b"\x1b[r" + self._go() + self._text(),
        lambda self: b"\x1b" + self._random.choice((b"D", b"E", b"M")) + b"\r" + self._text(),
        lambda self: b"\x1b[H" + b"\x1bM" * self._random.randint(1, 6) + self._text(),
        lambda self: b"\x1b[1;" + self._number(STEP + 1, 40) + b"x" + self._text() + b"\x1b[" + self._number(1, 24)
        + b";1H",
        _look,
        _look,
        _look,
        lambda self: b"\x1b[m",
        _mode,
        lambda self: self._suspend() if self._random.random() < 0.15 else b"\x1b[?5l",
        lambda self: b"\x1bc" if self._random.random() < 0.05 else self._go(),
        lambda self: self._go() + self._text(),
        lambda self: self._go() + self._text(),
        lambda self: self._go() + self._text(),
    )
