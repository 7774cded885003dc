"""Function keys in both banks: labels on the buttons, strings that the keys send, what they do."""

import unittest

from hosttest import HostTest


class FunctionKeys(HostTest):
    def testBothBanksAreProgrammedAtSignOn(self):
        client = self.open()
        client.waitFor("Login:")
        self.assertFalse(client.model.barShown)
        client.signOn()
        model = client.model
        self.assertTrue(model.barShown)
        self.assertEqual(model.bank, 0)
        self.assertEqual(model.strings[0], ["\x1bO" + letter for letter in "cdefghij"])
        self.assertEqual(model.strings[1], ["\x1bO" + digit for digit in "12345678"])
        self.assertEqual(model.shownLabels[1], "   F2   " + " Agents ")
        self.assertTrue(all(len(label) == 16 for bank in model.labels for label in bank))
        self.assertNotEqual(model.labels[0], model.labels[1])

    def testF7SwitchesTheBanks(self):
        client = self.signedOn()
        client.press("f7")
        self.assertEqual(client.model.bank, 1)
        self.assertEqual(client.model.shownLabels[0], "   F1   " + "Reverse ")
        self.assertIn("Tools keys", client.model.rowText(24))
        client.press("f7")
        self.assertEqual(client.model.bank, 0)
        self.assertIn("Go-to keys", client.model.rowText(24))

    def testToolsBank(self):
        client = self.signedOn()
        client.press("f2", "f7")
        model = client.model
        client.press("f1")
        self.assertTrue(model.reverseScreen)
        client.press("f1")
        self.assertFalse(model.reverseScreen)
        client.press("f2")
        self.assertTrue(model.cursorBlinks)
        bells = model.bells
        client.press("f3")
        self.assertEqual(model.bells, bells + 1)
        client.press("f4")
        self.assertIn("Live figures stand still.", model.rowText(24))
        client.press("f5")
        self.assertIn("sorted by state", model.rowText(24))
        before = model.page()
        client.received.clear()
        client.press("f6")
        self.assertIn(b"\x1b[2J", client.received)
        # Only the message on the status row gives way to the usual text.
        self.assertEqual(model.page().splitlines()[:24], before.splitlines()[:24])

    def testHiddenBarComesBackWithItsBank(self):
        client = self.signedOn()
        client.press("f7", "f8")
        self.assertFalse(client.model.barShown)
        client.press("f7")
        self.assertTrue(client.model.barShown)
        self.assertEqual(client.model.bank, 1)

    def testNavigationBank(self):
        client = self.signedOn()
        for key, title in (("f1", "Display guide"), ("f2", "Agents and queues"), ("f3", "Call-back request"),
                           ("f4", "Call report"), ("f6", "Main menu")):
            client.press(key)
            self.assertIn(title, client.model.rowText(0))
        client.press("f2")
        before = client.model.page()
        client.press("f5")
        self.assertNotEqual(client.model.page(), before)
        client.press("f8")
        self.assertTrue(client.waitForEnd())


if __name__ == "__main__":
    unittest.main()
