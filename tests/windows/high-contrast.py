"""The dialogs in the system's schemes of high contrast: how far each text stands out from what is behind it, by pixels."""

import sys
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import HIGH_CONTRAST, Desk, setColours  # noqa: E402
from peers import Peer  # noqa: E402
from program import capture, check, netProfile, run, saveScreen, waitFor, writeProfiles, xdotool  # noqa: E402
from reader import readControls  # noqa: E402

SCREEN = (1024, 768)
# Ratios of luminance: what guidelines ask of text at best, and the least that tells a disabled one from its ground.
ENABLED, DISABLED = 7.0, 3.0
# Pixels at a control's edges that are no text: borders, the ring of the default button, the mark of the focus.
EDGE = {"Button": 5, "Static": 0}
OTHER_EDGE = 4
CAPTION_HEIGHT = 13
FRAME_HEIGHT = 40  # buttons are lower
FEWEST = 4  # pixels of one colour that count as a stroke


def luminance(pixel):
    def linear(value):
        part = value / 255
        return part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4

    red, green, blue = map(linear, pixel)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def ratio(one, other):
    light, dark = sorted((luminance(one), luminance(other)), reverse=True)
    return (light + 0.05) / (dark + 0.05)


def contrast(pixels, left, top, width, height):
    """Of the text in an area: the colour furthest from the most frequent one."""
    colours = Counter()
    for row in range(max(top, 0), min(top + height, SCREEN[1])):
        line = pixels[(row * SCREEN[0] + left) * 3:(row * SCREEN[0] + left + width) * 3]
        colours.update(line[at:at + 3] for at in range(0, len(line), 3))
    ground = colours.most_common(1)[0][0]
    return max((ratio(colour, ground) for colour, count in colours.items() if count >= FEWEST), default=1.0)


def textAreas(control):
    """Where a control shows its text, or nothing."""
    left, top, width, height = control["place"]
    kind = control["class"]
    if kind in ("ScrollBar", "QxtermPicture") or not (control["value"] or control["name"]):
        return None
    if kind in ("Edit", "ComboBox") and not control["value"] or kind == "ListBox":
        return None
    if kind == "ComboBox":
        width -= 20  # the arrow
    if kind == "Button" and height > FRAME_HEIGHT:
        return left + 9, top, min(width - 18, 60), CAPTION_HEIGHT  # a frame's caption
    edge = EDGE.get(kind, OTHER_EDGE)
    return left + edge, top + edge, width - 2 * edge, height - 2 * edge


def readable(desk, scheme, what, text):
    """Of what is in front once this text is there."""
    xdotool("mousemove", 2, SCREEN[1] - 2)  # nothing is hot under the mouse
    measured = {}

    def poor():
        controls = readControls()["controls"]
        pixels = capture(0, 0, *SCREEN)
        measured.clear()
        for control in controls:
            area = textAreas(control)
            if area is not None:
                least = ENABLED if control["enabled"] else DISABLED
                measured[control["name"]] = (round(contrast(pixels, *area), 1), least)
        if text not in measured:
            return {text: "is not there"}
        return {name: both for name, both in measured.items() if both[0] < both[1]}

    try:
        waitFor(lambda: not poor(), lambda: f"{what} in {scheme}: contrast, and what it has to be: {poor()}", seconds=10)
    finally:
        saveScreen(f"high-contrast-{scheme}-{what}")
    return measured


def inScheme(scheme, peer):
    setColours(scheme)
    with Desk("demo") as desk:
        desk.waitState("g_bConnectActive", True)
        desk.gone("frmConn")
        peer.send(b"\x1b[0p")
        waitFor(lambda: desk.ask("keys")["bar"], "the function-key bar is shown")
        check(len(readable(desk, scheme, "bar", "F8")) == 8, "eight buttons")
        desk.menu("p", "a")
        desk.dialog("frmprof")
        readable(desk, scheme, "save-as", "Profile name:")
        desk.type("demo")
        desk.key("Return")
        desk.messageBox("exists")
        readable(desk, scheme, "box", "Yes")
        desk.answer("exists", "No")
        desk.key("Escape")
        desk.gone("frmprof")
        desk.menu("c", "o")
        desk.dialog("frmOptions")
        for letter, page, text in (("n", "network", "Network Port:"), ("m", "serial", "Baud Rate:")):
            desk.key("alt+" + letter)
            readable(desk, scheme, page, text)
        for page, text in (("modem", "Dial Prefix:"), ("time-out", "Auto Retry"), ("font-sizes", "Small")):
            desk.key("ctrl+Tab")
            readable(desk, scheme, page, text)


def schemes():
    with Peer() as peer:
        writeProfiles({"demo": netProfile(peer.port, Font="medium")})
        for scheme in HIGH_CONTRAST:
            inScheme(scheme, peer)


run(schemes)
