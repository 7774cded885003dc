"""The call-back request: a form with fields to edit and to check."""

import re

from zentora.callcentre import QUEUE_NAMES
from zentora.chrome import LEFT, RIGHT
from zentora.field import Field
from zentora.pages.page import Page
from zentora.style import FRAME, GOOD, LABEL, NORMAL, SELECTED, STRONG

_labelColumn, _fieldColumn, _hintColumn = 5, 18, 40
_buttonRow = 18
_firstNumber = 1001


def _checkName(text):
    return "" if text.strip() else "A customer's name is needed."


def _checkAccount(text):
    return "" if re.fullmatch(r"[0-9]{8}", text) else "An account number has eight digits."


def _checkTelephone(text):
    isPlausible = re.fullmatch(r"\+?[0-9 ]*", text) and sum(c.isdigit() for c in text) >= 6
    return "" if isPlausible else "A telephone number has six digits or more, with blanks or a leading +."


def _checkTime(text):
    return "" if re.fullmatch(r"([01][0-9]|2[0-3]):[0-5][0-9]", text) else "A time runs from 00:00 to 23:59."


def _checkQueue(text):
    names = [name.lower() for name in QUEUE_NAMES]
    return "" if text.strip().lower() in names else "The queue is one of " + ", ".join(QUEUE_NAMES) + "."


def _checkPriority(text):
    return "" if re.fullmatch(r"[1-5]", text) else "The priority is a digit from 1 to 5."


def _checkNote(_text):
    return ""


def _makeFields():
    table = (
        ("Customer", 32, "", _checkName), ("Account", 8, "eight digits", _checkAccount),
        ("Telephone", 18, "", _checkTelephone), ("Call at", 5, "hours and minutes, as 14:30", _checkTime),
        ("Queue", 8, ", ".join(QUEUE_NAMES), _checkQueue), ("Priority", 1, "1 at once ... 5 any time", _checkPriority),
        ("Note", 48, "", _checkNote),
    )
    return [Field(label, 4 + 2 * index, _fieldColumn, width, hint, check)
            for index, (label, width, hint, check) in enumerate(table)]


class CallbackPage(Page):
    title = "Call-back request"

    def __init__(self, session):
        super().__init__(session)
        self._fields = _makeFields()
        self._buttons = (("Save", 18, self._save), ("Cancel", 30, self._cancel))
        self._focus = 0
        self._isInserting = True

    @property
    def _stops(self):
        return len(self._fields) + len(self._buttons)

    def onKey(self, key):
        if key == "escape":
            self._cancel()
        elif key in ("tab", "down"):
            self._focus = (self._focus + 1) % self._stops
        elif key == "up":
            self._focus = (self._focus - 1) % self._stops
        elif key == "ctrl-s":
            self._save()
        elif key == "ctrl-t":
            self._isInserting = not self._isInserting
        elif self._focus < len(self._fields):
            self._editKey(self._fields[self._focus], key)
        else:
            self._buttonKey(key)

    def _editKey(self, field, key):
        screen = self.session.screen
        if key == "enter":
            self._focus += 1
        elif key in ("left", "right"):
            field.move(-1 if key == "left" else 1)
        elif key == "backspace":
            if not field.backspace(screen):
                self.session.complain("The field begins here.")
        elif key == "delete":
            if not field.delete(screen):
                self.session.complain("There is nothing to delete here.")
        elif key == "ctrl-u":
            field.clear()
        elif len(key) == 1 and not field.type(screen, key, self._isInserting):
            self.session.complain("The field is full.")

    def _buttonKey(self, key):
        index = self._focus - len(self._fields)
        if key in ("enter", " "):
            self._buttons[index][2]()
        elif key in ("left", "right"):
            self._focus = len(self._fields) + (0 if key == "left" else 1)

    def _save(self):
        for index, field in enumerate(self._fields):
            wrong = field.check(field.text)
            if wrong:
                self._focus = index
                field.place = len(field.text)
                self.session.complain(wrong)
                return
        saved = self.session.savedRequests
        saved.append({field.label: field.text.strip() for field in self._fields})
        self.session.go("menu")
        self.session.inform(f"Request {_firstNumber + len(saved) - 1} for {saved[-1]['Customer']} is saved.")

    def _cancel(self):
        wasTouched = any(field.text for field in self._fields)
        self.session.go("menu")
        if wasTouched:
            self.session.inform("The request was not saved.")

    def draw(self, screen):
        screen.box(2, LEFT, 20, RIGHT, FRAME, "Whom shall we call back?", STRONG)
        for index, field in enumerate(self._fields):
            screen.put(field.row, _labelColumn, field.label, LABEL)
            field.draw(screen, index == self._focus)
            screen.put(field.row, _hintColumn, field.hint, NORMAL)
        for index, (name, column, _) in enumerate(self._buttons):
            isActive = self._focus == len(self._fields) + index
            screen.put(_buttonRow, column, f"[ {name} ]", SELECTED if isActive else STRONG)
        self._drawLastSaved(screen)
        if self._focus < len(self._fields):
            screen.showCursor(*self._fields[self._focus].cursor())

    def _drawLastSaved(self, screen):
        saved = self.session.savedRequests
        if saved:
            entry = saved[-1]
            text = f"Saved before: {entry['Customer']} at {entry['Call at']}, {entry['Queue']}"
            screen.put(21, LEFT + 2, text[:74], GOOD)

    def hints(self):
        return [("Tab", "Next"), ("Up/Down", "Field"), ("^T", "Insert/overtype"), ("^S", "Save"), ("Esc", "Cancel")]

    def statusText(self):
        return "Insert" if self._isInserting else "Overtype"
