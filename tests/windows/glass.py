"""What stands in the window, pixel by pixel, beside the picture in memory, and that beside the records.

The probe compares whenever a picture has been shown, while random output flows and the user selects, scrolls, opens
menus and has other windows in front. QXTERM_SEED chooses another run.
"""

import contextlib
import os
import random
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from blocks import ACCENTED, Blocks  # noqa: E402
from desk import Desk  # noqa: E402
from neighbour import windowInFront  # noqa: E402
from peers import Peer  # noqa: E402
from program import (SHOTS, TEST, Failure, capture, check, checkEqual, netProfile, run, saveScreen,  # noqa: E402
                     waitFor, writeProfiles, xdotool)

SEED = int(os.environ.get("QXTERM_SEED", "1"))
# Seconds a block: in the rest of them the program shows the picture and waits. After a longer rest the next picture may
# be shown before a paint that waits.
PACE = 0.005
SLOW = 0.06
SIZES = {"medium": ("m", 10), "large": ("l", 11), "small": ("s", 9)}  # letter of the Options dialog, points
STEPS = 1000  # blocks at each size after which the comparison has been made
PATIENCE = 300  # seconds at each size
ACTIVE = "A connection is active, exit anyway?"


class Feeder:
    """Sends block after block; the next one when the program has interpreted the one before."""

    def __init__(self, peer, seed, without):
        self.peer = peer
        self.sent = []
        self.pace = PACE
        self.kind = Blocks.block
        self._blocks = Blocks(seed, without)
        self._go = threading.Event()
        self._idle = threading.Event()
        self._end = False
        self._failure = None
        self._thread = threading.Thread(target=self._run)

    def __enter__(self):
        self._thread.start()
        self.resume()
        return self

    def __exit__(self, *_):
        self._end = True
        self._go.set()
        self._thread.join()

    def resume(self):
        self._idle.clear()
        self._go.set()

    def pause(self):
        """Returns when the last block has been interpreted."""
        self._go.clear()
        waitFor(self._idle.is_set, "the last block is interpreted")
        if self._failure is not None:
            raise self._failure

    def _run(self):
        try:
            while not self._end:
                if not self._go.is_set():
                    self._idle.set()
                    self._go.wait()
                    continue
                began = time.monotonic()
                self._send()
                time.sleep(max(0.0, began + self.pace - time.monotonic()))
        except Failure as failure:
            self._failure = failure
        finally:
            self._idle.set()

    def _send(self):
        number = len(self.sent)
        # An option of telnet that nobody has: its refusal comes when all before it has been interpreted.
        option = bytes((100 + number % 100,))
        block = self.kind(self._blocks, number)
        self.sent.append(block)
        self.peer.received.clear()
        self.peer.send(block + b"\xff\xfd" + option)
        waitFor(lambda: b"\xff\xfc" + option in bytes(self.peer.received), f"block {number} is interpreted",
                pause=0.001)


class User:
    """What the user does, at random, while output flows."""

    def __init__(self, desk, feeder, seed):
        self.desk, self.feeder = desk, feeder
        self.random = random.Random(seed)
        self.done = []
        self.compared = 0
        self.measure()

    def measure(self):
        places, view = self.desk.ask("places", "view")
        self.place, self.cellSize = places["picterm"], view["cell"]
        self.bar = places["frmterm"]["controls"]["vscterm"]
        # Where the mouse changes nothing.
        self.aside = (5, 5)

    def at(self, column, row):
        left, top = self.place[:2]
        width, height = self.cellSize
        return left + column * width + width // 2, top + row * height + height // 2

    def anywhere(self):
        return self.at(self.random.randint(0, 79), self.random.randint(0, 23))

    def drag(self):
        moves = []
        for _ in range(self.random.randint(1, 6)):
            moves += ["mousemove", *self.anywhere(), "sleep", "0.03"]
        xdotool("mousemove", *self.anywhere(), "mousedown", 1, *moves, "mouseup", 1)

    def click(self):
        xdotool("mousemove", *self.anywhere(), "click", 1)

    def wheel(self):
        """Back and forth, with selections in the scrollback; output would bring the live screen back."""
        self.feeder.pause()
        clicks = []
        for _ in range(self.random.randint(2, 8)):
            clicks += ["click", "--repeat", self.random.randint(1, 12), self.random.choice((4, 4, 5))]
        xdotool("mousemove", *self.anywhere(), *clicks)
        if self.random.random() < 0.6:
            self.drag()
        left, top, width, height = self.bar
        across = left + width // 2
        for _ in range(self.random.randint(0, 3)):
            down = self.random.choice((top + 8, top + height - 8, top + height // 3))
            xdotool("mousemove", across, down, "click", 1)
        self.shows()
        self.feeder.resume()

    def dragAbove(self):
        """The view scrolls under the mouse that leaves the page with the button held."""
        if self.random.random() < 0.5:
            self.feeder.pause()
        x, _ = self.anywhere()
        top = self.place[1]
        xdotool("mousemove", *self.anywhere(), "mousedown", 1, "mousemove", x, top - 12, "sleep", "0.35", "mousemove",
                *self.anywhere(), "sleep", "0.05", "mouseup", 1)
        self.feeder.resume()

    def menu(self):
        self.desk.openMenu(self.random.choice("pech"))
        time.sleep(0.2)
        self.desk.closeMenu()

    def about(self):
        self.desk.menu("h", "a")
        self.desk.dialog("frmSplash")
        time.sleep(0.2)
        self.desk.key("Return")
        self.desk.gone("frmSplash")

    def question(self):
        self.desk.close()
        self.desk.messageBox(ACTIVE)
        time.sleep(0.2)
        self.desk.answer(ACTIVE, "No")

    def minimise(self):
        window = self.desk.mainWindowId()
        xdotool("windowminimize", "--sync", window)
        time.sleep(0.3)
        restore(self.desk, window)
        self.measure()

    def covered(self):
        self.desk.ask("cover")
        for self.feeder.pace, self.feeder.kind in ((SLOW, Blocks.scroll), (PACE, Blocks.scroll), (PACE, Blocks.block)):
            for _ in range(3):
                self.random.choice((self.drag, self.click, lambda: time.sleep(0.3)))()
        self.desk.ask("uncover")

    def inFront(self):
        with windowInFront():
            time.sleep(0.5)
        self.still()

    def watch(self):
        """Nothing but output: in the loops of menus and boxes fewer blocks are seen one by one."""
        time.sleep(1)

    def still(self):
        self.feeder.pause()
        self.shows()
        self.feeder.resume()

    def shows(self):
        """What the display shows is what the system says of the window. Output does not flow now."""
        xdotool("mousemove", *self.aside)
        path = Path(self.desk.scratch) / "copy.ppm"

        def equal():
            if not self.desk.ask("copy")["whole"]:
                return False
            told = path.read_bytes()
            shown = capture(*self.place)
            return told[-len(shown):] == shown

        waitFor(equal, lambda: f"the display shows the window's pixels; see {keep(self.desk, 'copy')}, "
                               f"{saveScreen(TEST + '-display')}")
        self.compared += 1

    def round(self):
        """Each of it, in another order every time."""
        actions = [self.drag, self.drag, self.drag, self.click, self.wheel, self.wheel, self.dragAbove, self.menu,
                   self.about, self.question, self.minimise, self.covered, self.covered, self.covered, self.inFront,
                   self.still, self.watch, self.watch, self.watch]
        self.random.shuffle(actions)
        for action in actions:
            self.done.append(f"{len(self.feeder.sent)} {action.__name__}")
            try:
                action()
            except Failure as failure:
                raise Failure(f"{failure}\n    the user's last steps: {self.done[-6:]}") from failure
            yield


def restore(desk, window):
    """A minimised window comes back. Under Wine that may be half outside of the display when its size changes on the
    way, with the function-key bar."""
    xdotool("windowactivate", "--sync", window)
    time.sleep(0.3)
    xdotool("windowmove", "--sync", window, 120, 120)
    places = []

    def settled():
        places.append(desk.ask("places")["picterm"])
        return len(places) > 3 and places[-1] == places[-4] and all(120 <= at < 200 for at in places[-1][:2])

    waitFor(settled, lambda: f"the window is back: {places[-1]}; see {saveScreen(TEST + '-gone')}")


def keep(desk, name):
    """A picture that the probe has written, to be looked at; returns its path."""
    source = Path(desk.scratch) / f"{name}.ppm"
    if not source.exists():
        return f"no picture {name}"
    SHOTS.mkdir(parents=True, exist_ok=True)
    target = SHOTS / f"{TEST}-{name}.png"
    if subprocess.run(["convert", str(source), str(target)]).returncode != 0:
        target = target.with_suffix(".ppm")
        shutil.copy(source, target)
    return target


def lookAt(desk, feeder, user, seed):
    """Raises what the probe has found."""
    told = desk.ask("glass")
    failure = told["failure"]
    if not failure:
        return told
    lines = [f"seed {seed}, step {failure['step'].strip()}: {failure['what']}, {failure['left out']} cells covered"]
    for name, value in failure["where"].items():
        lines += [f"    {name}: {value}"] if not isinstance(value, list) else [f"    {name}:"] + [
            f"        {line}" for line in value]
    step = failure["step"].strip()
    last = int(step) if step.isdigit() else len(feeder.sent) - 1
    lines += [f"    block {n}: {feeder.sent[n]!r}" for n in range(max(0, last - 2), min(last + 2, len(feeder.sent)))]
    lines.append(f"    the user's last steps: {user.done[-6:]}")
    lines.append(f"    see {keep(desk, 'found')}, {keep(desk, 'wanted')}, {saveScreen(TEST + '-display')}")
    raise Failure("\n".join(lines))


def wideCharacters(desk):
    """Codes of characters that are wider than a cell at one of the sizes, which depends on the fonts of the machine: of such a
    one pixels may stand beside it or not, as the text was drawn in one piece or in several."""
    wide = set()
    for name in ("large", "small", "medium"):
        chooseSize(desk, name)
        looks = desk.ask("glass")["looks"]
        waitFor(lambda: desk.ask("glass")["looks"] > looks + 2, f"a picture of size {name} is looked at")
        wide |= {int(one.split()[1]) for one in desk.ask("glass")["overhanging"]}
    check(wide <= set(ACCENTED) and len(wide) < len(ACCENTED) // 2, f"characters wider than a cell: {wide}")
    return wide


def chooseSize(desk, name):
    letter, points = SIZES[name]
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    desk.focusIs("fptOptions")
    desk.key("ctrl+Prior", "alt+" + letter, "Return")
    desk.gone("frmOptions")
    waitFor(lambda: desk.ask("profile")["fontsize"] == points, f"the size is {name}")


def anything():
    with Peer() as peer:
        writeProfiles({"glass": netProfile(peer.port, Font="medium")})
        with Desk("glass") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            began = time.monotonic()
            seed = SEED
            print(f"seed {seed}", flush=True)
            wide = wideCharacters(desk)
            with Feeder(peer, seed, wide) as feeder:
                user = User(desk, feeder, seed)
                for number, name in enumerate(SIZES, 1):
                    if name != "medium":
                        chooseSize(desk, name)
                    user.measure()
                    end = time.monotonic() + PATIENCE
                    steps, rounds = 0, 0
                    while steps < number * STEPS:
                        for _ in user.round():
                            steps = lookAt(desk, feeder, user, seed)["steps"]
                            check(time.monotonic() < end, f"{STEPS} blocks are compared in {PATIENCE} s")
                            if rounds > 0 and steps >= number * STEPS:
                                break
                        rounds += 1
                feeder.pause()
                user.shows()
                told = lookAt(desk, feeder, user, seed)
            told.pop("failure")
            print(f"{len(feeder.sent)} blocks, {len(user.done)} of the user's steps, {user.compared} pictures of the "
                  f"display, {time.monotonic() - began:.0f} s: {told}; wider than a cell: {wide}")
            check(told["with records"] >= told["steps"], "as many pictures were compared with the records")
            checkEqual(desk.boxes(), [], "message boxes")


class Lines:
    """A host that sends numbered lines without end, until it is told to stop."""

    def __init__(self, atOnce, pause):
        """atOnce: lines in one block. pause: seconds between two blocks."""
        self.atOnce, self.pause = atOnce, pause
        self.sent = 0
        self.stopped = False
        self.flow = threading.Event()
        self.flow.set()

    def __call__(self, connection):
        connection.sendall(b"\x1b[2J\x1b[H")
        while not self.stopped:
            self.flow.wait()
            numbers = range(self.sent, self.sent + self.atOnce)
            connection.sendall("".join("\r\n" + self.line(number) for number in numbers).encode())
            self.sent += self.atOnce
            time.sleep(self.pause)

    def line(self, number):
        return f"line {number:07} {'=-' * (number % 30)}".rstrip()


@contextlib.contextmanager
def flowing(atOnce, pause):
    """A window with lines that flow; afterwards none of them is lost, and the window shows what it should."""
    lines = Lines(atOnce, pause)
    with Peer(lines) as peer:
        writeProfiles({"flood": netProfile(peer.port)})
        with Desk("flood") as desk:
            desk.waitState("g_bConnectActive", True)
            desk.gone("frmConn")
            waitFor(lambda: lines.sent > 20 * atOnce, "the lines flow")
            try:
                yield desk, lines
            finally:
                lines.stopped = True
                lines.flow.set()
            waitFor(lambda: desk.rows()[23] == lines.line(lines.sent - 1), lambda: f"line {lines.sent - 1} arrives:\n"
                                                                                 f"{desk.page()}")
            stored = [line["text"].rstrip() for line in desk.ask("scrollback")["lines"]] + desk.rows()[:24]
            count = min(lines.sent, len(stored))
            checkEqual(stored[-count:], [lines.line(number) for number in range(lines.sent - count, lines.sent)],
                       "the lines, in their order")
            isShown(desk, "at the end")
            desk.noBoxes()


def isShown(desk, what):
    """The window shows the picture, and that the records, while no output comes any more."""
    told = desk.ask("glass")
    end = told["looks"] + 5

    def compared():
        told.update(desk.ask("glass"))
        return told["failure"] or told["looks"] >= end

    waitFor(compared, f"{what}: the window is compared")
    check(not told["failure"], f"{what}: {told['failure']}; see {keep(desk, 'found')}, {keep(desk, 'wanted')}")


def goesOn(desk, lines, what):
    """The window shows one line after another."""
    left, top, width, height = desk.ask("places")["picterm"]
    row = height // 25
    sent = lines.sent
    pictures = set()

    def look():
        pictures.add(capture(left, top + 21 * row, width // 4, 3 * row))
        return len(pictures) >= 5

    waitFor(look, lambda: f"{what}: there are {len(pictures)} pictures of the window; see {saveScreen(TEST + '-stands')}",
            pause=0.1)
    check(lines.sent > sent, f"{what}: the lines flow on")
    lines.flow.clear()
    isShown(desk, what)
    lines.flow.set()


def boxes():
    for atOnce, pause in ((50, 0), (1, 0.05)):
        with flowing(atOnce, pause) as (desk, lines):
            behindBoxes(desk, lines)


def behindBoxes(desk, lines):
    """A menu, the About box and the question about closing: behind each the screen lives on."""
    desk.openMenu("h")
    goesOn(desk, lines, "a menu is open")
    desk.waitMenu()
    desk.key("a")
    waitFor(lambda: "frmSplash" in desk.ask("forms"), lambda: f"the About box opens: {desk.ask('windows')}; "
                                                              f"see {saveScreen(TEST + '-about')}")
    desk.dialog("frmSplash")
    goesOn(desk, lines, "the About box is open")
    desk.key("Return")
    desk.gone("frmSplash")
    desk.close()
    desk.messageBox(ACTIVE)
    goesOn(desk, lines, "the question is open")
    desk.answer(ACTIVE, "No")
    goesOn(desk, lines, "all is closed")


def keys():
    """Letters typed in a menu reach it, whatever the program is doing meanwhile."""
    with flowing(50, 0) as (desk, _):
        for number in range(7):
            desk.openMenu("h")
            time.sleep(0.05 * number)
            desk.key("a")
            desk.dialog("frmSplash")
            desk.key("Return")
            desk.gone("frmSplash")


def outOfSight():
    """Minimised, and with another window in front, during the flood."""
    with flowing(50, 0) as (desk, lines):
        for _ in range(3):
            window = desk.mainWindowId()
            xdotool("windowminimize", "--sync", window)
            sent = lines.sent
            waitFor(lambda: lines.sent > sent + 1000, "the flood moves on behind")
            restore(desk, window)
            goesOn(desk, lines, "the window is back")
        with windowInFront():
            sent = lines.sent
            waitFor(lambda: lines.sent > sent + 1000, "the flood moves on below")
        goesOn(desk, lines, "nothing is in front")


if __name__ == "__main__":
    run(anything, boxes, keys, outOfSight)
