"""The telnet decoder and the key decoder, cut at every place."""

import unittest

import inprocess  # noqa: F401
from zentora import keys, telnet


class TelnetDecoder(unittest.TestCase):
    def allCuts(self, data):
        """What the decoder makes of data whole, and at each cut into two blocks, with data events joined."""
        results = []
        for cut in range(len(data) + 1):
            decoder = telnet.Decoder()
            joined = []
            for event in decoder.feed(data[:cut]) + decoder.feed(data[cut:]):
                if event[0] == "data" and joined and joined[-1][0] == "data":
                    joined[-1] = ("data", joined[-1][1] + event[1])
                else:
                    joined.append(event)
            results.append(joined)
        return results

    def testTypeAnswerAtEveryCut(self):
        data = b"ab\xff\xfb\x18cd\xff\xfa\x18\x00QXTERM\xff\xf0ef"
        expected = [("data", b"ab"), ("option", 251, 24), ("data", b"cd"), ("sub", 24, b"\x00QXTERM"), ("data", b"ef")]
        for events in self.allCuts(data):
            self.assertEqual(events, expected)

    def testDoubledIacIsData(self):
        for events in self.allCuts(b"a\xff\xffb"):
            self.assertEqual(events, [("data", b"a\xffb")])

    def testOtherCommandsAreSwallowed(self):
        for events in self.allCuts(b"a\xff\xf1\xff\xf9b"):
            self.assertEqual(events, [("data", b"ab")])

    def testDoubledIacInsideSubnegotiation(self):
        self.assertEqual(telnet.Decoder().feed(b"\xff\xfa\x18\x00A\xff\xffB\xff\xf0"), [("sub", 24, b"\x00A\xffB")])

    def testEndlessSubnegotiationIsBounded(self):
        decoder = telnet.Decoder()
        self.assertEqual(decoder.feed(b"\xff\xfa\x18" + b"x" * 100000), [])
        events = decoder.feed(b"\xff\xf0y")
        self.assertEqual(events[0][:2], ("sub", 24))
        self.assertLess(len(events[0][2]), 200)
        self.assertEqual(events[1], ("data", b"y"))

    def testEmptySubnegotiationMeansNothing(self):
        self.assertEqual(telnet.Decoder().feed(b"\xff\xfa\xff\xf0z"), [("data", b"z")])


class Refusals(unittest.TestCase):
    def testUnknownOffersAreRefusedOnce(self):
        refusals = telnet.Refusals()
        self.assertEqual(refusals.answer(251, 31), b"\xff\xfe\x1f")
        self.assertEqual(refusals.answer(251, 31), b"")
        self.assertEqual(refusals.answer(253, 5), b"\xff\xfc\x05")

    def testAgreementsNeedNoAnswer(self):
        refusals = telnet.Refusals()
        for command, option in ((253, 1), (253, 3), (254, 1), (252, 31), (251, 3)):
            self.assertEqual(refusals.answer(command, option), b"", (command, option))


class KeyDecoder(unittest.TestCase):
    def decode(self, data):
        """The keys of data, which must not depend on where it is cut."""
        whole = keys.Decoder().feed(data)
        for cut in range(len(data) + 1):
            decoder = keys.Decoder()
            self.assertEqual(decoder.feed(data[:cut]) + decoder.feed(data[cut:]), whole, cut)
        return whole

    def testKeysOfTheTerminal(self):
        self.assertEqual(self.decode(b"\x1b[A\x1b[B\x1b[C\x1b[D"), ["up", "down", "right", "left"])
        self.assertEqual(self.decode(b"\x7f\x08\x09"), ["delete", "backspace", "tab"])
        self.assertEqual(self.decode(b"\x1bOc\x1bOj\x1bO1\x1bO8"), ["f1", "f8", "t1", "t8"])
        self.assertEqual(self.decode(b"a Z\x13"), ["a", " ", "Z", "ctrl-s"])

    def testLineEnds(self):
        self.assertEqual(self.decode(b"a\rb\r\nc\r\0d"), ["a", "enter", "b", "enter", "c", "enter", "d"])
        self.assertEqual(self.decode(b"\r\r\n\r"), ["enter", "enter", "enter"])
        self.assertEqual(self.decode(b"\r\0\n"), ["enter", "enter"])

    def testUnknownSequencesVanishWhole(self):
        self.assertEqual(self.decode(b"\x1b[15~x"), ["x"])
        self.assertEqual(self.decode(b"\x1bOzx"), ["x"])
        self.assertEqual(self.decode(b"\x1b[1;5Cx"), ["right", "x"])

    def testEscapeInsideASequenceStartsAnew(self):
        self.assertEqual(self.decode(b"\x1b[\x1b[A"), ["up"])

    def testLoneEscapeNeedsTime(self):
        decoder = keys.Decoder()
        self.assertEqual(decoder.feed(b"\x1b"), [])
        self.assertTrue(decoder.isPending)
        self.assertEqual(decoder.giveUp(), ["escape"])
        self.assertFalse(decoder.isPending)
        self.assertEqual(decoder.giveUp(), [])

    def testEndlessParametersAreBounded(self):
        decoder = keys.Decoder()
        pressed = decoder.feed(b"\x1b[" + b"1" * 1000)
        self.assertGreater(len(pressed), 900)


if __name__ == "__main__":
    unittest.main()
