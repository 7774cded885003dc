"""The report scrolls by the terminal's own means, and what it shows is always the right piece of the report."""

import re
import unittest

from frames import openEnds
from hosttest import HostTest

TOP, BOTTOM = 5, 21
ROWS = BOTTOM - TOP + 1


class Report(HostTest):
    def openReport(self):
        client = self.signedOn()
        client.press("f4")
        return client

    def body(self, client):
        return [client.model.rowText(row)[3:77].rstrip() for row in range(TOP, BOTTOM + 1)]

    def place(self, client):
        first, last, total = map(int, re.search(r"(\d+) to (\d+) of (\d+)", client.model.rowText(22)).groups())
        self.assertEqual(last - first, ROWS - 1)
        return first, total

    def wholeReport(self, client):
        """Collects the report page by page from its beginning."""
        lines = self.body(client)
        while True:
            first, total = self.place(client)
            if first + ROWS - 1 == total:
                return lines
            client.press(" ")
            newFirst, _ = self.place(client)
            lines += self.body(client)[ROWS - (newFirst - first):]

    def testPagingShowsEveryLineOnce(self):
        client = self.openReport()
        lines = self.wholeReport(client)
        self.assertEqual(len(lines), self.place(client)[1])
        self.assertGreater(len(lines), 300)
        calls = [line for line in lines if re.match(r"\d\d:\d\d:\d\d ", line)]
        self.assertEqual(len(calls), 360)
        self.assertEqual(calls, sorted(calls, key=lambda line: line[:8]))
        total = next(line for line in lines if line.startswith("All queues"))
        lost = sum(line.endswith("Lost") for line in calls)
        self.assertRegex(total, rf"^All queues +360 calls +{360 - lost} answered +{lost} lost ")
        self.assertEqual(lines[-1], "End of report")

    def testEveryWayOfMovingShowsTheSameReport(self):
        client = self.openReport()
        lines = self.wholeReport(client)
        client.press("g")
        self.assertEqual(self.place(client)[0], 1)
        for key in ("down", "down", "d", "down", " ", "u", "up", "b", "d", "d", "d", "up", "G", "up", "b", "u", "g", "enter"):
            client.press(key)
            first, _ = self.place(client)
            self.assertEqual(self.body(client), lines[first - 1:first - 1 + ROWS], f"after {key!r}")
            self.assertEqual(openEnds(client.model), [])
            self.assertEqual(client.model.unknown, [])

    def testKeysUseTheTerminalsScrolling(self):
        client = self.openReport()
        for key, sequence in (("down", b"\x1b[6;22r\x1b[22;1H\n\x1b[r"), ("up", b"\x1b[6;22r\x1b[6;1H\x1bM\x1b[r"),
                              ("d", b"\x1b[8M"), ("u", b"\x1b[8L"), (" ", b"\n" * 16), ("b", b"\x1bM" * 16)):
            client.received.clear()
            client.press(key)
            self.assertIn(sequence, client.received, key)
        client.received.clear()
        printed = client.model.printed
        client.press("down")
        # One line of the report, the place in the frame, and the per cent: never the whole page.
        self.assertLess(client.model.printed - printed, 130)

    def testEndsOfTheReportAreTold(self):
        client = self.openReport()
        client.press("up")
        self.assertIn("The report begins here.", client.model.rowText(24))
        client.press("G", "down")
        self.assertIn("The report ends here.", client.model.rowText(24))
        client.press("q")
        self.assertIn("Main menu", client.model.rowText(0))

    def testManyKeysInOneBlock(self):
        client = self.openReport()
        lines = self.wholeReport(client)
        client.press("g")
        client.send(b"\x1b[B" * 5 + b"  dd\x1b[Aub" + b"\x1b[B" * 3)
        client.synchronise()
        # 5 down, two pages of 16, two halves of 8, one up, one half and one page back, three down: 5+32+16-1-8-16+3 = 31.
        self.assertEqual(self.place(client)[0], 32)
        self.assertEqual(self.body(client), lines[31:31 + ROWS])


if __name__ == "__main__":
    unittest.main()
