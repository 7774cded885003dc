"""What every page has around it: the title bar, the line of key hints, and the status row."""

from zentora.screen import COLUMNS, STATUS_ROW
from zentora.style import HEADING, NORMAL, TITLE_BAR, TITLE_BAR_STRONG

HINT_ROW = 23
# The frames of all pages stand between these columns; the last column stays blank.
LEFT, RIGHT = 1, 78


def drawTitle(screen, title, moment):
    screen.fill(0, 0, COLUMNS, TITLE_BAR)
    screen.put(0, 2, "ZENTORA", TITLE_BAR_STRONG)
    screen.put(0, (COLUMNS - len(title)) // 2, title, TITLE_BAR)
    screen.put(0, 70, moment.strftime("%H:%M:%S"), TITLE_BAR)


def drawHints(screen, hints):
    """hints: pairs of a key's name and what it does."""
    column = LEFT + 1
    for key, meaning in hints:
        screen.put(HINT_ROW, column, key, HEADING)
        screen.put(HINT_ROW, column + len(key) + 1, meaning, NORMAL)
        column += len(key) + len(meaning) + 4


def drawStatus(screen, left, right, style):
    screen.fill(STATUS_ROW, 0, COLUMNS, style)
    screen.put(STATUS_ROW, 2, left[:COLUMNS - len(right) - 6], style)
    screen.put(STATUS_ROW, COLUMNS - 2 - len(right), right, style)
