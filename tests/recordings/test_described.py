"""The interpreter of the description does what terminfo(5) says, and tells what nothing explains."""

import unittest
from pathlib import Path

from described import BOLD, COLUMNS, RAW, REVERSE, ROWS, Description, Look, Screen, Unexplained, expanded
from screen_text import screensText

SOURCE = Path(__file__).resolve().parents[2] / "packaging" / "terminfo" / "qxterm.ti"


class Expanding(unittest.TestCase):
    def testParameters(self):
        self.assertEqual(expanded("\x1b[%i%p1%d;%p2%dH", 4, 9), "\x1b[5;10H")
        self.assertEqual(expanded("%p1%'0'%+%c%%", 5), "5%")
        self.assertEqual(expanded("%p1%l%d,%p1%:-5.3s|", "abcdef"), "6,abc  |")

    def testConditions(self):
        text = "%?%p1%t1%?%p2%ta%eb%;%e%p2%t2%e0%;."
        self.assertEqual([expanded(text, *values) for values in ((1, 1), (1, 0), (0, 1), (0, 0))],
                         ["1a.", "1b.", "2.", "0."])


class Playing(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.description = Description(SOURCE)

    def shown(self, output, beyond=()):
        screen = Screen(self.description, beyond)
        screen.play(output)
        return screen

    def rows(self, output):
        return ["".join(cell.character for cell in row).rstrip() for row in self.shown(output).rows]

    def refused(self, output, beyond=()):
        with self.assertRaises(Unexplained) as caught:
            self.shown(output, beyond)
        return str(caught.exception)

    def testTextWrapsBehindTheLastColumn(self):
        screen = self.shown("\x1b[3;80Hx")
        self.assertEqual((screen.row, screen.column, screen.wrapWaits), (2, COLUMNS - 1, True))
        self.assertEqual(self.rows("\x1b[3;80Hxy")[2:4], [" " * 79 + "x", "y"])
        self.assertEqual(self.rows("\x1b[3;80Hx\x1b[K")[2], " " * 79 + "x")
        self.assertEqual(self.rows("\x1b[3;80H\x1b[?7lxy\x1b[?7h\x1b[0C")[2:4], [" " * 79 + "y", ""])

    def testTheRegionScrollsAlone(self):
        page = "".join(f"\x1b[{row};1H{row}" for row in range(1, ROWS + 1))
        self.assertEqual(self.rows(page + "\x1b[3;5r\x1b[5;1H\n")[1:6], ["2", "4", "5", "", "6"])
        self.assertEqual(self.rows(page + "\x1b[3;5r\x1b[3;1H\x1bM")[1:6], ["2", "", "3", "4", "6"])
        self.assertEqual(self.rows(page + "\x1b[3;5r\x1b[4;1H\x1b[L\x1b[K")[1:6], ["2", "3", "", "4", "6"])
        self.assertEqual(self.rows(page + "\x1b[3;5r\x1b[4;1H\x1b[M")[1:6], ["2", "3", "5", "", "6"])

    def testWithinALine(self):
        self.assertEqual(self.rows("abcdef\r\x1b[C\x1b[2P\x1b[0D")[0], "adef")
        self.assertEqual(self.rows("abcdef\r\x1b[C\x1b[2@\x1b[0D")[0], "a  bcdef")
        self.assertEqual(self.rows("abc\r\x1b[4h12\x1b[4l3")[0], "123bc")

    def testAttributes(self):
        screen = self.shown("\x1b[0;1;7m\x0e\x1b[31mq\x1b[m\x0fq")
        self.assertEqual([screen.rows[0][at].character for at in (0, 1)], ["─", "q"])
        self.assertEqual(screen.rows[0][0].look, Look(BOLD | REVERSE, 1, 0))
        self.assertEqual(screen.rows[0][0].seen(), ("─", 0, 1, True, False))
        self.assertEqual(screen.rows[0][1].look, Look())

    def testTheStatusRowAndBack(self):
        screen = self.shown("ab\x1b7\x1b[1;3xup\x1b8c")
        self.assertEqual([screen.rows[ROWS][at].character for at in (2, 3)], ["u", "p"])
        self.assertEqual((screen.rows[0][2].character, screen.row, screen.column), ("c", 0, 3))

    def testWhatNothingExplains(self):
        self.assertIn("byte 2: no capability", self.refused("ab\x1b[2X"))
        self.assertIn("no capability", self.refused("\x1b[1;31m"))
        self.assertIn("SGR 22", self.refused("\x1b[22m", RAW))
        self.assertIn("no capability", self.refused("\x85"))
        self.assertIn("csr", self.refused("\x1b[3;5rx"))
        self.assertIn("out of the screen", self.refused("\x1b[2D"))
        self.assertIn("behind the last column", self.refused("\x1b[1;80Hx\x1b[P\x1b[0D"))

    def testACapabilityIsNotCut(self):
        screen = Screen(self.description)
        with self.assertRaises(Unexplained):
            screen.play("\x1b[5;5H", 0, 4)

    def testScreensAsText(self):
        screen = self.shown("\x1b[0;1m\x0f\x1b[34mfo ld\x1b[m\x0f er\x1b[2;3H\x1b[44m \x1b[m\x0f")
        self.assertEqual(screensText([(screen, 9, "Enter")]),
                         '== 1, byte 9, behind "Enter", cursor in row 1, column 3\n'
                         " 0|fo ld er\n  : 0-4 bold blue\n 1|\n  : 2 on blue\n")


if __name__ == "__main__":
    unittest.main()
