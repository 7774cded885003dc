"""The display guide: every attribute, every colour, every line-drawing character."""

from zentora.chrome import LEFT, RIGHT
from zentora.pages.page import Page
from zentora.style import BLACK, COLOUR_NAMES, FRAME, HEADING, LABEL, NORMAL, STRONG, WHITE, YELLOW, Style

_attributes = (
    ("Normal", NORMAL), ("Bold", STRONG), ("Underline", Style(underline=True)), ("Blink", Style(blink=True)),
    ("Reverse", Style(reverse=True)), ("Invisible", Style(invisible=True)),
    ("All visible", Style(YELLOW, bold=True, underline=True, blink=True, reverse=True)),
)
_drawingLetters = "jklmnopqrstuvwx"
_middle = 40
_drawTop = 14


class GuidePage(Page):
    title = "Display guide"

    def onKey(self, key):
        if key in ("r", "R"):
            self.session.reverseScreen()
        elif key in ("escape", "enter", "q", "Q"):
            self.session.go("menu")

    def draw(self, screen):
        screen.box(2, LEFT, 12, _middle - 2, FRAME, "Attributes", STRONG)
        for offset, (name, style) in enumerate(_attributes):
            screen.put(4 + offset, LEFT + 3, name, LABEL)
            screen.put(4 + offset, LEFT + 16, "[", NORMAL)
            screen.put(4 + offset, LEFT + 17, "Call on line 1", style)
            screen.put(4 + offset, LEFT + 31, "]", NORMAL)
        self._drawColours(screen)
        self._drawLineSet(screen)

    def _drawColours(self, screen):
        left = _middle + 1
        screen.box(2, left, 12, RIGHT, FRAME, "Colours", STRONG)
        screen.put(3, left + 13, " Text    Bold    Ground", HEADING)
        for colour, name in enumerate(COLOUR_NAMES):
            row = 4 + colour
            # Black text needs a light ground to be seen at all.
            ground = WHITE if colour == BLACK else BLACK
            screen.put(row, left + 3, name.capitalize(), LABEL)
            screen.put(row, left + 13, " Abc ", Style(colour, ground))
            screen.put(row, left + 21, " Abc ", Style(colour, ground, bold=True))
            screen.put(row, left + 29, " Abc ", Style(WHITE if colour in (0, 1, 4, 5) else BLACK, colour))

    def _drawLineSet(self, screen):
        screen.box(_drawTop, LEFT, _drawTop + 8, RIGHT, FRAME, "Line drawing", STRONG)
        for index, letter in enumerate(_drawingLetters):
            screen.put(_drawTop + 1, LEFT + 3 + 5 * index, letter, LABEL)
            screen.lines(_drawTop + 2, LEFT + 3 + 5 * index, letter, NORMAL)
        for offset, text in enumerate(("lqqqqqwqqqqqk", "x     x     x", "tqqqqqnqqqqqu", "mqqqqqvqqqqqj")):
            for index, letter in enumerate(text):
                if letter != " ":
                    screen.lines(_drawTop + 4 + offset, LEFT + 3 + index, letter, HEADING)
        screen.put(_drawTop + 4, 24, "Corners, tees and a cross, joined to a table.", NORMAL)
        screen.put(_drawTop + 6, 24, "Five heights of line:", NORMAL)
        screen.lines(_drawTop + 6, 47, "".join(letter * 4 for letter in "opqrs"), HEADING)

    def hints(self):
        return [("R", "Reverse screen"), ("F7", "Tools keys"), ("Esc", "Menu")]

    def statusText(self):
        return "What the terminal can show"
