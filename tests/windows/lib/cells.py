"""Compares the picture of the screen with the screen records, cell by cell.

A sheet with every printable character, drawn white on black, says what each glyph looks like. From that follows how
any cell must look: its colours, reverse video, underline, the cursor. Every pixel has to be right.
"""

import time

from peers import Peer
from program import TEST, Failure, capture, check, saveScreen

COLUMNS, ROWS = 80, 25
SHIFT_OUT, BOLD, UNDERLINE, BLINK, REVERSE = 1, 2, 4, 8, 16
REVERSE_SCREEN, SUSPENDED, BAR_CURSOR, NO_CURSOR = 2, 16, 32, 64
DEFAULT_WORD = 1792
PRINTABLE = "".join(map(chr, range(32, 127)))
LINES = "jklmnopqrstuvwx"
# Where the arms of a line-drawing character point: up, down, left, right. The scan lines o, p, r, s lie at heights of
# their own.
ARMS = {"j": "ul", "k": "dl", "l": "dr", "m": "ur", "n": "udlr", "q": "lr", "t": "udr", "u": "udl", "v": "ulr",
        "w": "dlr", "x": "ud"}
WHITE = b"\xff"


class Sheet:
    """The glyphs, each as bytes of coverage, one a pixel: 0 background, 255 text."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.glyphs = {}
        self._cells = {}

    def cell(self, character, word, reverseScreen):
        """The pixels that a cell must have, three bytes each."""
        key = (character, word, reverseScreen)
        if key not in self._cells:
            self._cells[key] = self._draw(*key)
        return self._cells[key]

    def plain(self, index):
        return bytes(rgb(index)) * (self.width * self.height)

    def _draw(self, character, word, reverseScreen):
        flags, text, back = word & 255, word >> 8 & 15, word >> 12 & 15
        if reverseScreen != bool(flags & REVERSE):
            text, back = back, text
        coverage = bytearray(self.glyphs[self._kind(character, flags), character])
        if flags & UNDERLINE:
            # 15 twips a pixel, the line at an eighth of the height above the cell's end.
            y = (self.height * 15 - self.height * 15 // 8) // 15
            coverage[y * self.width:(y + 1) * self.width] = WHITE * self.width
        front, behind = rgb(text), rgb(back)
        pixels = bytearray()
        for covered in coverage:
            for channel in range(3):
                pixels.append(behind[channel] + (front[channel] - behind[channel]) * covered // 255)
        return bytes(pixels)

    @staticmethod
    def _kind(character, flags):
        if flags & SHIFT_OUT and character in LINES:
            return "line"
        return "bold" if flags & BOLD else "normal"


def rgb(index):
    return 255 * (index & 1), 255 * (index >> 1 & 1), 255 * (index >> 2 & 1)


def cut(pixels, width, height):
    """The cells of a picture of the screen, by row and column."""
    step, line = width * 3, COLUMNS * width * 3
    rows = []
    for row in range(ROWS):
        lines = [pixels[(row * height + y) * line:(row * height + y + 1) * line] for y in range(height)]
        rows.append([b"".join(one[column * step:(column + 1) * step] for one in lines) for column in range(COLUMNS)])
    return rows


def picture(program):
    """The screen's cells as they stand on the display, and the size of one."""
    places, view = program.ask("places", "view")
    left, top, across, down = places["picterm"]
    width, height = view["cell"]
    check((across, down) == (COLUMNS * width, ROWS * height),
          f"the picture box has {across} x {down} pixels for 80 x 25 cells of {width} x {height}")
    return cut(capture(left, top, across, down), width, height), width, height


def sheetText():
    """What draws the sheet: normal in rows 0 and 1, bold in 2 and 3, lines in 4, the cursor away."""
    return (b"\x1bc\x1b[?25l\x1b[m" + PRINTABLE[:80].encode() + b"\x1b[2;1H" + PRINTABLE[80:].encode()
            + b"\x1b[3;1H\x1b[1m" + PRINTABLE[:80].encode() + b"\x1b[4;1H" + PRINTABLE[80:].encode()
            + b"\x1b[5;1H\x1b[m\x1b(B\x1b)0\x0e" + LINES.encode() + b"\x0f")


def waitForPicture(program, good, seconds=10.0):
    """Takes pictures until good(cells, width, height) finds nothing wrong; returns the last complaint."""
    end = time.monotonic() + seconds
    while True:
        complaint = good(*picture(program))
        if complaint is None or time.monotonic() > end:
            return complaint
        time.sleep(0.1)


def readSheet(program):
    """The sheet, from the picture of a screen that sheetText has drawn."""
    found = {}

    def read(cells, width, height):
        sheet = Sheet(width, height)
        for kind, row, characters in (("normal", 0, PRINTABLE), ("bold", 2, PRINTABLE), ("line", 4, LINES)):
            for at, character in enumerate(characters):
                pixels = cells[row + at // COLUMNS][at % COLUMNS]
                if pixels[0::3] != pixels[1::3] or pixels[0::3] != pixels[2::3]:
                    return f"{kind} {character!r} has colours in white on black"
                sheet.glyphs[kind, character] = pixels[0::3]
        found["sheet"] = sheet
        return checkGlyphs(sheet)

    complaint = waitForPicture(program, read)
    if complaint is not None:
        raise Failure(f"the sheet of characters: {complaint}; see {saveScreen(TEST + '-sheet')}")
    return found["sheet"]


def checkGlyphs(sheet):
    """What must hold of any font: nothing missing, all different, lines that meet their neighbours."""
    for kind, characters in (("normal", PRINTABLE[1:]), ("bold", PRINTABLE[1:]), ("line", LINES)):
        seen = {}
        for character in characters:
            glyph = sheet.glyphs[kind, character]
            if not any(glyph):
                return f"{kind} {character!r} is blank"
            if glyph in seen:
                return f"{kind} {character!r} looks like {seen[glyph]!r}"
            seen[glyph] = character
        if any(sheet.glyphs.get((kind, " "), b"")):
            return f"{kind} blank is not blank"
    # Without grey levels a thin character may come out alike in a small size.
    same = [c for c in filter(str.isalnum, PRINTABLE) if sheet.glyphs["bold", c] == sheet.glyphs["normal", c]]
    if len(same) > 10:
        return f"bold looks like the normal font: {''.join(same)}"
    return checkArms(sheet)


def edge(sheet, glyph, side):
    """Coverage of the pixels on one side of a cell."""
    width = sheet.width
    return {"u": glyph[:width], "d": glyph[-width:], "l": glyph[0::width], "r": glyph[width - 1::width]}[side]


def checkArms(sheet):
    vertical = edge(sheet, sheet.glyphs["line", "x"], "u")
    horizontal = edge(sheet, sheet.glyphs["line", "q"], "l")
    for character, arms in ARMS.items():
        glyph = sheet.glyphs["line", character]
        for side in "udlr":
            wanted = (vertical if side in "ud" else horizontal) if side in arms else None
            found = edge(sheet, glyph, side)
            if wanted is not None and found != wanted:
                return f"the line of {character!r} does not meet its neighbour on side {side}"
            if wanted is None and any(found):
                return f"{character!r} touches side {side}"
    for character, strips in (("x", [edge(sheet, sheet.glyphs["line", "x"][at * sheet.width:], "u")
                                     for at in range(sheet.height)]),
                              ("q", [sheet.glyphs["line", "q"][at::sheet.width] for at in range(sheet.width)])):
        if len(set(strips)) != 1 or not any(strips[0]):
            return f"the line of {character!r} is not the same all along"
    return None


def drawing(pixels, width):
    """A cell for reading: colours as digits, what is between as '?'."""
    out = []
    for at in range(0, len(pixels), 3):
        parts = pixels[at:at + 3]
        pure = all(part in (0, 255) for part in parts)
        out.append(str(sum((part > 0) << bit for bit, part in enumerate(parts))) if pure else "?")
    text = "".join(out).replace("0", ".")
    return [text[at:at + width] for at in range(0, len(text), width)]


def side(expected, found, width):
    lines = ["      expected".ljust(6 + width + 4) + "found"]
    for left, right in zip(drawing(expected, width), drawing(found, width)):
        lines.append(f"      {left}    {right}")
    return lines


def allowed(sheet, screen, view, row, column):
    """The looks that a cell may have: more than one under a cursor, and where what was erased may stand."""
    character, word = screen["rows"][row][column], screen["attrs"][row][column]
    reverseScreen = bool(screen["mode"] & REVERSE_SCREEN)
    background = sheet.plain(view["background"])
    if column > screen["used"][row]:
        looks = [background]
    else:
        away = word & BLINK and view["textBlinkOff"]
        looks = [background if away else sheet.cell(character, word, reverseScreen)]
        # An erase leaves the character of its last column in the record, and takes it from the window.
        if column == COLUMNS - 1 and word == DEFAULT_WORD:
            looks.append(background)
    if [min(screen["cursor"][0], COLUMNS - 1), screen["cursor"][1]] == [column, row]:
        if screen["mode"] & NO_CURSOR:
            return looks
        looks += [inverted(look, sheet, screen["mode"]) for look in looks]
    return looks


def inverted(pixels, sheet, mode):
    from_ = len(pixels) - 2 * 3 * sheet.width if mode & BAR_CURSOR else 0
    return pixels[:from_] + bytes(255 - value for value in pixels[from_:])


def textBlinks(screen):
    """Whether blinking text stands on the screen."""
    return any(word & BLINK and character != " "
               for text, words, used in zip(screen["rows"], screen["attrs"], screen["used"])
               for character, word in list(zip(text, words))[:used + 1])


def compareBothPhases(program, sheet, name):
    """The picture with the blinking text away, and with it back."""
    compare(program, sheet, name + "-away", away=True)
    compare(program, sheet, name, away=False)


def compare(program, sheet, name, seconds=10.0, away=None):
    """Waits until the picture of the screen is what the records say; a picture of the window is kept as name. away: blinking
    text must be there, and be away, or shown."""
    program_ = program

    def good(cells, width, height):
        screen, view = program_.ask("screen", "view")
        if (width, height) != (sheet.width, sheet.height):
            return "the cells have another size than those of the sheet"
        if any(flags & 1 for flags in screen["flags"]) or view["busy"]:
            return "lines are still to be drawn"
        if away is not None and (view["textBlinkOff"] != away or not textBlinks(screen)):
            return f"no blinking text is {'away' if away else 'shown'}"
        wrong = [(row, column) for row in range(ROWS) for column in range(COLUMNS)
                 if cells[row][column] not in allowed(sheet, screen, view, row, column)]
        if not wrong:
            return None
        lines = [f"{len(wrong)} cells differ from the records"]
        for row, column in wrong[:3]:
            lines.append(f"    row {row}, column {column}: {screen['rows'][row][column]!r}, word "
                         f"{screen['attrs'][row][column]}, cursor at {screen['cursor']}, line is {screen['rows'][row]!r}")
            lines += side(allowed(sheet, screen, view, row, column)[0], cells[row][column], width)
        lines.append(f"    all: {wrong[:40]}")
        return "\n".join(lines)

    complaint = waitForPicture(program, good, seconds)
    path = program.picture(name)
    if complaint is not None:
        raise Failure(f"picture {name}: {complaint}\n    see {path}")


def cursorIsSeen(program, sheet):
    """Waits for a picture in which the cursor's cell is inverted."""

    def good(cells, _width, _height):
        screen, view = program.ask("screen", "view")
        column, row = min(screen["cursor"][0], COLUMNS - 1), screen["cursor"][1]
        looks = allowed(sheet, screen, view, row, column)
        plain, shown = looks[:len(looks) // 2], looks[len(looks) // 2:]
        return None if cells[row][column] in shown and cells[row][column] not in plain else "no cursor is seen"

    complaint = waitForPicture(program, good)
    if complaint is not None:
        raise Failure(f"{complaint}; see {program.picture('cursor')}")


def sheetPeer():
    """A peer that draws the sheet as soon as the program connects."""
    return Peer(lambda connection: connection.sendall(sheetText()))


def takeSheet(program):
    """Waits for the sheet's text and reads it. The program is connected with a sheetPeer."""
    program.waitText(PRINTABLE[:80].rstrip(), row=2)
    program.waitText(LINES, row=4)
    sheet = readSheet(program)
    compare(program, sheet, "sheet")
    return sheet
