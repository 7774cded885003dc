"""What a terminal shows that does what its terminfo description says: an interpreter of the description.

It knows the description and terminfo(5), and nothing of the program. Each capability is expanded for all parameters that
make sense on the screen; output is cut into those strings, longest first, and each does what terminfo(5) says of its
capability. What no capability explains, or what the description leaves open, is an Unexplained error, with the place in
the output.

A few things terminfo(5) leaves to the terminal; here they are:
- am with xenl: the character in the last column leaves the cursor there, and the next one wraps first. Until then only what
  does not depend on the column may follow: a place, a carriage return, a line feed, attributes, text, an erase.
  Erasing there erases nothing: the cursor is behind the character, not on it.
- csr leaves the cursor anywhere: nothing may be written before it has been given a place.
- sgr and sgr0 also end the colours, as all of their kind do (each begins with SGR 0).
- Without bce, what is erased, inserted or scrolled in has neither attributes nor colours.
"""

import itertools
import re
import subprocess
import tempfile
from dataclasses import dataclass

ROWS, COLUMNS = 24, 80
BOLD, UNDERLINE, BLINK, REVERSE, INVISIBLE = 1, 2, 4, 8, 16
WHITE, BLACK = 7, 0
COLOURS = ("black", "red", "green", "yellow", "blue", "magenta", "cyan", "white")
# What acsc's letters stand for, as far as qxterm has them.
LINE_DRAWING = {"j": "┘", "k": "┐", "l": "┌", "m": "└", "n": "┼", "o": "⎺", "p": "⎻", "q": "─", "r": "⎼", "s": "⎽",
                "t": "├", "u": "┤", "v": "┴", "w": "┬", "x": "│"}


class Unexplained(Exception):
    """Output that the description does not explain."""


# --- the description -------------------------------------------------------------------------------------------------


def compiled(source, name="qxterm"):
    """The capabilities of a description's source: {name: True, a number or a string as it is sent}."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["tic", "-x", "-o", folder, source], check=True, capture_output=True)
        listing = subprocess.run(["infocmp", "-1", "-x", "-A", folder, name], check=True, capture_output=True, text=True)
    found = {}
    for line in listing.stdout.splitlines():
        if not line.startswith("\t"):
            continue
        item = line.strip().removesuffix(",")
        match = re.fullmatch(r"(\w+)(?:#(\w+)|=(.*))?", item, re.DOTALL)
        key, number, text = match.groups()
        found[key] = unescaped(text) if text is not None else int(number, 0) if number is not None else True
    return found


def unescaped(text):
    def one(match):
        written = match.group()
        if written[0] == "^":
            return "\x7f" if written[1] == "?" else chr(ord(written[1]) & 0x1F)
        simple = {"E": "\x1b", "e": "\x1b", "n": "\n", "l": "\n", "r": "\r", "t": "\t", "b": "\b", "f": "\f", "s": " "}
        if written[1] in simple:
            return simple[written[1]]
        return chr(int(written[1:], 8) & 0xFF) if written[1].isdigit() else written[1]

    return re.sub(r"\\[0-7]{3}|\\.|\^.", one, text)


def withoutPadding(text):
    return re.sub(r"\$<[\d.]+[*/]*>", "", text)


def expanded(text, *arguments):
    """The capability with its parameters filled in, by terminfo(5), "Parameterized Strings"."""
    parameters = list(arguments) + [0] * (9 - len(arguments))
    out, stack = [], []
    tokens = re.findall(r"%(?:p[1-9]|\{\d+\}|'.'|:?[-+# 0]*\d*(?:\.\d+)?[doxXsc]|.)|[^%]+", text, re.DOTALL)
    at = 0

    def skip(*ends):
        """Goes behind the token of this nesting that ends the part which is not wanted."""
        nonlocal at
        depth = 0
        while at < len(tokens):
            token = tokens[at]
            at += 1
            if depth == 0 and token in ends:
                return
            depth += (token == "%?") - (token == "%;")

    binary = {"+": lambda a, b: a + b, "-": lambda a, b: a - b, "*": lambda a, b: a * b, "/": lambda a, b: a // b,
              "m": lambda a, b: a % b, "&": lambda a, b: a & b, "|": lambda a, b: a | b, "^": lambda a, b: a ^ b,
              "=": lambda a, b: int(a == b), "<": lambda a, b: int(a < b), ">": lambda a, b: int(a > b),
              "A": lambda a, b: int(bool(a and b)), "O": lambda a, b: int(bool(a or b))}
    while at < len(tokens):
        token = tokens[at]
        at += 1
        if not token.startswith("%"):
            out.append(token)
        elif token == "%%":
            out.append("%")
        elif token == "%i":
            parameters[:2] = [value + 1 for value in parameters[:2]]
        elif token[1] == "p":
            stack.append(parameters[int(token[2]) - 1])
        elif token[1] == "{":
            stack.append(int(token[2:-1]))
        elif token[1] == "'":
            stack.append(ord(token[2]))
        elif token == "%l":
            stack.append(len(stack.pop()))
        elif token == "%!":
            stack.append(int(not stack.pop()))
        elif token == "%t":
            if not stack.pop():
                skip("%e", "%;")
        elif token == "%e":
            skip("%;")
        elif token in ("%?", "%;"):
            pass
        elif token[1] in binary:
            second, first = stack.pop(), stack.pop()
            stack.append(binary[token[1]](first, second))
        elif token[-1] in "doxXsc":
            value = stack.pop()
            out.append(("%" + token[1:].lstrip(":")) % value)
        else:
            raise ValueError(f"{token} in {text!r}")
    return "".join(out)


# For the capabilities that act on the screen: the values of each parameter. The others that are named here do nothing to it.
PLACES, LENGTHS, HEIGHTS = range(COLUMNS), range(1, COLUMNS + 1), range(1, ROWS + 1)
PARAMETERS = {
    "cup": (range(ROWS), PLACES), "csr": (range(ROWS), range(ROWS)), "hpa": (PLACES,), "vpa": (range(ROWS),),
    "cub": (LENGTHS,), "cuf": (LENGTHS,), "cuu": (HEIGHTS,), "cud": (HEIGHTS,), "ich": (LENGTHS,), "dch": (LENGTHS,),
    "ech": (LENGTHS,), "il": (HEIGHTS,), "dl": (HEIGHTS,), "indn": (HEIGHTS,), "rin": (HEIGHTS,),
    "setaf": (range(8),), "setab": (range(8),), "sgr": ((0, 1),) * 9, "tsl": (PLACES,)}
PLAIN = ("bel bold blink cbt civis clear cnorm cr cub1 cud1 cuf1 cuu1 dch1 dim dl1 dsl ed el el1 enacs flash fsl home ht ich1 il1 "
         "ind invis is2 nel op rc rev ri rmacs rmam rmir rmln rmso rmul rs1 sc sgr0 smacs smam smir smln smso smul").split()
# Where capabilities are spelled alike, the one that terminfo(5) says more of; fsl and rc are told apart by where the cursor is.
FIRST = ("cud1", "ind", "smso", "rev", "rc", "fsl")


class Description:
    def __init__(self, source):
        self.capabilities = compiled(source)
        self.meanings = {}
        for name in sorted(PARAMETERS, key=lambda one: one != "sgr"):
            if name in self.capabilities:
                for values in itertools.product(*PARAMETERS[name]):
                    self._add(expanded(self.capabilities[name], *values), name, values)
        for name in sorted(PLAIN, key=lambda one: one in FIRST and FIRST.index(one)):
            if name in self.capabilities:
                self._add(self.capabilities[name], name, ())
        # What programs of the old interface (tgetstr "me") are given: the end of the attributes, without the character set's.
        for off in (self.capabilities["sgr0"], expanded(self.capabilities["sgr"])):
            self._add(off.replace(self.capabilities["rmacs"], ""), "me", ())
        self.lengths = sorted({len(text) for text in self.meanings}, reverse=True)
        acsc = self.capabilities.get("acsc", "")
        self.lineDrawing = {sent: LINE_DRAWING[name] for name, sent in zip(acsc[::2], acsc[1::2])}

    def _add(self, text, name, values):
        self.meanings.setdefault(withoutPadding(text), (name, values))

    def flag(self, name):
        return self.capabilities.get(name) is True

    def at(self, output, place):
        """(capability, parameters, length) of the longest one that the output goes on with; (None, None, 0) without."""
        for length in self.lengths:
            sent = output[place:place + length]
            if sent in self.meanings:
                return *self.meanings[sent], len(sent)
        return None, None, 0


# --- the screen ------------------------------------------------------------------------------------------------------


@dataclass(frozen=True)
class Look:
    """Attributes and colours that text is written with."""
    flags: int = 0
    text: int = WHITE
    back: int = BLACK


@dataclass(frozen=True)
class Cell:
    character: str = " "
    look: Look = Look()

    def seen(self):
        """(character, text colour, background, bold, underlined) as a person sees it; a blank has no colour of its own."""
        flags, text, back = self.look.flags, self.look.text, self.look.back
        if flags & REVERSE:
            text, back = back, text
        character = " " if flags & INVISIBLE else self.character
        underlined = bool(flags & UNDERLINE)
        if character == " ":
            return character, text if underlined else None, back, False, underlined
        return character, text, back, bool(flags & BOLD), underlined


class Screen:
    """24 rows and a status row (the last one)."""

    def __init__(self, description, beyond=()):
        """beyond: names of RAW, what the output may hold besides capabilities."""
        self.description = description
        self._raw = [RAW[name] for name in beyond]
        self.rows = [[Cell()] * COLUMNS for _ in range(ROWS + 1)]
        self.row = self.column = 0
        self.wrapWaits = self.anywhere = False
        self.top, self.bottom = 0, ROWS - 1
        self.look = Look()
        self.drawing = self.inserting = False
        self.wraps = True
        self.cursorSeen = True
        self.saved = (0, 0)
        self.page = None  # the place on the page, while the cursor is on the status row

    def play(self, output, start=0, stop=None):
        """Shows output[start:stop], text with one character a byte. A capability may not be cut by either."""
        place, stop = start, len(output) if stop is None else stop
        while place < stop:
            character = output[place]
            try:
                if " " <= character <= "~" or character >= "\xa0":
                    self._write(character)
                    place += 1
                    continue
                name, values, length = self.description.at(output, place)
                if name is not None:
                    self._carryOut(name, values)
                else:
                    length = self._beyond(output, place)
                place += length
            except Unexplained as why:
                raise Unexplained(f"byte {place}: {why} (it goes on with {output[place:place + 24]!r})") from None
        if place != stop:
            raise Unexplained(f"byte {stop} is within a sequence")

    def _beyond(self, output, place):
        for pattern, act in self._raw:
            match = pattern.match(output, place)
            if match:
                act(self, match)
                return match.end() - match.start()
        raise Unexplained("no capability is sent in this way")

    def _carryOut(self, name, values):
        if name == "rc" and self.page is not None and "fsl" in self.description.capabilities:
            name = "fsl"
        act = ACTS.get(name)
        if act is None:
            raise Unexplained(f"the interpreter does not know {name}")
        if self.anywhere and name in NEED_PLACE | {"el", "ed"}:
            raise Unexplained(f"{name} while the cursor is where csr has left it")
        if self.wrapWaits and name in NEED_PLACE:
            raise Unexplained(f"{name} behind the last column")
        act(self, *values)

    # --- text

    def _write(self, character):
        if self.anywhere:
            raise Unexplained("text where csr has left the cursor")
        if self.wrapWaits:
            if self.page is not None:
                raise Unexplained("text behind the status row's last column")
            self._place(self.row, 0)
            self._lineFeed()
        drawn = self.description.lineDrawing.get(character, character) if self.drawing else character
        line = self.rows[self.row]
        if self.inserting:
            line.insert(self.column, Cell())
            line.pop()
        line[self.column] = Cell(drawn, self.look)
        self.wrapWaits = self.wraps and self.column == COLUMNS - 1
        self.column = min(self.column + 1, COLUMNS - 1)

    def _place(self, row, column):
        self.row, self.column = row, column
        self.wrapWaits = self.anywhere = False

    def place(self, row, column):
        """To a place of the page."""
        self.page = None
        self._place(row, column)

    def move(self, down, right):
        """Within the screen: what would lead out of it is left open."""
        if self.page is not None:
            raise Unexplained("a movement on the status row")
        row, column = self.row + down, self.column + right
        if not (0 <= row < ROWS and 0 <= column < COLUMNS):
            raise Unexplained(f"a movement from row {self.row}, column {self.column} out of the screen")
        if self.top <= self.row <= self.bottom and not self.top <= row <= self.bottom:
            raise Unexplained("a movement out of the region")
        self._place(row, column)

    def tab(self):
        stops = self.description.capabilities["it"]
        if self.column // stops * stops + stops >= COLUMNS:
            raise Unexplained("a tab behind the last tab stop")
        self._place(self.row, self.column // stops * stops + stops)

    def backTab(self):
        stops = self.description.capabilities["it"]
        self._place(self.row, max(self.column - 1, 0) // stops * stops)

    # --- lines

    def _lineFeed(self):
        if self.row == self.bottom:
            self.scroll(self.top, 1)
        elif self.row == ROWS - 1:
            raise Unexplained("a line feed below the region")
        else:
            self.row += 1

    def lineFeed(self):
        if self.page is not None or self.anywhere:
            raise Unexplained("a line feed on the status row, or nowhere")
        self._lineFeed()

    def reverseIndex(self):
        if self.row == self.top:
            self.scroll(self.top, -1)
        elif self.row == 0:
            raise Unexplained("ri on the first row, outside the region")
        else:
            self.row -= 1

    def scroll(self, first, count):
        """The rows from first to the region's end, up by count, or down by -count."""
        part = self.rows[first:self.bottom + 1]
        blank = [[Cell()] * COLUMNS for _ in range(min(abs(count), len(part)))]
        part = part[count:] + blank if count > 0 else blank + part[:count]
        self.rows[first:self.bottom + 1] = part

    def moveLines(self, count):
        if not self.top <= self.row <= self.bottom or self.page is not None:
            raise Unexplained("il or dl outside the region")
        if self.column != 0:
            raise Unexplained("il or dl outside the first column")
        self.scroll(self.row, count)

    def setRegion(self, top, bottom):
        if top >= bottom:
            raise Unexplained(f"a region from row {top} to row {bottom}")
        self.top, self.bottom = top, bottom
        self.page = None
        self.wrapWaits, self.anywhere = False, True

    # --- within a line

    def erase(self, row, first, last):
        self.rows[row][first:last + 1] = [Cell()] * (last + 1 - first)

    def eraseLineEnd(self):
        if not self.wrapWaits:
            self.erase(self.row, self.column, COLUMNS - 1)

    def erasePageEnd(self):
        if self.page is not None:
            raise Unexplained("ed on the status row")
        self.eraseLineEnd()
        for row in range(self.row + 1, ROWS):
            self.erase(row, 0, COLUMNS - 1)

    def clear(self):
        self.place(0, 0)
        self.erasePageEnd()

    def insert(self, count):
        line = self.rows[self.row]
        line[self.column:self.column] = [Cell()] * count
        del line[COLUMNS:]

    def delete(self, count):
        line = self.rows[self.row]
        del line[self.column:self.column + count]
        line += [Cell()] * (COLUMNS - len(line))

    # --- attributes

    def with_(self, flags=0, without=0):
        self.look = Look(self.look.flags & ~without | flags, self.look.text, self.look.back)

    def colours(self, text=None, back=None):
        self.look = Look(self.look.flags, self.look.text if text is None else text, self.look.back if back is None else back)

    def attributes(self, standout, underline, reverse, blink, dim, bold, invisible, protect, drawing):
        if dim or protect:
            raise Unexplained("dim or protect")
        self.look = Look(REVERSE * (standout | reverse) | UNDERLINE * underline | BLINK * blink | BOLD * bold
                         | INVISIBLE * invisible)
        self.drawing = bool(drawing)

    def plain(self):
        """Ends attributes and colours, and leaves the character set."""
        self.look = Look()

    # --- the rest

    def save(self):
        if self.page is None:
            self.saved = (self.row, self.column)

    def restore(self):
        self._place(*self.saved)

    def toStatusRow(self, column):
        if self.page is None:
            self.page = (self.row, self.column, self.wrapWaits)
        self._place(ROWS, column)

    def fromStatusRow(self):
        row, column, waits = self.page
        self.place(row, column)
        self.wrapWaits = waits

    def resetModes(self):
        """is2 and rs1: a terminal as it is when it has been switched on, but for what it shows."""
        self.top, self.bottom = 0, ROWS - 1
        self.look = Look()
        self.drawing = self.inserting = False
        self.wraps = True
        self.page = None

    def reset(self):
        self.resetModes()
        self.cursorSeen = True
        self.rows = [[Cell()] * COLUMNS for _ in range(ROWS + 1)]
        self.place(0, 0)

    def setDrawing(self, on):
        self.drawing = on

    def setInserting(self, on):
        self.inserting = on

    def setWraps(self, on):
        self.wraps = on

    def setCursorSeen(self, on):
        self.cursorSeen = on


ACTS = {
    "bel": lambda s: None, "flash": lambda s: None, "enacs": lambda s: None, "smln": lambda s: None, "rmln": lambda s: None,
    "cup": Screen.place, "home": lambda s: s.place(0, 0), "cr": lambda s: s._place(s.row, 0),
    "cub": lambda s, n: s.move(0, -n), "cub1": lambda s: s.move(0, -1), "cuf": lambda s, n: s.move(0, n),
    "cuf1": lambda s: s.move(0, 1), "cuu": lambda s, n: s.move(-n, 0), "cuu1": lambda s: s.move(-1, 0),
    "cud": lambda s, n: s.move(n, 0), "cud1": Screen.lineFeed, "ind": Screen.lineFeed, "ri": Screen.reverseIndex,
    "nel": lambda s: (s._place(s.row, 0), s.lineFeed()), "ht": Screen.tab, "cbt": Screen.backTab,
    "csr": Screen.setRegion, "il1": lambda s: s.moveLines(-1), "dl1": lambda s: s.moveLines(1),
    "il": lambda s, n: s.moveLines(-n), "dl": lambda s, n: s.moveLines(n),
    "clear": Screen.clear, "ed": Screen.erasePageEnd, "el": Screen.eraseLineEnd,
    "ich": Screen.insert, "ich1": lambda s: s.insert(1), "dch": Screen.delete, "dch1": lambda s: s.delete(1),
    "bold": lambda s: s.with_(BOLD), "blink": lambda s: s.with_(BLINK), "rev": lambda s: s.with_(REVERSE),
    "smso": lambda s: s.with_(REVERSE), "rmso": lambda s: s.with_(without=REVERSE), "smul": lambda s: s.with_(UNDERLINE),
    "rmul": lambda s: s.with_(without=UNDERLINE), "invis": lambda s: s.with_(INVISIBLE), "sgr": Screen.attributes,
    "sgr0": lambda s: s.attributes(*[0] * 9), "me": lambda s: s.plain(),
    "setaf": lambda s, n: s.colours(text=n), "setab": lambda s, n: s.colours(back=n),
    "op": lambda s: s.colours(WHITE, BLACK), "smacs": lambda s: s.setDrawing(True), "rmacs": lambda s: s.setDrawing(False),
    "smir": lambda s: s.setInserting(True), "rmir": lambda s: s.setInserting(False), "smam": lambda s: s.setWraps(True),
    "rmam": lambda s: s.setWraps(False), "civis": lambda s: s.setCursorSeen(False), "cnorm": lambda s: s.setCursorSeen(True),
    "sc": Screen.save, "rc": Screen.restore, "tsl": Screen.toStatusRow, "fsl": Screen.fromStatusRow,
    "dsl": lambda s: s.erase(ROWS, 0, COLUMNS - 1), "is2": Screen.resetModes, "rs1": Screen.reset}
# What depends on the column, or writes: not behind the last column, and not where csr has left the cursor.
NEED_PLACE = {"cub", "cub1", "cuf", "cuf1", "cuu", "cuu1", "cud", "ht", "cbt", "il1", "dl1", "il", "dl", "ich", "ich1", "dch",
              "dch1", "ri", "sc", "nel"}


# --- what programs send without asking the description ---------------------------------------------------------------


def renditions(screen, match):
    """SGR with the numbers that the description's own capabilities send, in any combination."""
    for number in [int(part or 0) for part in match.group(1).split(";")]:
        if number == 0:
            screen.look = Look()
        elif number in (1, 4, 5, 7, 8):
            screen.with_({1: BOLD, 4: UNDERLINE, 5: BLINK, 7: REVERSE, 8: INVISIBLE}[number])
        elif number in (24, 27):
            screen.with_(without={24: UNDERLINE, 27: REVERSE}[number])
        elif 30 <= number <= 37 or number == 39:
            screen.colours(text=WHITE if number == 39 else number - 30)
        elif 40 <= number <= 47 or number == 49:
            screen.colours(back=BLACK if number == 49 else number - 40)
        else:
            raise Unexplained(f"SGR {number}")


def shown(screen, match):
    """The text behind a marker that is not known."""
    for character in match.group(1):
        screen._write(character)


RAW = {
    # ls, grep, groff, S-Lang and vim's syntax know the numbers themselves.
    "sgr": (re.compile("\x1b\\[([0-9;]*)m"), renditions),
    # Mouse reports (ncurses, for every name with "xterm" in it), bracketed paste (readline, nano, joe, mc), the window's
    # focus and keys (tmux): not here.
    "modes": (re.compile("\x1b\\[\\?(1000|1004|2004|7727)[hl]"), lambda screen, match: None),
    # screen names the character set that there is anyway, as enacs does.
    "charset": (re.compile("\x1b\\(B"), lambda screen, match: None),
    # tmux asks what the terminal is. The letter may be shown, since the marker is not known; the screen is drawn over it.
    "questions": (re.compile("\x1b\\[>[cq]"), lambda screen, match: None),
    # vim, for every name with "xterm" in it: digits that are shown, and a question that is an underline.
    "keys": (re.compile("\x1b\\[>(4;2?m)"), shown),
    "keysAsked": (re.compile("\x1b\\[\\?4m"), lambda screen, match: screen.with_(UNDERLINE)),
    # top, when it ends: one row below the last, which is the last, as with every place that is too large.
    "below": (re.compile("\x1b\\[25;1H"), lambda screen, match: screen.place(ROWS - 1, 0))}
