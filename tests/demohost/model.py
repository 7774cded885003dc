"""A small model of the terminal for these tests: what stands in its memory after the host's output.

It is written from the terminal's rules alone and shares nothing with the host under test. It keeps the habits that
a host has to mind: an erase that leaves the last character of its span, SGR 0 that keeps shift-out, SGR 22 that
clears everything, insert and delete of lines with their limits, and rows that are redrawn where the cursor stands
after characters were inserted or deleted.
"""

DEFAULT = (0, 7, 0)
SHIFT_OUT, BOLD, UNDERLINE, BLINK, REVERSE, INVISIBLE = 1, 2, 4, 8, 16, 32
_setFlag = {1: BOLD, 4: UNDERLINE, 5: BLINK, 7: REVERSE, 8: INVISIBLE}
_clearFlags = {22: 63, 24: UNDERLINE, 25: BLINK, 27: BLINK | REVERSE, 28: INVISIBLE}


class Line:
    def __init__(self):
        self.text = [" "] * 80
        self.attrs = [DEFAULT] * 80
        self.used = -1


class Model:
    def __init__(self):
        self.rows = [Line() for _ in range(25)]
        self.column = self.row = 0
        self.top, self.bottom = 0, 23
        self.attr = DEFAULT
        self.saved = (0, 0, DEFAULT)
        self.insertMode = self.reverseScreen = self.origin = self.noWrap = False
        self.cursorHidden = self.cursorBlinks = self.barShown = False
        self.bank = 0
        self.labels = [[f"   F{n}".ljust(16) for n in range(1, 9)] for _ in range(2)]
        self.strings = [["\x1bO" + chr(98 + n) for n in range(1, 9)] for _ in range(2)]
        self.shownLabels = self.labels[0][:]
        self.bells = 0
        self.replies = bytearray()
        self.printed = 0
        # What a well-behaved host never causes
        self.unknown = []
        self.misdrawnRows = 0
        self._shiftedRow = None
        self._carry = b""

    # Reading the screen

    def rowText(self, row):
        return "".join(self.rows[row].text)

    def page(self):
        return "\n".join(self.rowText(row).rstrip() for row in range(25))

    def flags(self, row, column):
        return self.rows[row].attrs[column][0]

    # Input

    def feed(self, block):
        data = self._carry + block
        self._carry = b""
        at = 0
        while at < len(data):
            byte = data[at]
            if byte == 27 or byte == 255:
                used = self._escape(data[at:]) if byte == 27 else self._telnet(data[at:])
                if not used:
                    self._carry = data[at:]
                    break
                at += used
                continue
            at += 1
            if byte >= 32:
                self._print(chr(byte))
            else:
                self._control(byte)
        self._flush()

    def _control(self, byte):
        if byte == 7:
            self.bells += 1
        elif byte == 8:
            self._flush()
            self.column = max(0, self.column - 1)
        elif byte == 9:
            self._flush()
            self.column = min(80, self.column // 8 * 8 + 8)
        elif byte == 10:
            self._lineFeed()
        elif byte == 13:
            self.column = 0
        elif byte in (14, 15):
            self._flush()
            flags = self.attr[0] | 1 if byte == 14 else self.attr[0] & ~1
            self.attr = (flags, *self.attr[1:])

    def _print(self, character):
        if self.column >= 80:
            if self.noWrap:
                self.column = 79
            else:
                self.column = 0
                self._lineFeed()
        line = self.rows[self.row]
        self.printed += 1
        if self.attr[0] & INVISIBLE:
            character = " "
        if self.insertMode:
            self._shiftRight(1)
        line.text[self.column] = character
        line.attrs[self.column] = self.attr
        line.used = max(line.used, self.column)
        self.column += 1

    def _flush(self):
        if self._shiftedRow is not None and self._shiftedRow != self.row:
            self.misdrawnRows += 1
        self._shiftedRow = None

    def _lineFeed(self):
        if self.row == 24:
            return
        if self.row == self.bottom:
            self._scroll(1)
        else:
            self.row = min(23, self.row + 1)

    def _scroll(self, direction):
        if direction > 0:
            del self.rows[self.top]
            self.rows.insert(self.bottom, Line())
        else:
            del self.rows[self.bottom]
            self.rows.insert(self.top, Line())

    def _shiftRight(self, count):
        line = self.rows[self.row]
        line.text[self.column:self.column] = [" "] * count
        line.attrs[self.column:self.column] = [DEFAULT] * count
        del line.text[80:], line.attrs[80:]
        if line.used >= self.column:
            line.used += count
        self._shiftedRow = self.row

    def _deleteCharacters(self, count):
        line = self.rows[self.row]
        last = line.used
        del line.text[self.column:self.column + count]
        line.text += [" "] * (80 - len(line.text))
        for k in range(self.column, 80 - count):
            line.attrs[k] = line.attrs[k + count]
        if line.used > self.column:
            line.used -= count
        self._shiftedRow = self.row
        self._erase(last - count + 1, 79, self.row, self.row)

    def _erase(self, left, right, top, bottom):
        for line in self.rows[top:bottom + 1]:
            for column in range(max(0, left), min(80, right)):
                line.text[column] = " "
            for column in range(max(0, left), min(80, right + 1)):
                line.attrs[column] = DEFAULT
            if left <= right:
                line.used = min(line.used, left)

    # Telnet: returns the number of bytes used, 0 when more is needed

    def _telnet(self, data):
        if len(data) < 2:
            return 0
        command = data[1]
        if command not in (253, 0, 250):
            return min(3, len(data)) if command not in (251, 252, 254) else (3 if len(data) > 2 else 0)
        if len(data) < 3:
            return 0
        if command == 250:
            if data[2] == 24:
                self.replies += b"\xff\xfa\x18\x00QXTERM\xff\xf0"
        else:
            self.replies += bytes([255, 251, 24]) if data[2] == 24 else bytes([255, 252, data[2]])
        return 3

    # Escape sequences: likewise

    def _escape(self, data):
        if len(data) < 2:
            return 0
        final = data[1:2]
        if final == b"[":
            return self._sequence(data)
        if final in b"()":
            return 0 if len(data) < 3 else 3 if data[2:3] in (b"A", b"B", b"0", b"1", b"}") else 2
        if final in b"QR=>":
            return 2
        if final == b"7":
            if self.row != 24:
                self.saved = (self.column, self.row, self.attr)
            return 2
        self._flush()
        if final == b"8":
            self.column, self.row, self.attr = self.saved
        elif final == b"D" and self.row != 24:
            self._lineFeed()
        elif final == b"E":
            self.column = 0
            self._lineFeed()
        elif final == b"M" and self.row != 24:
            if self.row == self.top:
                self._scroll(-1)
            else:
                self.row = max(0, self.row - 1)
        else:
            self.unknown.append(data[:2])
        return 2

    def _sequence(self, data):
        at, private = 2, False
        if data[at:at + 1] == b"?":
            private, at = True, 3
        numbers = []
        while True:
            start = at
            while data[at:at + 1].isdigit():
                at += 1
            if at >= len(data):
                return 0
            if at > start:
                numbers.append(int(data[start:at]))
            if data[at] != ord(";"):
                break
            at += 1
        final = chr(data[at])
        at += 1
        if final == "q":
            return self._programKey(data, at, numbers)
        if final in "hl":
            self._mode(final == "h", private, numbers)
        elif final == "p":
            self._chooseBank(numbers[0] if numbers else 0)
        else:
            self._flush()
            self._command(final, numbers, bytes(data[:at]))
        return at

    def _command(self, final, numbers, sequence):
        first = numbers[0] if numbers else 1
        inRegion = self.top <= self.row <= self.bottom
        if final in "Hf":
            self.row = numbers[0] - 1 if numbers else 0
            self.column = numbers[1] - 1 if len(numbers) > 1 else 0
            self.column = 0 if self.column < 0 else 79 if self.column > 80 else self.column
            low, high = (self.top, self.bottom) if self.origin else (0, 23)
            self.row = min(high, max(low, self.row + (self.top if self.origin else 0)))
        elif final == "r":
            top, bottom = (numbers + [1, 24][len(numbers):])[:2]
            top = top if 1 <= top <= 23 else 1
            bottom = bottom if 1 <= bottom <= 24 else 24
            if top < bottom:
                self.row = self.column = 0
                self.top, self.bottom = top - 1, bottom - 1
        elif final == "J":
            self._eraseDisplay(numbers[0] if numbers else 0)
        elif final == "K":
            left, right = {0: (self.column, 79), 1: (0, self.column), 2: (0, 79)}[numbers[0] if numbers else 0]
            self._erase(left, right, self.row, self.row)
        elif final == "A":
            if self.row != 24:
                self.row = max(self.top, self.row - first)
        elif final == "B":
            if self.row != 24:
                self.row = min(self.bottom, self.row + first)
        elif final == "C":
            self.column = min(79, self.column + first)
        elif final == "D":
            self.column = max(0, self.column - first)
        elif final in "LM":
            if inRegion:
                self.column = 0
                self._moveLines(first, down=final == "L")
        elif final == "m":
            for number in numbers or [0]:
                self._rendition(number)
        elif final == "x":
            self.row = 24
            if len(numbers) > 1:
                self.column = numbers[1] - 1
        elif final == "@":
            self._shiftRight(min(first, 80 - self.column))
        elif final == "P":
            self._deleteCharacters(first)
        elif final == "Z":
            self.column = max(0, (self.column - 1) // 8 * 8 - (first - 1) * 8)
        else:
            self.unknown.append(sequence)

    def _moveLines(self, count, down):
        """Makes room at the cursor's line, or closes it up. Of a count beyond half of the lines, those in the middle stay."""
        part = self.rows[self.row:self.bottom + 1]
        count = min(count, len(part) if down else len(part) - 1)
        moving = len(part) - count
        blank = min(count, moving)
        if down:
            part[count:] = part[:moving]
            part[:blank] = [Line() for _ in range(blank)]
        else:
            part[:moving] = part[count:]
            part[len(part) - blank:] = [Line() for _ in range(blank)]
        self.rows[self.row:self.bottom + 1] = part

    def _eraseDisplay(self, which):
        if which == 0:
            self._erase(self.column, 79, self.row, self.row)
            self._erase(0, 79, self.row + 1, 23)
        elif which == 2:
            self._erase(0, 79, 0, 23)
        else:
            self.unknown.append(b"J 1")

    def _rendition(self, number):
        flags, foreground, background = self.attr
        if number == 0:
            flags, foreground, background = flags & SHIFT_OUT, 7, 0
        elif number in _setFlag:
            flags |= _setFlag[number]
        elif number in _clearFlags:
            flags &= ~_clearFlags[number]
        elif 30 <= number <= 37:
            foreground = number - 30
        elif 40 <= number <= 47:
            background = number - 40
        elif number == 39:
            foreground = 7
        elif number == 49:
            background = 0
        self.attr = (flags, foreground, background)

    def _mode(self, on, private, numbers):
        self._flush()
        if not private:
            if 4 in numbers:
                self.insertMode = on
            return
        for number in numbers:
            if number == 5:
                self.reverseScreen = on
            elif number == 6:
                self.origin, self.column, self.row = on, 0, self.top if on else 0
            elif number == 7:
                self.noWrap = not on
            elif number == 12:
                self.cursorBlinks = on
            elif number == 13:
                self.barShown = not on
            elif number == 25:
                self.cursorHidden = not on

    def _chooseBank(self, number):
        if number == 2:
            self.barShown = False
        elif number in (0, 1):
            self.bank = number
            self._showLabels(number)

    def _showLabels(self, bank):
        self.shownLabels = self.labels[bank][:]
        self.barShown = True

    def _programKey(self, data, at, numbers):
        key, length, bank = (numbers + [0, 0, 0])[:3]
        if not 1 <= key <= 8:
            return at
        end = at + 16 + length
        if len(data) < end:
            return 0
        if bank in (0, 1):
            self.labels[bank][key - 1] = data[at:at + 16].decode("latin-1")
            self._showLabels(bank)
            if length:
                self.strings[bank][key - 1] = data[at + 16:end].decode("latin-1")
        return end
