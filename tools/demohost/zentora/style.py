"""Colours and attributes, and the few styles that all pages share."""

from typing import NamedTuple

BLACK, RED, GREEN, YELLOW, BLUE, MAGENTA, CYAN, WHITE = range(8)
COLOUR_NAMES = ("black", "red", "green", "yellow", "blue", "magenta", "cyan", "white")


class Style(NamedTuple):
    foreground: int = WHITE
    background: int = BLACK
    bold: bool = False
    underline: bool = False
    blink: bool = False
    reverse: bool = False
    invisible: bool = False

    def sgr(self):
        """The sequence that sets exactly this style, whatever was set before."""
        # 22, 24 ... are not used to take single attributes away: 22 would clear all of them on this terminal.
        parameters = ["0"]
        for isOn, number in ((self.bold, "1"), (self.underline, "4"), (self.blink, "5"), (self.reverse, "7"),
                             (self.invisible, "8")):
            if isOn:
                parameters.append(number)
        if self.foreground != WHITE:
            parameters.append(str(30 + self.foreground))
        if self.background != BLACK:
            parameters.append(str(40 + self.background))
        return "\x1b[" + ";".join(parameters) + "m"


NORMAL = Style()
FRAME = Style(CYAN)
HEADING = Style(YELLOW)
STRONG = Style(bold=True)
LABEL = Style(CYAN)
GOOD = Style(GREEN)
WARN = Style(YELLOW, bold=True)
ALERT = Style(RED, bold=True)
TITLE_BAR = Style(BLACK, CYAN)
TITLE_BAR_STRONG = Style(BLACK, CYAN, bold=True)
SELECTED = Style(reverse=True)
FIELD = Style(underline=True)
STATUS_PLAIN = Style(WHITE, BLUE)
STATUS_GOOD = Style(BLACK, GREEN)
STATUS_ERROR = Style(WHITE, RED, bold=True)


def levelStyle(perCent):
    """For a service level: good from 80 per cent, alarming below 70."""
    return GOOD if perCent >= 80 else WARN if perCent >= 70 else ALERT
