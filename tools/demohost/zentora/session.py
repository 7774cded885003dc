"""One terminal's session: negotiation, keys, the page in front, the function keys, time limits."""

import asyncio

from zentora import fkeys, keys, telnet
from zentora.callcentre import CallCentre
from zentora.chrome import drawHints, drawStatus, drawTitle
from zentora.pages import makePage
from zentora.screen import Screen
from zentora.style import STATUS_ERROR, STATUS_GOOD, STATUS_PLAIN

ACCEPTED_TYPE = b"QXTERM"

# All in seconds.
NEGOTIATION_LIMIT = 10.0
SIGN_ON_LIMIT = 180.0
SEND_LIMIT = 20.0
ESCAPE_WAIT = 0.2
TICK = 1.0
LINGER = 1.0

_pageKeys = {"f1": "guide", "f2": "agents", "f3": "callback", "f4": "report", "f6": "menu"}


class Session:
    def __init__(self, reader, writer, clock, idleLimit):
        self._reader = reader
        self._writer = writer
        self._loop = asyncio.get_running_loop()
        self._telnet = telnet.Decoder()
        self._refusals = telnet.Refusals()
        self._keys = keys.Decoder()
        self._typeKnown = False
        self._ended = False
        self._idleLimit = idleLimit
        self._message = None
        self._bank = fkeys.NAVIGATION
        self._barShown = True
        self._reverse = False
        self._blinkingCursor = False
        self._needsDrawing = False
        started = self._loop.time()
        self._typeDeadline = started + NEGOTIATION_LIMIT
        self._idleDeadline = started + SIGN_ON_LIMIT
        self._nextTick = started + TICK
        self._escapeDeadline = None
        self._page = None
        # What pages use
        self.clock = clock
        self.chance = clock.makeRandom()
        self.centre = CallCentre(self.chance)
        self.screen = Screen()
        self.user = ""
        self.paused = False
        self.savedRequests = []

    # What pages call

    def go(self, name):
        """Brings a page to the front."""
        self._page = makePage(name, self)

    def inform(self, text):
        """Shows a message on the status row until the next key."""
        self._message = (text, STATUS_GOOD)

    def complain(self, text):
        """Shows an error on the status row, with a bell."""
        self._message = (text, STATUS_ERROR)
        self.screen.raw("\a")

    def signOn(self, name):
        self.user = name
        self._idleDeadline = self._loop.time() + self._idleLimit
        self.screen.raw(fkeys.programBothBanks())
        self.go("menu")
        self.inform(f"Welcome, {name}.")

    def logOff(self, reason):
        """Says goodbye and ends the session once that has been sent."""
        self.go("farewell")
        self._page.reason = reason
        self._message = None
        if self.user:
            self.screen.raw(fkeys.restoreDefaults())
        if self._reverse:
            self.reverseScreen()
        if self._blinkingCursor:
            self._blinkCursor()
        self._draw()
        self._ended = True

    # The session's course

    async def run(self):
        """Serves the terminal until either side ends the session; never raises for what a client does."""
        reading = None
        try:
            self._writer.write(telnet.OPENING)
            while not self._ended:
                await self._send()
                if reading is None:
                    reading = asyncio.ensure_future(self._reader.read(4096))
                await asyncio.wait({reading}, timeout=self._timeToNextDeadline())
                if reading.done():
                    block, reading = reading.result(), None
                    if not block:
                        return
                    self._receive(block)
                self._watchClock()
                self._drawIfNeeded()
            await self._send()
            await self._hangUp(reading)
        except (OSError, asyncio.TimeoutError):
            # The client is gone or does not read: nobody is left to be told.
            pass
        finally:
            if reading is not None:
                reading.cancel()
            self._writer.transport.abort()

    async def _send(self):
        output = self.screen.takeOutput()
        if output:
            self._writer.write(output)
        await asyncio.wait_for(self._writer.drain(), SEND_LIMIT)

    async def _hangUp(self, reading):
        """Ends in an orderly way: unread input would make the system throw our last words away."""
        self._writer.write_eof()
        deadline = self._loop.time() + LINGER
        while (left := deadline - self._loop.time()) > 0:
            if reading is None:
                reading = asyncio.ensure_future(self._reader.read(4096))
            await asyncio.wait({reading}, timeout=left)
            if not reading.done():
                reading.cancel()
                return
            if not reading.result():
                return
            reading = None

    def _timeToNextDeadline(self):
        deadlines = [self._idleDeadline]
        if not self._typeKnown:
            deadlines.append(self._typeDeadline)
        elif not self.clock.isFixed:
            deadlines.append(self._nextTick)
        if self._escapeDeadline is not None:
            deadlines.append(self._escapeDeadline)
        return max(0.0, min(deadlines) - self._loop.time())

    def _watchClock(self):
        now = self._loop.time()
        if self._ended:
            return
        if not self._typeKnown:
            if now >= self._typeDeadline:
                self._refuse("your terminal did not tell its type")
            return
        self._checkEscape()
        if now >= self._idleDeadline and not self._ended:
            self.logOff("Nobody has touched the keyboard for a while.")
            return
        if not self.clock.isFixed and now >= self._nextTick:
            # A session that was busy or stuck does not make up for the ticks it missed.
            self._nextTick = now + TICK
            if not self.paused:
                self.centre.step()
            self._needsDrawing = True

    # Input

    def _receive(self, block):
        self._checkEscape()
        for event in self._telnet.feed(block):
            if self._ended:
                return
            if event[0] == "data":
                if self._typeKnown:
                    self._takeKeys(self._keys.feed(event[1]))
                    self._needsDrawing = True
                    self._escapeDeadline = self._loop.time() + ESCAPE_WAIT if self._keys.isPending else None
            elif event[0] == "option":
                self._takeOption(event[1], event[2])
            elif event[1] == telnet.TERMINAL_TYPE and not self._typeKnown:
                self._takeType(event[2])

    def _checkEscape(self):
        """An escape that nothing has followed in time was the Escape key."""
        if self._escapeDeadline is not None and self._loop.time() >= self._escapeDeadline:
            self._escapeDeadline = None
            self._takeKeys(self._keys.giveUp())
            self._needsDrawing = True

    def _takeOption(self, command, option):
        if option == telnet.TERMINAL_TYPE and not self._typeKnown:
            if command == telnet.WILL:
                self._writer.write(telnet.ASK_TYPE)
                return
            if command == telnet.WONT:
                self._refuse("your terminal does not tell its type")
                return
        if (command, option) == (telnet.DO, telnet.TIMING_MARK):
            self._drawIfNeeded()
            self._writer.write(self.screen.takeOutput() + telnet.TIME_MARKED)
            return
        self._writer.write(self._refusals.answer(command, option))

    def _takeType(self, answer):
        if answer[:1] != bytes([telnet.TYPE_IS]) or answer[1:].strip().upper() != ACCEPTED_TYPE:
            self._refuse("your terminal is of another type")
            return
        self._typeKnown = True
        self.screen.reset()
        self.go("signon")
        self._needsDrawing = True

    def _refuse(self, reason):
        self._writer.write(f"\r\nWelcome to Zentora. This host speaks to QXTERM terminals only, and {reason}.\r\n"
                           "Please come back with one. Goodbye.\r\n".encode("ascii"))
        self._ended = True

    def _takeKeys(self, pressed):
        for key in pressed:
            if self._ended:
                return
            self._idleDeadline = self._loop.time() + (self._idleLimit if self.user else SIGN_ON_LIMIT)
            self._message = None
            if not self.user or not self._globalKey(key):
                self._page.onKey(key)

    def _globalKey(self, key):
        """Keys that mean the same on every page behind the sign-on; True when key was one."""
        if key in _pageKeys:
            self.go(_pageKeys[key])
        elif key in ("f5", "t6"):
            if key == "f5":
                self.centre.step()
            else:
                self.screen.reset()
        elif key in ("f7", "t7"):
            self._showBank(fkeys.TOOLS if key == "f7" else fkeys.NAVIGATION)
        elif key == "f8":
            self.logOff("You have logged off.")
        elif key == "t1":
            self.reverseScreen()
        elif key == "t2":
            self._blinkCursor()
        elif key == "t3":
            self.screen.raw("\a")
            self.inform("Ding.")
        elif key == "t4":
            self.pause()
        elif key == "t8":
            self.screen.raw(fkeys.hideBar())
            self._barShown = False
            self.inform("The buttons are hidden; F7 brings them back.")
        else:
            return False
        return True

    def pause(self):
        self.paused = not self.paused
        self.inform("Live figures stand still." if self.paused else "Live figures move again.")

    def _showBank(self, bank):
        if self._barShown:
            self._bank = bank
        self._barShown = True
        self.screen.raw(fkeys.showBank(self._bank))

    def reverseScreen(self):
        self._reverse = not self._reverse
        self.screen.raw("\x1b[?5h" if self._reverse else "\x1b[?5l")

    def _blinkCursor(self):
        self._blinkingCursor = not self._blinkingCursor
        self.screen.raw("\x1b[?12h" if self._blinkingCursor else "\x1b[?12l")

    # Output

    def _drawIfNeeded(self):
        if self._needsDrawing and not self._ended:
            self._draw()

    def _draw(self):
        self._needsDrawing = False
        screen, page = self.screen, self._page
        screen.clear()
        screen.hideCursor()
        drawTitle(screen, page.title, self.clock.now())
        page.draw(screen)
        drawHints(screen, page.hints())
        text, style = self._message or (page.statusText(), STATUS_PLAIN)
        drawStatus(screen, text, self._statusRight(), style)
        screen.render()

    def _statusRight(self):
        if not self.user:
            return self.clock.now().strftime("%d %b %Y")
        marks = [self.user[:16]]
        if self.paused:
            marks.append("paused")
        marks.append("Tools keys" if self._bank == fkeys.TOOLS else "Go-to keys")
        marks.append(self.clock.now().strftime("%d %b %Y"))
        return "  ".join(marks)
