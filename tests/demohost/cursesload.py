"""A curses program that changes the screen at random: "n" makes a few changes, "L" draws all anew, "q" ends. It rings the
bell each time it has drawn.

Run on a pseudo-terminal by test_terminfo.py; its argument is the seed.
"""

import curses
import os
import random
import sys


def change(window, chance):
    row, column, kind = chance.randrange(24), chance.randrange(80), chance.randrange(10)
    attribute = chance.choice([0, curses.A_REVERSE, curses.color_pair(1), curses.A_UNDERLINE, curses.A_ALTCHARSET,
                               curses.A_BOLD | curses.color_pair(2)])
    window.move(row, column)
    if kind == 0:
        window.insertln()
    elif kind == 1:
        window.deleteln()
    elif kind == 2:
        window.insstr("ins" * chance.randint(1, 4), attribute)
    elif kind == 3:
        for _ in range(chance.randint(1, 6)):
            window.delch(row, column)
    elif kind == 4:
        window.scroll(chance.randint(-3, 3))
    elif kind == 5:
        window.insdelln(chance.randint(-6, 6))
    elif kind == 6:
        window.clrtoeol()
    elif kind == 7:
        window.addch(row, 79, "#")
    elif kind == 8:
        window.setscrreg(row // 2, 23 - chance.randrange(4))
        window.scroll(chance.randint(-5, 5))
        window.setscrreg(0, 23)
    else:
        window.addstr("qxlk text" * chance.randint(1, 5), attribute)


def main(window):
    curses.init_pair(1, curses.COLOR_RED, curses.COLOR_BLUE)
    curses.init_pair(2, curses.COLOR_GREEN, curses.COLOR_BLACK)
    window.idlok(True)
    window.idcok(True)
    window.scrollok(True)
    chance = random.Random(int(sys.argv[1]))
    for row in range(24):
        window.addstr(row, 0, (f"line {row} " * 20)[:chance.randint(5, 79)])
    while True:
        window.refresh()
        os.write(1, b"\a")
        key = window.getch()
        if key == ord("q"):
            return
        if key == ord("L"):
            window.redrawwin()
            continue
        for _ in range(chance.randint(1, 4)):
            try:
                change(window, chance)
            except curses.error:
                pass


curses.wrapper(main)
