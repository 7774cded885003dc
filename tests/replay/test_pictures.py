"""qxterm-scenario --replay as a person calls it: what it writes, and what it says when something is wrong.

QXTERM_SCENARIO names the program.
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import round_trip  # noqa: E402
from trace_logs import BLOCK_COMMANDS, logOf, play, setUp  # noqa: E402

TOOL = os.environ["QXTERM_SCENARIO"]
LINES = dict(zip("jklmnopqrstuvwx", "\u2518\u2510\u250c\u2514\u253c\u23ba\u23bb\u2500\u23bc\u23bd\u251c\u2524\u2534"
                 "\u252c\u2502"))
TERMINAL_FONT = 1


def call(*words, data=None):
    done = subprocess.run([TOOL, *words], input=data, capture_output=True)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


def asText(dump):
    """The picture's text, made from what `dump window` tells."""
    rows = []
    for text, styles in zip(dump["text"], dump["style"]):
        shown = "".join(LINES.get(c, c) if style & TERMINAL_FONT else c for c, style in zip(text, styles))
        rows.append(shown.rstrip(" "))
    column, row = dump["cursor"] or (None, None)
    return rows + [f"[cursor: column {column + 1}, row {row + 1}]" if dump["cursor"] else "[no cursor]"]


class Output(unittest.TestCase):
    def test_what_cannot_be_written_is_told(self):
        """More than fits into the buffer, so that it is a write in between that fails."""
        with open("/dev/full", "wb") as full:
            for script in (b"dump state\n", b"dump window\n" * 200):
                done = subprocess.run([TOOL], input=script, stdout=full, stderr=subprocess.PIPE)
                self.assertEqual((done.returncode, done.stderr.decode()),
                                 (2, "standard output cannot take what is printed\n"))


class Pictures(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = Path(self.folder.name)
        setting, lines = round_trip.network("dialog")
        self.windows, trace = play(TOOL, setting + [each for line in lines for each in (
            [line, "dump window"] if line.startswith(BLOCK_COMMANDS) else [line])])
        self.log = self.path / "output.txt"
        self.log.write_bytes(logOf(trace))

    def pictures(self, *options, log=None):
        target = self.path / "pictures"
        status, said, wrong = call("--replay", str(log or self.log), "--pictures", str(target), *options)
        self.assertEqual((status, wrong), (0, ""))
        return target, said

    def testTextShowsTheWindowAfterEachBlock(self):
        target, _ = self.pictures("--format", "text")
        files = sorted(target.glob("*.txt"))
        self.assertEqual([each.name for each in files],
                         [f"{n:06}.txt" for n in range(1, len(self.windows) + 1)])
        self.assertTrue(any("\u250c" in each.read_text(encoding="utf-8") for each in files), "no line drawing at all")
        for file, window in zip(files, self.windows):
            self.assertEqual(file.read_text(encoding="utf-8").split("\n")[:-1], asText(json.loads(window)), file.name)

    def testDrawingsAreWellFormedAndHoldTheText(self):
        target, said = self.pictures()
        files = sorted(target.glob("*.svg"))
        self.assertEqual(len(files), len(self.windows))
        self.assertIn(f"blocks: {len(files)}, pictures: {len(files)}", said)
        for file, window in zip(files, self.windows):
            drawing = xml.etree.ElementTree.parse(file).getroot()
            dump = json.loads(window)
            cells = {}
            for text in drawing.iter("{http://www.w3.org/2000/svg}text"):
                for x, character in zip(text.get("x").split(), text.text):
                    cells[int(x) // 9, int(text.get("y")) // 18] = character
            expected = {(column, row): c for row in range(25) for column, c in enumerate(dump["text"][row])
                        if c != " " and not (dump["style"][row][column] & TERMINAL_FONT and c in LINES)}
            self.assertEqual(cells, expected, file.name)

    def testThePageShowsAllInOrder(self):
        target, _ = self.pictures("--format", "text,svg", "--blocks", "3-5")
        page = (target / "index.html").read_text(encoding="utf-8")
        self.assertEqual(sorted(each.name for each in target.iterdir()),
                         ["000003.svg", "000003.txt", "000004.svg", "000004.txt", "000005.svg", "000005.txt",
                          "index.html"])
        places = [page.index(f'src="{n:06}.svg"') for n in (3, 4, 5)]
        self.assertEqual(places, sorted(places))
        self.assertIn("session 1: telnet to host1 port 23", page)

    def testThePageDoesNotHoldWhatWasTyped(self):
        _, trace = play(TOOL, setUp({"lab": round_trip.NET}) + [
            "start lab", *round_trip.UP, 'socket data "Password: "', 'type "swordfish\\r"', 'socket data "\\r\\n"'])
        log = self.path / "typed.txt"
        log.write_bytes(logOf(trace))
        target, _ = self.pictures("--format", "text,svg", log=log)
        page = (target / "index.html").read_text(encoding="utf-8")
        self.assertIn("Bytes typed: 10", page)
        for file in target.iterdir():
            self.assertNotIn("swordfish", file.read_text(encoding="utf-8"))

    def testMessageBoxesAndRemarksStandOnThePage(self):
        _, trace = play(TOOL, setUp({"lab": round_trip.MODEM}) + [
            "start lab", "wait 1000", "serial carrier on", "wait 350", 'serial data "x"', "serial carrier off"])
        log = self.path / "modem.txt"
        log.write_bytes(b"<foreign> & odd\r\n" + logOf(trace))
        target, _ = self.pictures(log=log)
        page = (target / "index.html").read_text(encoding="utf-8")
        self.assertIn("Message: The connection has been dropped", page)
        self.assertIn("no line of a trace: &lt;foreign&gt; &amp; odd", page)


class Complaints(unittest.TestCase):
    def testHelp(self):
        status, said, wrong = call("--help")
        self.assertEqual((status, wrong), (0, ""))
        for word in ("--replay", "--pictures", "--format", "--blocks", "--lines", "passwords"):
            self.assertIn(word, said)

    def testAFileThatIsMissing(self):
        status, said, wrong = call("--replay", "/nowhere/output.txt")
        self.assertEqual((status, said), (2, ""))
        self.assertIn("/nowhere/output.txt: the file cannot be read", wrong)

    def testAFileThatIsNoTrace(self):
        for data in (b"", b"\x89PNG\r\n\x1a\n" * 1000, "a text\n".encode("utf-16")):
            status, _, wrong = call("--replay", "-", data=data)
            self.assertEqual(status, 2)
            self.assertIn("no line of this file is a trace's", wrong)

    def testAFolderThatHoldsSomething(self):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "mine").write_text("kept")
            status, _, wrong = call("--replay", "-", "--pictures", folder, data=b"BYTES<< 41 \r\n")
            self.assertEqual(status, 2)
            self.assertIn("must be empty", wrong)
            self.assertEqual([each.name for each in Path(folder).iterdir()], ["mine"])

    def testWrongWords(self):
        status, _, wrong = call("--replay", "log", "--format", "svg")
        self.assertEqual(status, 2)
        self.assertIn("--help", wrong)


if __name__ == "__main__":
    unittest.main()
