"""The desk around the screen: menus, dialogs, message boxes, the clipboard."""

import contextlib
import os
import socket
import subprocess
import tempfile

from program import TITLE, Program, checkEqual, focusTitle, waitFor, xdotool
from tcp_table import waitingAt

MENUS = ("Profile", "Edit", "Connection", "Help")


class Desk(Program):
    """A running window with hands for its menus and dialogs."""

    # --- menus -------------------------------------------------------------------------------------------------------

    def openMenu(self, letter):
        """Opens a menu of the bar by its underlined letter."""
        self.focus()
        self.key("alt+" + letter)
        self.waitMenu()

    def menu(self, letter, entry):
        """Chooses an entry by the letters of its menu and its own."""
        self.openMenu(letter)
        self.key(entry)

    def closeMenu(self):
        self.key("Escape", "Escape")
        waitFor(lambda: not any(window["class"] == "#32768" for window in self.ask("windows")), "the menu is closed")

    def entries(self, menu):
        """The visible entries of a menu that are no separators: {caption: enabled}."""
        return {entry["caption"]: entry["enabled"] for entry in self.ask("menus")[menu]
                if entry["visible"] and entry["caption"] != "-"}

    # --- dialogs -----------------------------------------------------------------------------------------------------

    def dialog(self, name):
        """Waits until a form is open and has the keyboard."""
        self.waitForm(name)

        def ready():
            focus, places = self.ask("focus", "places")
            return focus["form"] == name and focusTitle() == places[name]["title"]

        waitFor(ready, lambda: f"{name} has the keyboard: {self.ask('focus')}, {focusTitle()!r}")

    def gone(self, name):
        self.waitForm(name, loaded=False)

    def controls(self, form):
        return self.ask("forms")[form]["controls"]

    def focusIs(self, control):
        waitFor(lambda: self.ask("focus")["control"] == control,
                lambda: f"{control} has the keyboard: {self.ask('focus')}")

    def text(self, form, control):
        return self.controls(form)[control]["text"]

    def fill(self, text):
        """Replaces the text of the box that has the keyboard."""
        self.key("Home", "shift+End", "Delete")
        if text:
            self.type(text)

    def answer(self, text, button, ends=False):
        """Clicks a button of the message box with this text, or presses Enter for OK. ends: the program then ends."""
        box = self.messageBox(text)
        waitFor(lambda: any(window["active"] and window["class"] == "#32770" for window in self.ask("windows"))
                and focusTitle() == box["title"], "the message box has the keyboard")
        if button == "OK":
            self.key("Return")
        else:
            self.clickButton(box, button)
        if ends:
            self.waitEnd()
        else:
            waitFor(lambda: text not in "".join(self.boxes()), f"the box {text!r} is gone")
        return box

    def waitBoxTitle(self, title):
        """A message box with a title of its own."""
        waitFor(lambda: any(w["title"] == title and w["active"] for w in self.ask("windows")), f"the box {title!r}")

    def noBoxes(self):
        checkEqual(self.boxes(), [], "message boxes that stand")

    def caption(self):
        return self.ask("places")["frmterm"]["title"]

    def waitCaption(self, name):
        waitFor(lambda: self.caption() == f"{TITLE} - {name}", lambda: f"the caption names {name}: {self.caption()!r}")

    def mainWindowId(self):
        """The X window's number."""
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE} - "], check=True,
                              capture_output=True, text=True)
        return done.stdout.split()[0]

    def close(self):
        """As with the window's close box."""
        self.focus()
        self.key("alt+F4")

    def waitEnd(self):
        waitFor(lambda: not self.alive(), "the program ends")
        self.process.wait()

    # --- the mouse on the screen -------------------------------------------------------------------------------------

    def cellAt(self, column, row):
        """The middle of a cell, in pixels of the display."""
        places, view = self.ask("places", "view")
        left, top = places["picterm"][:2]
        width, height = view["cell"]
        return left + column * width + width // 2, top + row * height + height // 2

    def drag(self, start, end):
        """Presses the button at one cell and lets it go at another, both (column, row)."""
        xdotool("mousemove", *self.cellAt(*start), "mousedown", 1)
        xdotool("mousemove", *self.cellAt(*end))
        waitFor(lambda: self.ask("selection")["end"][0] != -1, "the selection follows the mouse")
        xdotool("mouseup", 1)

    def wheel(self, up, times=1):
        xdotool("mousemove", *self.cellAt(40, 12))
        for _ in range(times):
            xdotool("click", 4 if up else 5)


def clipboard():
    """What any other program would get from the clipboard now, or None.

    Wine leaves who asks for an empty one without an answer.
    """
    try:
        done = subprocess.run(["xclip", "-selection", "clipboard", "-out"], capture_output=True, timeout=3)
    except subprocess.TimeoutExpired:
        return None
    # Between Windows and X, line ends are translated.
    return done.stdout.decode("latin-1").replace("\n", "\r\n") if done.returncode == 0 else None


def setClipboard(text):
    subprocess.run(["xclip", "-selection", "clipboard", "-in"], input=text.replace("\r\n", "\n").encode(), check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=10)


# The system's colours in schemes of high contrast, as Windows has them: (red, green, blue) by the names of the registry.
BLACK, WHITE, GREY, SILVER = (0, 0, 0), (255, 255, 255), (128, 128, 128), (192, 192, 192)
GREEN, DARK_GREEN, YELLOW, BLUE, PURPLE = (0, 255, 0), (0, 128, 0), (255, 255, 0), (0, 0, 255), (128, 0, 128)


def _scheme(ground, text, disabled, chosen, chosenText, captions):
    return {"ActiveTitle": captions, "AppWorkspace": ground, "Background": ground, "ButtonAlternateFace": SILVER,
            "ButtonDkShadow": text, "ButtonFace": ground, "ButtonHilight": SILVER, "ButtonLight": text,
            "ButtonShadow": GREY, "ButtonText": text, "GrayText": disabled, "Hilight": chosen,
            "HilightText": chosenText, "HotTrackingColor": text, "InfoText": text, "InfoWindow": ground,
            "Menu": ground, "MenuBar": ground, "MenuHilight": chosen, "MenuText": text, "Scrollbar": ground,
            "TitleText": chosenText, "Window": ground, "WindowFrame": text, "WindowText": text}


HIGH_CONTRAST = {"black": _scheme(BLACK, WHITE, GREEN, PURPLE, WHITE, PURPLE),
                 "white": _scheme(WHITE, BLACK, DARK_GREEN, BLACK, WHITE, BLACK),
                 "yellow": _scheme(BLACK, YELLOW, GREEN, BLUE, WHITE, BLUE)}


def setColours(scheme):
    """For the programs that are started from now on. The visual style, which has colours of its own, is switched off."""
    lines = ["REGEDIT4", r"[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\ThemeManager]",
             '"ThemeActive"="0"', r"[HKEY_CURRENT_USER\Control Panel\Colors]"]
    lines += [f'"{name}"="{red} {green} {blue}"' for name, (red, green, blue) in HIGH_CONTRAST[scheme].items()]
    with tempfile.NamedTemporaryFile("w", suffix=".reg") as file:
        file.write("\r\n".join(lines) + "\r\n")
        file.flush()
        subprocess.run([os.environ["WINE"], "regedit", "/S", file.name], check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


@contextlib.contextmanager
def silentHost():
    """A port at which connecting neither succeeds nor fails: its queue of waiting connections is full."""
    with contextlib.ExitStack() as open_:
        listener = open_.enter_context(socket.socket())
        listener.bind(("127.0.0.1", 0))
        listener.listen(0)
        for _ in range(8):
            waiting = open_.enter_context(socket.socket())
            waiting.setblocking(False)
            with contextlib.suppress(BlockingIOError):
                waiting.connect(listener.getsockname())
        port = listener.getsockname()[1]
        waitFor(lambda: waitingAt(port) > 0, "the queue is full")
        yield port
