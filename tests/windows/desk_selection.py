"""Selection, clipboard and scrollback in the real window."""

import sys
import threading
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, clipboard, setClipboard  # noqa: E402
from peers import Peer  # noqa: E402
from program import capture, check, checkEqual, netProfile, run, waitFor, writeProfiles, xdotool  # noqa: E402

LINES = [f"line {n:02} of the record" for n in range(60)]
LIVE = 501


def rowPixels(desk, row):
    """The pixels of one row of the window."""
    places, view = desk.ask("places", "view")
    left, top, width, _ = places["picterm"]
    height = view["cell"][1]
    return capture(left, top + row * height, width, height)


def scroll(desk):
    return desk.ask("view")["scroll"]


def selects(desk, start, end, expected, what):
    """Selects with the mouse and copies by the menu; expected: the clipboard's text, None for no selection."""
    setClipboard("before")
    desk.drag(start, end)
    desk.openMenu("e")
    checkEqual(desk.entries("edit"), {"&Copy": True, "&Paste": True, "C&lear": True}, f"the Edit menu, {what}")
    desk.key("c")
    waitFor(lambda: clipboard() == expected, lambda: f"{what}: the clipboard holds {expected!r}: {clipboard()!r}")
    checkEqual(desk.ask("selection")["text"], "", f"what is selected after Copy, {what}")


def selection(desk, peer):
    # 60 lines, each ended; the 60th stands in row 22.
    peer.send("\r\n".join(LINES).encode() + b"\r\n")
    desk.waitText(LINES[59], row=22)
    untouched = rowPixels(desk, 5)
    first = 37
    check(desk.rows()[0] == LINES[first], "the first row")
    selects(desk, (5, 3), (7, 3), "40", "within a line")
    selects(desk, (7, 3), (5, 3), "40", "from right to left")
    selects(desk, (8, 2), (7, 4), "of the record\r\n" + LINES[40] + "\r\nline 41", "over three lines")
    selects(desk, (7, 4), (8, 2), "of the record\r\n" + LINES[40] + "\r\nline 41", "upward")
    checkEqual(rowPixels(desk, 5), untouched, "the pixels of a line after it was selected")
    # Shown while it is selected, over what scrolls, too.
    desk.drag((0, 5), (30, 5))
    waitFor(lambda: rowPixels(desk, 5) != untouched, "the selection is seen")
    xdotool("mousemove", *desk.cellAt(60, 10), "click", 1)
    waitFor(lambda: rowPixels(desk, 5) == untouched, "a click takes the selection away")
    checkEqual(desk.ask("selection")["end"][0], -1, "the selection after a click")


def pasteAndClear(desk, peer):
    peer.received.clear()
    setClipboard("two lines\r\nof text\t~")
    desk.menu("e", "p")
    peer.expect(b"two lines\r\nof text\t~", "Paste")
    desk.menu("e", "l")
    waitFor(lambda: not clipboard(), lambda: f"Clear empties the clipboard: {clipboard()!r}")
    desk.openMenu("e")
    checkEqual(desk.entries("edit"), {"&Copy": False, "&Paste": False, "C&lear": False}, "the Edit menu with nothing")
    desk.closeMenu()


def scrollBack(desk, peer):
    checkEqual(scroll(desk), LIVE, "the view before")
    row = rowPixels(desk, 2)
    desk.wheel(up=True)
    waitFor(lambda: scroll(desk) < LIVE, "the wheel scrolls back")
    lines = LIVE - scroll(desk)
    waitFor(lambda: rowPixels(desk, 2 + lines) == row, "the picture has moved down with the text")
    # By the bar's arrow, line by line.
    left, top, width, _ = desk.ask("places")["frmterm"]["controls"]["vscterm"]
    before = scroll(desk)
    desk.clickAt(left + width // 2, top + width // 2)
    waitFor(lambda: scroll(desk) == before - 1, lambda: f"the arrow scrolls by a line: {scroll(desk)}")
    waitFor(lambda: rowPixels(desk, 3 + lines) == row, "the picture follows the bar")
    # What stands in the scrollback can be selected: two lines at the top of the view.
    at = 37 - (LIVE - scroll(desk))
    selects(desk, (0, 0), (7, 1), LINES[at] + "\r\n" + LINES[at + 1][:7], "in the scrollback")
    # To the oldest line.
    for _ in range(60):
        if scroll(desk) == LIVE - 37:
            break
        desk.wheel(up=True)
    waitFor(lambda: scroll(desk) == LIVE - 37, lambda: f"the wheel ends at the oldest line: {scroll(desk)}")
    selects(desk, (0, 0), (7, 0), "line 00", "the oldest line")


def dragAboveTheWindow(desk, peer):
    """The view follows the mouse that leaves the screen with the button held."""
    for _ in range(60):
        if scroll(desk) == LIVE:
            break
        desk.wheel(up=False)
    waitFor(lambda: scroll(desk) == LIVE, "the wheel comes back to the live screen")
    setClipboard("before")
    x, y = desk.cellAt(10, 3)
    top = desk.ask("places")["picterm"][1]
    xdotool("mousemove", x, y, "mousedown", 1)
    xdotool("mousemove", x, top - 12)
    waitFor(lambda: scroll(desk) < LIVE - 4, lambda: f"the view scrolls back: {scroll(desk)}")
    xdotool("mousemove", *desk.cellAt(0, 2))
    waitFor(lambda: desk.ask("selection")["end"] == [0, scroll(desk) + 2], "the selection ends at the mouse")
    xdotool("mouseup", 1)
    first = 37 - (LIVE - scroll(desk)) + 2
    desk.menu("e", "c")
    expected = "\r\n".join([*LINES[first:40], LINES[40][:10]])
    waitFor(lambda: clipboard() == expected, lambda: f"the clipboard holds {expected!r}: {clipboard()!r}")


def outputWhileScrolling(desk, peer):
    """Lines arrive while the user scrolls; the view then shows the live screen, and all is well."""
    stop = threading.Event()

    def flow():
        number = 0
        while not stop.wait(0.02):
            peer.send(f"flow {number:05}\r\n".encode())
            number += 1

    left, top, width, _ = desk.ask("places")["frmterm"]["controls"]["vscterm"]
    feeder = threading.Thread(target=flow)
    feeder.start()
    try:
        for _ in range(8):
            desk.wheel(up=True, times=2)
            xdotool("mousemove", left + width // 2, top + width // 2, "click", 1)
    finally:
        stop.set()
        feeder.join()
    peer.send(b"\r\nend of the flow")
    desk.waitText("end of the flow", row=23)
    waitFor(lambda: scroll(desk) == LIVE, "output brings the live screen back")
    rows = [row for row in desk.rows()[:22] if row]
    numbers = [int(row.split()[1]) for row in rows if row.startswith("flow")]
    checkEqual(numbers, list(range(numbers[0], numbers[0] + len(numbers))), "no line of the flow is lost")
    desk.noBoxes()


def desk():
    with Peer() as peer:
        writeProfiles({"record": netProfile(peer.port, Font="medium")})
        with Desk("record") as window:
            window.waitState("g_bConnectActive", True)
            window.gone("frmConn")
            for part in (selection, pasteAndClear, scrollBack, dragAboveTheWindow, outputWhileScrolling):
                part(window, peer)


run(desk)
