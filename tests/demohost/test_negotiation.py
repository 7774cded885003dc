"""The telnet dialogue, the sign-on, and clients that misbehave."""

import asyncio
import threading
import time
import unittest
from unittest import mock

import inprocess  # noqa: F401
from hosttest import Client, HostProcess, HostTest
from zentora import session as sessionModule
from zentora.clock import FixedClock

IAC, SB, SE, DO, WILL, WONT = 255, 250, 240, 253, 251, 252


class Negotiation(HostTest):
    def testHostAsksForTheTypeAndSendsNothingElseBefore(self):
        client = self.open(negotiate=False)
        client.settleAfter(9)
        self.assertEqual(bytes(client.received), bytes([IAC, DO, 24, IAC, WILL, 1, IAC, WILL, 3]))
        client.send(bytes([IAC, WILL, 24]))
        client.settleAfter(16)
        self.assertEqual(bytes(client.received[9:]), bytes([IAC, SB, 24, 1, IAC, SE, 0]))
        client.send(bytes([IAC, SB, 24, 0]) + b"QXTERM" + bytes([IAC, SE]))
        client.waitFor("Login:")

    def testNothingOfTheDialogueStandsOnTheScreen(self):
        client = self.open()
        client.waitFor("Login:")
        self.assertTrue(client.model.rowText(0).startswith("  ZENTORA"))
        self.assertEqual(client.model.unknown, [])

    def testOtherTerminalIsRefused(self):
        client = self.open(negotiate=False)
        client.send(bytes([IAC, WILL, 24, IAC, SB, 24, 0]) + b"XTERM" + bytes([IAC, SE]))
        self.assertTrue(client.waitForEnd())
        self.assertIn(b"QXTERM terminals only", client.received)
        self.assertNotIn(b"Login:", client.received)

    def testSecretiveTerminalIsRefused(self):
        client = self.open(negotiate=False)
        client.send(bytes([IAC, WONT, 24]))
        self.assertTrue(client.waitForEnd())
        self.assertIn(b"does not tell its type", client.received)

    def testAnswersCutIntoSingleBytes(self):
        client = self.open(negotiate=False, blockSize=1)
        for byte in bytes([IAC, WILL, 24, IAC, SB, 24, 0]) + b"QXTERM" + bytes([IAC, SE]) + b"Anna\r\npw\r\0":
            client.send(bytes([byte]))
            time.sleep(0.005)
        client.waitFor("Welcome, Anna.")

    def testUnaskedOffersAreAnsweredAndDoNoHarm(self):
        client = self.open(negotiate=False)
        client.settleAfter(9)
        client.received.clear()
        client.send(bytes([IAC, WILL, 31, IAC, DO, 5, IAC, WILL, 31, IAC, DO, 1, IAC, DO, 3]))
        client.settleAfter(6)
        self.assertEqual(bytes(client.received), bytes([IAC, 254, 31, IAC, 252, 5]))

    def testTypeIsTakenOnceOnly(self):
        client = self.signedOn()
        client.send(bytes([IAC, SB, 24, 0]) + b"XTERM" + bytes([IAC, SE]) + bytes([IAC, WONT, 24]))
        client.press("f2")
        self.assertIn("Agents and queues", client.model.rowText(0))


class SignOn(HostTest):
    def testNameIsEchoedAndPasswordIsNot(self):
        client = self.open()
        client.waitFor("Login:")
        # An automatic sign-on looks for these words, and takes "ast" near them for a last-login line.
        self.assertNotIn("ast", client.model.page())
        self.assertNotIn("assword:", client.model.page())
        client.press("Bob")
        self.assertEqual(client.model.rowText(14)[34:38], "Bob ")
        client.press("backspace")
        self.assertEqual(client.model.rowText(14)[34:38], "Bo  ")
        client.press("enter")
        self.assertIn("Password:", client.model.rowText(16))
        before = client.model.page()
        printed = client.model.printed
        client.press("secret")
        self.assertEqual(client.model.page(), before)
        self.assertEqual(client.model.printed, printed)
        self.assertEqual((client.model.row, client.model.column), (16, 34))
        client.press("enter")
        client.waitFor("Welcome, Bo.")

    def testEmptyNameAsksAgain(self):
        client = self.open()
        client.waitFor("Login:")
        client.press("  ", "enter")
        self.assertIn("Please type a name", client.model.rowText(24))
        self.assertEqual(client.model.bells, 1)
        client.press("Cy", "enter", "enter")
        client.waitFor("Welcome, Cy.")

    def testBannerIsSevenLettersOfFilledCells(self):
        client = self.open()
        client.waitFor("Login:")
        # Upper side of the Z: four marks of two cells from column 6; the letters are ten columns apart.
        reverse = [column for column in range(80) if client.model.flags(4, column) & 16]
        self.assertEqual(reverse[:9], [6, 7, 8, 9, 10, 11, 12, 13, 16])
        self.assertEqual(max(reverse), 66 + 5)


class Misbehaviour(HostTest):
    options = ("--fixed-clock", "--idle", "1.5")

    def testJunkEndsNothing(self):
        client = self.signedOn()
        junk = bytes((k * 73 + k // 7) % 255 for k in range(3000))
        client.send(junk.replace(b"\x1bOj", b"").replace(b"5", b"").replace(b"\r", b""))
        client.settle(0.3)
        client.close()
        other = self.signedOn("Eve")
        self.assertIn("Main menu", other.model.rowText(0))

    def testVanishingClientsLeaveTheHostServing(self):
        for sent in (b"", b"\xff", b"\xff\xfb\x18", b"\xff\xfb\x18\xff\xfa\x18\x00QXTERM\xff\xf0An"):
            client = Client(self.host.port, negotiate=False)
            client.send(sent)
            client.close()
        self.signedOn()

    def testIdleSessionEndsWithAWord(self):
        client = self.signedOn()
        started = time.monotonic()
        client.waitFor("Nobody has touched the keyboard")
        self.assertTrue(client.waitForEnd())
        self.assertGreater(time.monotonic() - started, 0.5)

    def testSessionsRunSideBySide(self):
        first, second = self.signedOn("One"), self.signedOn("Two")
        first.press("f2")
        second.press("f4")
        first.press("s")
        self.assertIn("Agents and queues", first.model.rowText(0))
        self.assertIn("Call report", second.model.rowText(0))
        self.assertIn("Two", second.model.rowText(24))


class Once(unittest.TestCase):
    def testHostEndsAfterItsOnlySession(self):
        host = HostProcess("--fixed-clock", "--once")
        client = Client(host.port)
        client.signOn()
        client.press("f8")
        self.assertTrue(client.waitForEnd())
        client.close()
        self.assertEqual(host.process.wait(timeout=10), 0)
        self.assertEqual(host.process.communicate(), ("", ""))

    def testPortInUseIsToldPlainly(self):
        import subprocess
        import sys
        from hosttest import HOST
        host = HostProcess()
        self.addCleanup(host.stop)
        second = subprocess.run([sys.executable, str(HOST), "--port", str(host.port)], capture_output=True, text=True,
                                timeout=20)
        self.assertEqual(second.returncode, 1)
        self.assertIn("cannot listen", second.stderr)


class TimeLimits(unittest.TestCase):
    """Limits that are too long to wait for are shortened inside this process."""

    def runSession(self, talk):
        """Serves one session on a loop of its own thread while talk(client) runs here."""
        ready = threading.Event()
        state = {}

        async def main():
            done = asyncio.Event()

            async def onConnect(reader, writer):
                await sessionModule.Session(reader, writer, FixedClock(), 60).run()
                done.set()

            server = await asyncio.start_server(onConnect, "127.0.0.1", 0)
            state["port"] = server.sockets[0].getsockname()[1]
            ready.set()
            async with server:
                await asyncio.wait_for(done.wait(), 20)
            state["ended"] = True

        thread = threading.Thread(target=lambda: asyncio.run(main()))
        thread.start()
        ready.wait(10)
        client = Client(state["port"], negotiate=False)
        try:
            talk(client)
        finally:
            client.close()
            thread.join(25)
        self.assertTrue(state.get("ended"))

    def testSilentTerminalIsRefused(self):
        def talk(client):
            self.assertTrue(client.waitForEnd())
            self.assertIn(b"did not tell its type", client.received)

        with mock.patch.object(sessionModule, "NEGOTIATION_LIMIT", 0.3):
            self.runSession(talk)

    def testClientThatNeverReadsIsDropped(self):
        def talk(client):
            client.send(b"\xff\xfb\x18\xff\xfa\x18\x00QXTERM\xff\xf0Anna\r\r\x1bOd")
            # Each press of T6 repaints the whole screen; nobody reads it.
            started = time.monotonic()
            try:
                while time.monotonic() - started < 60:
                    client.send(b"\x1bO6" * 50)
                    time.sleep(0.01)
            except OSError:
                return
            self.fail("the host went on for a client that does not read")

        with mock.patch.object(sessionModule, "SEND_LIMIT", 0.5):
            self.runSession(talk)


if __name__ == "__main__":
    unittest.main()
