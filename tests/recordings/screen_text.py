"""Screens as text to be read: each row that shows anything, and below it what is not white on black.

    == 17, byte 20481, behind "Enter", cursor in row 2, column 12
     0|File  Edit
      : 0-3 black on cyan; 6-9 bold red

Rows and columns count from 0, row 24 is the status row. Line drawing stands there as lines. Every tenth screen is whole; of the
others, rows that are as they were on the screen before are left out.
"""

from described import BLACK, COLOURS, WHITE

WHOLE = 10


def screensText(screens):
    """screens: (screen, bytes before it, key that was pressed last); may be the same screen, as it goes on."""
    lines, before = [], []
    for number, (screen, place, key) in enumerate(screens, 1):
        where = "nowhere" if screen.anywhere else f"in row {screen.row}, column {screen.column}"
        where += " behind its character" if screen.wrapWaits else ""
        where += "" if screen.cursorSeen else ", hidden"
        lines.append(f'== {number}, byte {place}, behind "{key}", cursor {where}')
        whole = number % WHOLE == 1
        rows = [rowText(row, cells) for row, cells in enumerate(screen.rows)]
        blank = [rowText(row, []) for row in range(len(rows))]
        for row, text in enumerate(rows):
            if text != (blank if whole else before)[row]:
                lines += text
        lines.append("")
        before = rows
    return "\n".join(lines)


def rowText(row, cells):
    seen = [cell.seen() for cell in cells]
    looks = "; ".join(runText(*run) for run in runs(seen))
    return [f"{row:2}|{''.join(cell[0] for cell in seen).rstrip()}"] + [f"  : {looks}"] * bool(looks)


def runs(seen):
    """(first, last, text colour or None, background, bold, underlined) of cells that are not plain, blanks between included."""
    found = []
    for column, (_, text, back, bold, underlined) in enumerate(seen):
        if found:
            first, last, runText_, runBack, runBold, runUnderlined = found[-1]
            same = (back, underlined) == (runBack, runUnderlined)
            if same and (text is None or (text, bold) == (runText_, runBold)):
                found[-1] = (first, column if shows(seen[column]) else last, runText_, runBack, runBold, runUnderlined)
                continue
            if same and runText_ is None:
                found[-1] = (first, column, text, back, bold, underlined)
                continue
        if shows(seen[column]) or text is not None:
            found.append((column, column, text, back, bold, underlined))
    return [run for run in found if run[2:] != (WHITE, BLACK, False, False)]


def shows(cell):
    """False for a blank that is only the screen's background."""
    character, _, back, _, underlined = cell
    return character != " " or back != BLACK or underlined


def lookText(text, back, bold, underlined):
    words = ["bold"] * bold + ["underlined"] * underlined
    if text not in (None, WHITE) or back != BLACK and text is not None:
        words.append(COLOURS[text])
    if back != BLACK:
        words.append(f"on {COLOURS[back]}")
    return " ".join(words) or "white"


def runText(first, last, *look):
    return f"{first if first == last else f'{first}-{last}'} {lookText(*look)}"
