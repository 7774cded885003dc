"""A field of a form: its text, the place of the cursor in it, and how editing it looks on the terminal."""

from zentora.style import FIELD, SELECTED


class Field:
    def __init__(self, label, row, column, width, hint, check):
        """check(text) returns what is wrong with the text, or an empty string."""
        self.label = label
        self.row, self.column, self.width = row, column, width
        self.hint = hint
        self.check = check
        self.text = ""
        self.place = 0

    def draw(self, screen, isActive):
        style = self._style(isActive)
        screen.fill(self.row, self.column, self.width, style)
        screen.put(self.row, self.column, self.text, style)

    @staticmethod
    def _style(isActive):
        return SELECTED if isActive else FIELD

    def cursor(self):
        """Row and column; behind the last character of a full field the cursor stays on that character."""
        return self.row, self.column + min(self.place, self.width - 1)

    def move(self, step):
        self.place = min(len(self.text), max(0, self.place + step))

    def type(self, screen, character, isInserting):
        """Takes one character; False when the field is full.

        Inside the text the terminal itself shifts the cells: the field's last cell goes first, so that what stands
        behind the field keeps its place.
        """
        if not isInserting and self.place < len(self.text):
            self.text = self.text[:self.place] + character + self.text[self.place + 1:]
        elif len(self.text) >= self.width:
            return False
        else:
            if self.place < len(self.text):
                screen.deleteCharacter(self.row, self.column + self.width - 1)
                screen.insertText(self.row, self.column + self.place, character, self._style(True))
            self.text = self.text[:self.place] + character + self.text[self.place:]
        self.place += 1
        return True

    def delete(self, screen):
        """Takes away the character under the cursor; False when there is none."""
        if self.place >= len(self.text):
            return False
        screen.deleteCharacter(self.row, self.column + self.place)
        screen.insertCharacter(self.row, self.column + self.width - 1)
        self.text = self.text[:self.place] + self.text[self.place + 1:]
        return True

    def backspace(self, screen):
        if self.place == 0:
            return False
        self.place -= 1
        return self.delete(screen)

    def clear(self):
        self.text, self.place = "", 0
