"""The screen painter: pages draw into a picture, and the painter sends what differs from what the terminal shows.

Two pictures of 25 rows by 80 columns are kept: the wanted one, which the pages draw, and the shown one, which
follows what has been sent. render() sends the difference. The operations that move text about on the terminal
(scrolling, inserting and deleting lines and characters) change the shown picture only; the page then draws what it
wants to stand there, and the difference is little.

Rows 0 to 23 are the page, row 24 is the status row. Erasing leaves the character of the last column in the
terminal's memory, so only blanks are ever put into column 79.
"""

from zentora.style import NORMAL

ROWS, COLUMNS = 24, 80
STATUS_ROW = 24

_BLANK = (" ", NORMAL, False)

# Re-sending up to this many unchanged cells is shorter than a cursor position.
_bridgeLength = 6
# A tail of blanks longer than this is erased rather than written.
_eraseFrom = 4


def _blankRow():
    return [_BLANK] * COLUMNS


class Screen:
    def __init__(self):
        self._wanted = [_blankRow() for _ in range(ROWS + 1)]
        self._shown = [_blankRow() for _ in range(ROWS + 1)]
        self._out = []
        self._cursor = None
        self._cursorVisible = True
        self._row = self._column = -1
        self._style = None
        self._lineSet = False

    # Drawing into the wanted picture

    def clear(self):
        """Blanks the page; the status row stays."""
        for row in range(ROWS):
            self._wanted[row] = _blankRow()

    def clearStatus(self):
        self._wanted[STATUS_ROW] = _blankRow()

    def put(self, row, column, text, style=NORMAL, lineSet=False):
        """Draws text; what would pass the screen's edge is cut, and the last column takes blanks only."""
        cells = self._wanted[row]
        for offset, character in enumerate(text):
            at = column + offset
            if at < 0 or at >= COLUMNS or (at == COLUMNS - 1 and character != " "):
                continue
            cells[at] = (character, style, lineSet)

    def fill(self, row, column, width, style=NORMAL):
        self.put(row, column, " " * width, style)

    def lines(self, row, column, text, style):
        """Draws line-drawing characters, given by their letters j to x."""
        self.put(row, column, text, style, True)

    def box(self, top, left, bottom, right, style, title="", titleStyle=NORMAL):
        width = right - left - 1
        self.lines(top, left, "l" + "q" * width + "k", style)
        for row in range(top + 1, bottom):
            self.lines(row, left, "x", style)
            self.lines(row, right, "x", style)
        self.lines(bottom, left, "m" + "q" * width + "j", style)
        if title:
            self.put(top, left + 2, f" {title} ", titleStyle)

    def rule(self, row, left, right, style):
        """A horizontal line that joins both sides of a box."""
        self.lines(row, left, "t" + "q" * (right - left - 1) + "u", style)

    def showCursor(self, row, column):
        self._cursor = (row, column)

    def hideCursor(self):
        self._cursor = None

    # Sending

    def raw(self, text):
        """Sends text that changes neither cells nor cursor (bell, function keys, modes)."""
        self._out.append(text)

    def reset(self):
        """Brings the terminal to a known state and forgets what it showed; the wanted picture stays."""
        self._out.append("\x1b[r\x1b[4l\x1b[?6l\x1b[?7h\x1b[?25h\x0f\x1b[0m\x1b[H\x1b[2J\x1b[1;1x\x1b[K\x1b[H")
        self._shown = [_blankRow() for _ in range(ROWS + 1)]
        self._row = self._column = 0
        self._style = NORMAL
        self._lineSet = False
        self._cursorVisible = True

    def takeOutput(self):
        """Everything to be sent since the last call, as bytes."""
        text = "".join(self._out)
        self._out.clear()
        return text.encode("latin-1", "replace").replace(b"\xff", b"?")

    def render(self):
        """Sends what differs, then puts the cursor where it belongs."""
        for row in range(ROWS + 1):
            if self._wanted[row] != self._shown[row]:
                self._renderRow(row)
        if self._cursor is None:
            if self._cursorVisible:
                self._out.append("\x1b[?25l")
                self._cursorVisible = False
            if self._row not in range(ROWS):
                self._moveTo(0, 0)
            return
        self._moveTo(*self._cursor)
        if not self._cursorVisible:
            self._out.append("\x1b[?25h")
            self._cursorVisible = True

    def _renderRow(self, row):
        wanted, shown = self._wanted[row], self._shown[row]
        end = COLUMNS
        while end > 0 and wanted[end - 1] == _BLANK:
            end -= 1
        if sum(cell != _BLANK for cell in shown[end:]) > _eraseFrom:
            self._moveTo(row, end)
            self._out.append("\x1b[K")
            shown[end:] = [_BLANK] * (COLUMNS - end)
        column = 0
        while column < COLUMNS:
            if wanted[column] == shown[column]:
                column += 1
                continue
            column = self._renderRun(row, column)

    def _renderRun(self, row, first):
        """Sends cells from a changed one up to where nothing changes for a while; returns the column behind."""
        wanted, shown = self._wanted[row], self._shown[row]
        last = first
        for column in range(first + 1, COLUMNS):
            if column - last > _bridgeLength:
                break
            if wanted[column] != shown[column]:
                last = column
        self._moveTo(row, first)
        for column in range(first, last + 1):
            character, style, lineSet = wanted[column]
            self._setStyle(style, lineSet)
            self._out.append(character)
            shown[column] = wanted[column]
        self._column = last + 1
        if self._column == COLUMNS:
            # The cursor now rests behind the last column: say where it is before anything else is sent.
            self._row = -1
        return last + 1

    def _moveTo(self, row, column):
        if (row, column) == (self._row, self._column):
            return
        if row == STATUS_ROW:
            self._out.append(f"\x1b[1;{column + 1}x")
        else:
            self._out.append(f"\x1b[{row + 1};{column + 1}H")
        self._row, self._column = row, column

    def _setStyle(self, style, lineSet):
        if style != self._style:
            self._out.append(style.sgr())
            self._style = style
        if lineSet != self._lineSet:
            self._out.append("\x0e" if lineSet else "\x0f")
            self._lineSet = lineSet

    # Moving what the terminal shows

    def scroll(self, top, bottom, count):
        """Moves rows top to bottom up by count lines, or down by -count lines, one line at a time."""
        if not count:
            return
        self._setRegion(top, bottom)
        rows = self._shown
        if count > 0:
            self._moveTo(bottom, 0)
            self._out.append("\n" * count)
        else:
            self._moveTo(top, 0)
            self._out.append("\x1bM" * -count)
        for _ in range(abs(count)):
            if count > 0:
                del rows[top]
                rows.insert(bottom, _blankRow())
            else:
                del rows[bottom]
                rows.insert(top, _blankRow())
        self._clearRegion()

    def deleteLines(self, row, bottom, count):
        """Deletes count lines at row; lines down to bottom move up. At most half of them: the terminal leaves the
        middle where it was when there are more."""
        assert 0 < 2 * count <= bottom - row + 1
        self._setRegion(row, bottom)
        self._moveTo(row, 0)
        self._out.append(f"\x1b[{count}M")
        del self._shown[row:row + count]
        self._shown[bottom + 1 - count:bottom + 1 - count] = [_blankRow() for _ in range(count)]
        self._clearRegion()

    def insertLines(self, row, bottom, count):
        """Inserts count blank lines at row; lines down to bottom move down. At most half of them, as above."""
        assert 0 < 2 * count <= bottom - row + 1
        self._setRegion(row, bottom)
        self._moveTo(row, 0)
        self._out.append(f"\x1b[{count}L")
        del self._shown[bottom + 1 - count:bottom + 1]
        self._shown[row:row] = [_blankRow() for _ in range(count)]
        self._clearRegion()

    def deleteCharacter(self, row, column):
        """Deletes one cell; the row must hold text to the right of it."""
        self._moveTo(row, column)
        self._out.append("\x1b[P")
        cells = self._shown[row]
        del cells[column]
        cells.append(_BLANK)
        self._settleRow(row, column)

    def insertCharacter(self, row, column):
        """Inserts one blank cell."""
        self._moveTo(row, column)
        self._out.append("\x1b[@")
        self._shiftRight(row, column, _BLANK)
        self._settleRow(row, column)

    def insertText(self, row, column, text, style):
        """Types text in the terminal's insert mode: the rest of the row moves right."""
        self._moveTo(row, column)
        self._setStyle(style, False)
        self._out.append(f"\x1b[4h{text}\x1b[4l")
        for offset, character in enumerate(text):
            self._shiftRight(row, column + offset, (character, style, False))
        self._column = column + len(text)

    def _shiftRight(self, row, column, cell):
        cells = self._shown[row]
        cells.insert(column, cell)
        del cells[COLUMNS:]

    def _settleRow(self, row, column):
        # The terminal redraws a shifted row where the cursor stands at its next flush; a position flushes first.
        self._row = -1
        self._moveTo(row, column)

    def _setRegion(self, top, bottom):
        self._out.append(f"\x1b[{top + 1};{bottom + 1}r")
        self._row = self._column = 0

    def _clearRegion(self):
        self._out.append("\x1b[r")
        self._row = self._column = 0
