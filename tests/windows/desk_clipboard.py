"""The clipboard at its worst: a megabyte of text, control characters, and held by another program."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, clipboard, setClipboard  # noqa: E402
from neighbour import heldClipboard  # noqa: E402
from peers import Peer  # noqa: E402
from program import check, checkEqual, netProfile, run, waitFor, writeProfiles  # noqa: E402

LINES = [f"{n:06}" + "." * 56 for n in range(16384)]
MEBIBYTE = "".join(line + "\r\n" for line in LINES)
DENIED = "An unexpected error 70 has occurred\r\nroutine: mnueditItem_Click\r\nmessage: Permission denied"
# Seconds. A window that is asked answers at once while it works: so long does it go on working, and so long does it take when
# the machine is busy otherwise.
LATENCY, LATENCY_OF_ALL = 0.1, 0.5


def connected(desk):
    desk.waitState("g_bConnectActive", True)
    desk.gone("frmConn")
    desk.focus()


def megabyteIntoTheLoop():
    checkEqual(len(MEBIBYTE), 1 << 20, "the length of the text")
    writeProfiles({"loop": {"connect": "loop", "Font": "small"}})
    setClipboard(MEBIBYTE)
    with Desk("loop") as desk:
        connected(desk)
        desk.menu("e", "p")
        # The first question comes while the text is being taken, on a quick machine the only one.
        times = [desk.answerTime()]
        end = time.monotonic() + 20
        while desk.rows()[22] != LINES[-1] and time.monotonic() < end:
            times.append(desk.answerTime())
        desk.waitRows({**{row: LINES[row - 23] for row in range(23)}, 23: "", 24: ""}, "the end of the text")
        slowest, longest = (max(column) for column in zip(*times))
        check(longest < LATENCY, f"the window works for {longest:.3f} s before it answers")
        check(slowest < LATENCY_OF_ALL, f"the window answers after {slowest:.2f} s")
        checkEqual([line["text"].rstrip() for line in desk.ask("scrollback")["lines"]], LINES[-523:-23],
                   "the scrollback")
        desk.noBoxes()


def toTheHost():
    # All but the zero, which ends a text, and the line ends, which X and Windows write differently.
    control = "".join(map(chr, (c for c in range(1, 127) if c not in (10, 13))))
    with Peer() as peer:
        writeProfiles({"net": netProfile(peer.port)})
        with Desk("net") as desk:
            connected(desk)
            setClipboard(control)
            desk.menu("e", "p")
            peer.expect(control.encode(), "control characters")
            setClipboard(MEBIBYTE)
            desk.menu("e", "p")
            peer.expect(MEBIBYTE.encode(), "a megabyte")
            held(desk, peer)


def held(desk, peer):
    """Copy says so and keeps the selection, Clear says so, Paste has nothing; all work again afterwards."""
    setClipboard("before")
    peer.send(b"marked text")
    desk.waitText("marked text", row=0)
    desk.drag((0, 0), (6, 0))
    waitFor(lambda: desk.ask("selection")["text"] == "marked", "the selection")
    with heldClipboard():
        for entry in ("c", "l"):
            desk.menu("e", entry)
            desk.answer(DENIED, "OK")
            checkEqual(desk.ask("selection")["text"], "marked", "the selection with the clipboard held")
        desk.menu("e", "p")
        desk.type("k")
        peer.expect(b"k", "a key behind a paste of nothing")
        desk.noBoxes()
    desk.menu("e", "c")
    waitFor(lambda: clipboard() == "marked", lambda: f"the clipboard holds the selection: {clipboard()!r}")
    desk.menu("e", "p")
    peer.expect(b"marked", "Paste once the clipboard is free")


run(megabyteIntoTheLoop, toTheHost)
