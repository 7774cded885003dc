"""The user of a run: types, selects, scrolls back, changes fonts, opens dialogs, leaves and comes back. A seed decides."""

import contextlib
import re
import threading
import time

from desk import Desk, setClipboard
from program import TITLE, Failure, checkEqual, waitFor, xdotool

FONTS = "sml"  # letters of the Options dialog's font sizes
KEY_PATIENCE = 20.0  # seconds for a key to reach the host
LETTERS = "abcdefghijklmnopqrstuvwxyz"
SAVE = "Save changes to profile"


class SharedDesk(Desk):
    """A desk that two threads ask about the program: the user's, and the one that takes samples."""

    def __init__(self, *arguments, **more):
        super().__init__(*arguments, **more)
        self._asking = threading.RLock()

    def ask(self, *subjects, **more):
        with self._asking:
            return super().ask(*subjects, **more)


class Hands:
    def __init__(self, desk, random, host, screen):
        """host: of the network sessions. screen: the display, for keys whose way is timed."""
        self.desk, self.random, self._host, self._screen = desk, random, host, screen
        self.keyTimes = []  # milliseconds from a key to the host
        self.typed = 0  # bytes, of keys and of what was pasted
        self.sessions = 0
        self._pages = 0

    # --- what the user does, in any order, in a session over the network ---------------------------------------------

    def any(self):
        """Returns the name of what was done."""
        kinds = (self.typeWord, self.typeWord, self.select, self.select, self.scrollBack, self.scrollBack, self.changeFont,
                 self.openMenus, self.about, self.leafOptions, self.saveAs, self.question, self.paste, self.moveWindow)
        action = self.random.choice(kinds)
        action()
        return action.__name__

    def typeWord(self):
        """Key by key; the host gets just these bytes."""
        self.desk.focus()
        self.desk.settle()
        expectNothing(self._host, "before a word is typed")
        word = "".join(self.random.choices(LETTERS, k=6))
        for letter in word:
            began = self._screen.key(letter)
            waitFor(lambda: self._host.arrivals, f"the key {letter} of {word} reaches the host", KEY_PATIENCE, pause=0.001)
            self.keyTimes.append((self._host.arrivals[0][0] - began) * 1000)
            checkEqual(self._host.take(), letter.encode(), f"what the host gets of {word}")
        self.typed += len(word)

    def paste(self):
        text = "".join(self.random.choices(LETTERS + "    ", k=self.random.randint(1, 400)))
        setClipboard(text)
        expectNothing(self._host, "before a text is pasted")
        self.desk.menu("e", "p")
        waitFor(lambda: len(self._host.come()) >= len(text), "the pasted text reaches the host")
        checkEqual(self._host.take(), text.encode(), "what the host gets of what was pasted")
        self.typed += len(text)

    def select(self):
        """With the mouse, over what may scroll away meanwhile; now and then beyond the window's edge."""
        start, end = [self.desk.cellAt(self.random.randrange(80), self.random.randrange(24)) for _ in range(2)]
        beyond = self.random.random() < 0.3
        self.desk.focus()
        xdotool("mousemove", *start, "mousedown", 1)
        try:
            xdotool("mousemove", *self.desk.cellAt(40, 12), "mousemove", *end)
            if beyond:
                xdotool("mousemove", end[0], self.random.choice((2, 760)))
            time.sleep(self.random.uniform(0.05, 0.5))
        finally:
            xdotool("mouseup", 1)
        if self.random.random() < 0.5:
            self.copy()
        xdotool("mousemove", *self.desk.cellAt(60, 10), "click", 1)

    def copy(self):
        """What was selected may have scrolled away before the menu is open, or while it is: Copy then does nothing."""
        self.desk.openMenu("e")
        if not self.desk.entries("edit")["&Copy"]:
            self.desk.closeMenu()
            return
        self.desk.key("c")
        waitFor(lambda: not any(window["class"] == "#32768" for window in self.desk.ask("windows")), "the menu is closed")

    def scrollBack(self):
        self.desk.focus()
        steps = self.random.randint(1, 40)
        xdotool("mousemove", *self.desk.cellAt(40, 12), "click", "--repeat", steps, "--delay", 10, 4)
        left, top, width, height = self.desk.ask("places")["frmterm"]["controls"]["vscterm"]
        if self.random.random() < 0.4:
            x = left + width // 2
            xdotool("mousemove", x, top + height // 2, "mousedown", 1)
            xdotool("mousemove", x, top + self.random.randrange(20, height), "mouseup", 1)
        xdotool("click", "--repeat", self.random.randint(1, steps), "--delay", 10, 5)

    def changeFont(self):
        self._openOptions()
        self.desk.key("ctrl+shift+Tab")  # the last tab
        self.desk.key("alt+" + self.random.choice(FONTS))
        self.desk.key("Return")
        self.desk.gone("frmOptions")

    def leafOptions(self):
        self._openOptions()
        for _ in range(self.random.randint(1, 6)):
            self.desk.key("ctrl+Tab")
        self.desk.key("Escape")
        self.desk.gone("frmOptions")

    def _openOptions(self):
        self.desk.menu("c", "o")
        self.desk.dialog("frmOptions")

    def saveAs(self):
        self.desk.menu("p", "a")
        self.desk.dialog("frmprof")
        self.desk.type("other")
        self.desk.key("Escape")
        self.desk.gone("frmprof")

    def about(self):
        self.desk.menu("h", "a")
        self.desk.dialog("frmSplash")
        self.desk.key(self.random.choice(("Return", "Escape", "space")))
        self.desk.gone("frmSplash")

    def question(self):
        """Leaves, and stays after all."""
        self.desk.close()
        self.desk.answer("A connection is active, exit anyway?", "No")

    def openMenus(self):
        for letter in self.random.sample("pech", 2):
            self.desk.openMenu(letter)
            self.desk.closeMenu()

    def moveWindow(self):
        xdotool("windowmove", self.desk.mainWindowId(), self.random.randrange(300), self.random.randrange(100))

    # --- sessions ----------------------------------------------------------------------------------------------------

    def leave(self):
        if not self.desk.ask("state")["g_bConnectActive"]:
            return
        self.desk.connectionMenu("d")
        self.desk.waitState("g_bConnectActive", False)

    def reconnect(self):
        self.leave()
        before = self._host.connectedAt
        self.desk.connectionMenu("c")
        waitFor(lambda: self._host.connectedAt != before, "the host sees the new session")
        self.connected()

    def connected(self):
        self.desk.waitState("g_bConnectActive", True)
        self.desk.gone("frmConn")
        self.desk.focus()
        self.sessions += 1

    def choose(self, name):
        """A profile of the recent ones, which connects it."""
        self.leave()
        self.desk.openMenu("p")
        entry = next(entry for entry in self.desk.entries("profile") if re.fullmatch(rf"&\d {name}", entry))
        self.desk.key(entry[1])

        def chosen():
            if any(SAVE in text for text in self.desk.boxes()):
                self.desk.answer(SAVE, self.random.choice(("Yes", "No")))
            return self.desk.caption() == f"{TITLE} - {name}"

        waitFor(chosen, f"the profile {name} is chosen")

    # --- what is right -----------------------------------------------------------------------------------------------

    def rest(self):
        """Whatever was under way is let go of: back to the main window, nothing selected."""
        xdotool("mouseup", 1)
        for _ in range(40):
            if not self._besides():
                break
            xdotool("key", "Escape")
            time.sleep(0.25)
        with contextlib.suppress(Failure):
            self.desk.focus()
            xdotool("mousemove", *self.desk.cellAt(60, 10), "click", 1)

    def _besides(self):
        """Windows beside the main one: menus, dialogs, boxes."""
        return [window["class"] for window in self.desk.ask("windows") if window["class"] != "QxtermMain"]

    def ordinaryIsRight(self, send, makePage):
        """Ordinary output is shown as it must be, on the live screen."""
        self._pages += 1
        output, rows = makePage(self.random, self._pages)
        send(output)
        self.desk.waitRows(rows, "an ordinary page")
        checkEqual(self._besides(), [], "windows beside the main one")


def expectNothing(host, when):
    checkEqual(host.take(), b"", f"what nobody typed, {when}")
