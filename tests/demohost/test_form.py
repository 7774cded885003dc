"""The call-back request: editing by the terminal's own insert and delete, checks, saving."""

import unittest

from frames import openEnds
from hosttest import HostTest

CUSTOMER, ACCOUNT, TELEPHONE, TIME, QUEUE, PRIORITY, NOTE = range(4, 17, 2)


class Form(HostTest):
    def openForm(self):
        client = self.signedOn()
        client.press("f3")
        return client

    def field(self, client, row, width):
        return client.model.rowText(row)[18:18 + width].rstrip()

    def testTypingAndInsertingInsideTheText(self):
        client = self.openForm()
        client.press("Maria Lopez")
        client.received.clear()
        client.press("left", "left", "left", "left", "left", "J. ")
        self.assertEqual(self.field(client, CUSTOMER, 32), "Maria J. Lopez")
        self.assertEqual((client.model.row, client.model.column), (CUSTOMER, 18 + 9))
        # The terminal shifts the text itself: delete one cell at the field's end, then insert mode.
        self.assertEqual(client.received.count(b"\x1b[P"), 3)
        self.assertIn(b"\x1b[4hJ\x1b[4l", client.received)
        self.assertEqual(openEnds(client.model), [])
        self.assertEqual(client.model.misdrawnRows, 0)

    def testDeleteAndBackspaceKeepWhatStandsBehindTheField(self):
        client = self.openForm()
        client.press("tab", "12345678", "left", "left")
        hint = client.model.rowText(ACCOUNT)[40:52]
        self.assertEqual(hint, "eight digits")
        client.press("backspace", "delete")
        self.assertEqual(self.field(client, ACCOUNT, 8), "123458")
        self.assertEqual(client.model.rowText(ACCOUNT)[40:52], hint)
        self.assertIn(b"\x1b[@", client.received)
        self.assertEqual(openEnds(client.model), [])
        self.assertTrue(all(client.model.flags(ACCOUNT, column) & 16 for column in range(18, 26)))
        self.assertFalse(client.model.flags(ACCOUNT, 26) & 16)

    def testFullFieldTakesNoMore(self):
        client = self.openForm()
        client.press("tab", "12345678")
        bells = client.model.bells
        client.press("9")
        self.assertEqual(self.field(client, ACCOUNT, 8), "12345678")
        self.assertEqual(client.model.bells, bells + 1)
        self.assertIn("The field is full.", client.model.rowText(24))
        self.assertEqual(client.model.column, 25)

    def testOvertypeReplaces(self):
        client = self.openForm()
        client.press("abcd", "left", "left", "left")
        client.press("\x14", "XY")
        self.assertEqual(self.field(client, CUSTOMER, 32), "aXYd")
        self.assertIn("Overtype", client.model.rowText(24))

    def testManyKeysInOneBlock(self):
        client = self.openForm()
        client.send(b"abc\x1b[D\x1b[D12\x7f\x08\x1b[C\x1b[C!\tn")
        client.synchronise()
        # abc, two left: a|bc; 12: a12|bc; delete takes b, backspace takes 2: a1|c; right twice stops behind c.
        self.assertEqual(self.field(client, CUSTOMER, 32), "a1c!")
        self.assertEqual(self.field(client, ACCOUNT, 8), "n")

    def testEachCheckPointsAtItsField(self):
        client = self.openForm()
        for row, wrong, right, words in (
                (CUSTOMER, "", "Maria Lopez", "name is needed"), (ACCOUNT, "1234x678", "12345678", "eight digits."),
                (TELEPHONE, "12", "020 7946 0123", "six digits"), (TIME, "24:00", "14:30", "00:00 to 23:59"),
                (QUEUE, "Shop", "billing", "The queue is one of"), (PRIORITY, "6", "2", "digit from 1 to 5")):
            while client.model.row != row:
                client.press("tab")
            client.press("\x15" + wrong, "\x13")
            self.assertEqual(client.model.row, row)
            self.assertIn(words, client.model.rowText(24))
            self.assertEqual(client.model.rows[24].attrs[0][2], 1, "errors stand on red")
            client.press("\x15" + right)
        client.press("\x13")
        client.waitFor("Request 1001 for Maria Lopez is saved.")
        self.assertIn("Main menu", client.model.rowText(0))
        client.press("f3")
        self.assertIn("Saved before: Maria Lopez at 14:30, billing", client.model.rowText(21))

    def testArrowsReachTheButtonsAndCancelSavesNothing(self):
        client = self.openForm()
        client.press("x", "up")
        self.assertTrue(client.model.cursorHidden)
        self.assertTrue(client.model.flags(18, 30) & 16)
        client.press("enter")
        client.waitFor("The request was not saved.")
        client.press("f3")
        self.assertEqual(self.field(client, CUSTOMER, 32), "")
        self.assertNotIn("Saved before", client.model.rowText(21))

    def testEnterWalksToTheSaveButton(self):
        client = self.openForm()
        client.press("Bo", "enter", "11112222", "enter", "123456", "enter", "09:05", "enter", "Sales", "enter", "1",
                     "enter", "call soon", "enter", "enter")
        client.waitFor("Request 1001 for Bo is saved.")


if __name__ == "__main__":
    unittest.main()
