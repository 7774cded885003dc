"""The sign-on: a banner, a name and a password, neither of which is checked."""

from zentora.pages.page import Page
from zentora.style import FIELD, FRAME, LABEL, NORMAL, STRONG, Style

_letters = {
    "Z": ("####", "   #", " ## ", "#   ", "####"),
    "E": ("####", "#   ", "### ", "#   ", "####"),
    "N": ("#  #", "## #", "# ##", "#  #", "#  #"),
    "T": ("####", " ## ", " ## ", " ## ", " ## "),
    "O": (" ## ", "#  #", "#  #", "#  #", " ## "),
    "R": ("### ", "#  #", "### ", "# # ", "#  #"),
    "A": (" ## ", "#  #", "####", "#  #", "#  #"),
}
_word = "ZENTORA"
_bannerTop, _bannerLeft = 4, 6
_pixel = "  "
_boxTop, _boxLeft, _boxRight = 12, 20, 59
_nameRow, _passwordRow = _boxTop + 2, _boxTop + 4
_fieldColumn, _fieldWidth = 34, 22


class SignOnPage(Page):
    title = "Sign-on"

    def __init__(self, session):
        super().__init__(session)
        self._name = ""
        self._passwordLength = 0
        self._nameDone = False

    def onKey(self, key):
        if key == "enter":
            self._enter()
        elif key in ("backspace", "delete"):
            if self._nameDone:
                self._passwordLength = max(0, self._passwordLength - 1)
            else:
                self._name = self._name[:-1]
        elif key in ("ctrl-u", "escape"):
            self._name, self._passwordLength, self._nameDone = "", 0, False
        elif len(key) == 1:
            self._type(key)

    def _type(self, character):
        if self._nameDone:
            self._passwordLength += 1
        elif len(self._name) < _fieldWidth - 1:
            self._name += character
        else:
            self.session.complain("A name has 21 characters at most.")

    def _enter(self):
        if self._nameDone:
            self.session.signOn(self._name)
            return
        self._name = self._name.strip()
        if self._name:
            self._nameDone = True
        else:
            self.session.complain("Please type a name; any will do.")

    def draw(self, screen):
        self._drawBanner(screen)
        screen.put(10, 21, "Call centre suite  -  demonstration host", STRONG)
        screen.box(_boxTop, _boxLeft, _boxTop + 6, _boxRight, FRAME, "Sign on", STRONG)
        screen.put(_nameRow, _boxLeft + 3, "Login:", LABEL)
        screen.fill(_nameRow, _fieldColumn, _fieldWidth, FIELD)
        screen.put(_nameRow, _fieldColumn, self._name, FIELD)
        if self._nameDone:
            screen.put(_passwordRow, _boxLeft + 3, "Password:", LABEL)
            screen.fill(_passwordRow, _fieldColumn, _fieldWidth, FIELD)
            # The password is neither shown nor kept, not even its length.
            screen.showCursor(_passwordRow, _fieldColumn)
        else:
            screen.showCursor(_nameRow, _fieldColumn + len(self._name))
        screen.put(20, 20, "Any name and any secret word are accepted.", NORMAL)

    def _drawBanner(self, screen):
        on = Style(reverse=True, foreground=FRAME.foreground)
        for line in range(5):
            column = _bannerLeft
            for letter in _word:
                for mark in _letters[letter][line]:
                    if mark == "#":
                        screen.put(_bannerTop + line, column, _pixel, on)
                    column += len(_pixel)
                column += 2

    def hints(self):
        return [("Enter", "Go on"), ("Backspace", "Correct"), ("Esc", "Start again")]

    def statusText(self):
        return "Demonstration on this machine only"
