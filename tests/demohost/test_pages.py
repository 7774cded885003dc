"""Every page: reached, drawn soundly, left again; the live table moves and little is sent for it."""

import re
import unittest

from frames import corners, openEnds
from hosttest import HostTest
from model import BLINK, BOLD, REVERSE, SHIFT_OUT, UNDERLINE


class Pages(HostTest):
    def checkScreen(self, client, skipRows=()):
        model = client.model
        self.assertEqual(model.unknown, [])
        self.assertEqual(model.misdrawnRows, 0)
        self.assertEqual(openEnds(model, skipRows), [], model.page())
        for row in range(25):
            self.assertEqual(model.rowText(row)[79], " ", f"last column of row {row}")
        self.assertEqual((model.top, model.bottom), (0, 23))
        self.assertFalse(model.insertMode or model.origin or model.noWrap)
        self.assertNotEqual(model.row, 24, "the cursor rests on the page")

    def testEachPageByFunctionKeyAndBack(self):
        client = self.signedOn()
        self.checkScreen(client)
        for key, title, boxes in (("f1", "Display guide", 3), ("f2", "Agents and queues", 2),
                                  ("f3", "Call-back request", 1), ("f4", "Call report", 1)):
            client.press(key)
            self.assertIn(title, client.model.rowText(0))
            # Rows 16 to 21 of the guide show single characters, not frames.
            self.checkScreen(client, range(16, 22) if key == "f1" else ())
            if key != "f1":
                self.assertEqual(corners(client.model), dict.fromkeys("lkmj", boxes))
            client.press("escape")
            self.assertIn("Main menu", client.model.rowText(0))
            self.checkScreen(client)
            self.assertEqual(corners(client.model), dict.fromkeys("lkmj", 3))

    def testMenuByDigitsAndByArrows(self):
        client = self.signedOn()
        for digit, title in (("1", "Agents and queues"), ("2", "Call-back request"), ("3", "Call report"),
                             ("4", "Display guide")):
            client.press(digit)
            self.assertIn(title, client.model.rowText(0))
            client.press("f6")
            client.press(*["down"] * (int(digit) - 1), "enter")
            self.assertIn(title, client.model.rowText(0))
            client.press("f6")
        self.assertIn("Main menu", client.model.rowText(0))

    def testMenuBarFollowsTheArrows(self):
        client = self.signedOn()
        barRow = lambda: [row for row in range(3, 14) if client.model.flags(row, 5) & REVERSE]
        self.assertEqual(barRow(), [4])
        client.press("down")
        self.assertEqual(barRow(), [6])
        self.assertIn("Call-back request", client.model.rowText(16))
        client.press("up", "up")
        self.assertEqual(barRow(), [12])

    def testLogOffSaysGoodbyeAndTidiesUp(self):
        client = self.signedOn()
        client.press("f7", "f1", "f2")
        self.assertTrue(client.model.reverseScreen and client.model.cursorBlinks)
        client.press("f7", "5")
        self.assertTrue(client.waitForEnd())
        self.assertIn("You have logged off.", client.model.page())
        self.checkScreen(client)
        model = client.model
        self.assertFalse(model.reverseScreen or model.cursorBlinks or model.barShown)
        self.assertEqual(model.bank, 0)
        for bank in (0, 1):
            self.assertEqual(model.strings[bank], ["\x1bO" + letter for letter in "cdefghij"])
            self.assertEqual(model.labels[bank][4], "   F5" + " " * 11)

    def testTitleAndStatusRowSpanTheWidth(self):
        client = self.signedOn()
        model = client.model
        self.assertTrue(all(model.rows[0].attrs[column][1:] == (0, 6) for column in range(80)))
        self.assertIn("Welcome, Anna.", model.rowText(24))
        self.assertTrue(all(model.rows[24].attrs[column][2] == 2 for column in range(80)))
        client.press("down")
        self.assertTrue(all(model.rows[24].attrs[column][1:] == (7, 4) for column in range(80)))

    def testAgentsColumnsAlign(self):
        client = self.signedOn()
        client.press("f2")
        rows = [client.model.rowText(row) for row in range(13, 22)]
        for row in rows:
            self.assertRegex(row[3:76], r"^[A-Z][a-z]+ [A-Z][a-z]+ +41\d\d   (Ready|Talking|Wrap-up|Break) +\d+:\d\d   "
                                        r"(Sales|Service|Billing|Support) +\d+ +\d+:\d\d$")
            self.assertEqual(row[75:78].strip()[1:], "")
        # Right-aligned columns end under their headings: Ext at 24, Since at 43, Calls at 63, Avg talk at 75.
        heading = client.model.rowText(11)
        for word, last in (("Ext", 24), ("Since", 43), ("Calls", 63), ("Avg talk", 75)):
            self.assertEqual(heading.index(word) + len(word) - 1, last)
            self.assertTrue(all(row[last].isdigit() and row[last + 1] == " " for row in rows), word)
        for row in range(5, 9):
            self.assertRegex(client.model.rowText(row)[3:76], r"^\w+ +\d+ +\d+:\d\d +\d+ +\d+ .* \d+%$")

    def testSortingAndBreaks(self):
        client = self.signedOn()
        client.press("f2")
        names = lambda: [client.model.rowText(row)[3:20].strip() for row in range(13, 22)]
        self.assertEqual(names(), sorted(names()))
        client.press("s", "s")
        calls = [int(client.model.rowText(row)[57:64]) for row in range(13, 22)]
        self.assertEqual(calls, sorted(calls, reverse=True))
        self.assertIn("sorted by calls", client.model.rowText(24))
        client.press("s", "s")
        self.assertIn("sorted by name", client.model.rowText(24))
        state = lambda offset: client.model.rowText(13 + offset)[28:36].strip()
        ready = [offset for offset in range(9) if state(offset) == "Ready"]
        busy = [offset for offset in range(9) if state(offset) in ("Talking", "Wrap-up")]
        self.assertTrue(ready and busy)
        client.press(*["down"] * ready[0], "enter")
        self.assertEqual(state(ready[0]), "Break")
        client.press("enter")
        self.assertEqual(state(ready[0]), "Ready")
        client.press(*["up"] * 9, *["down"] * busy[0], "enter")
        self.assertIn("is busy with a call", client.model.rowText(24))

    def testRefreshSendsOnlyWhatChanged(self):
        client = self.signedOn()
        client.press("f2", "r")
        before = client.model.page()
        client.received.clear()
        printed = client.model.printed
        client.press("r")
        self.assertNotEqual(client.model.page(), before)
        self.assertLess(client.model.printed - printed, 400)
        self.assertLess(len(client.received), 1200)
        client.received.clear()
        client.press("p")
        client.press("p")
        self.assertNotIn(b"\x1b[2J", client.received)

    def testFixedClockShowsTheSameScreensToEverybody(self):
        pages = []
        for _ in range(2):
            client = self.signedOn()
            shown = [client.model.page()]
            for key in ("f1", "f2", "r", "f4"):
                client.press(key)
                shown.append(client.model.page())
            pages.append(shown)
        self.assertEqual(pages[0], pages[1])
        self.assertIn("09:30:00", pages[0][0])

    def testGuideShowsEveryAttributeColourAndLine(self):
        client = self.signedOn()
        client.press("f1")
        model = client.model
        sample = lambda row: (model.flags(row, 18), model.rowText(row)[18:32])
        for row, flags in ((4, 0), (5, BOLD), (6, UNDERLINE), (7, BLINK), (8, REVERSE),
                           (10, BOLD | UNDERLINE | BLINK | REVERSE)):
            self.assertEqual(sample(row), (flags, "Call on line 1"))
        # The terminal stores invisible text as blanks.
        self.assertEqual(sample(9), (32, " " * 14))
        for colour in range(8):
            row = model.rows[4 + colour]
            self.assertEqual(row.attrs[55][1], colour)
            self.assertEqual(row.attrs[63][:2], (BOLD, colour))
            self.assertEqual(row.attrs[71][2], colour)
        shownLines = "".join(model.rowText(16)[column] for column in range(80) if model.flags(16, column) & SHIFT_OUT)
        self.assertEqual(shownLines, "x" + "jklmnopqrstuvwx" + "x")
        client.press("r")
        self.assertTrue(model.reverseScreen)
        client.press("r")
        self.assertFalse(model.reverseScreen)


class LiveTable(HostTest):
    options = ()

    def testFiguresMoveByThemselvesAndCanBePaused(self):
        client = self.signedOn()
        client.press("f2")
        self.assertIsNone(re.search("paused", client.model.rowText(24)))
        body = lambda: "\n".join(client.model.rowText(row) for row in range(3, 22))
        before = body()
        client.waitUntil(lambda: body() != before, "a change in the live table")
        self.assertNotIn(b"\x1b[2J", client.received[-600:])
        client.press("p")
        self.assertIn("paused", client.model.rowText(24))
        before, clock = body(), client.model.rowText(0)[70:78]
        client.waitUntil(lambda: client.model.rowText(0)[70:78] != clock, "the clock's next second")
        client.synchronise()
        self.assertEqual(body(), before)


if __name__ == "__main__":
    unittest.main()
