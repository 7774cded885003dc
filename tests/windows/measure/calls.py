"""How often a client calls the system for a payload: calls of drawing and of the message loop, as Wine notes them. Beside
the program's own calls stand those that the system's libraries made, for it or for themselves."""

import collections
import os
import re
import subprocess
import tempfile
import threading
import time

import clients
import display
import processes
from drain import untilStill
from host import Sending
from payloads import HEAD, PAYLOADS, TAIL
from program import Failure

MIB = 1024 * 1024
LIMIT = 900.0  # seconds: each call that is noted takes its time
FUNCTIONS = {
    "gdi32": ("ExtTextOutA", "ExtTextOutW", "TextOutA", "TextOutW", "PatBlt", "BitBlt", "StretchBlt", "Rectangle",
              "LineTo", "Polyline", "SetDIBitsToDevice", "StretchDIBits", "SelectObject", "SetTextColor",
              "SetBkColor", "SetBkMode", "SetTextAlign", "GetTextExtentPoint32A", "GetTextExtentExPointA",
              "GetCharWidth32W", "GetCharWidthW", "GetCharacterPlacementW", "CreateSolidBrush", "DeleteObject",
              "IntersectClipRect", "GdiFlush", "PolyTextOutA", "PolyTextOutW"),
    "user32": ("FillRect", "InvertRect", "ScrollWindow", "ScrollWindowEx", "ScrollDC", "InvalidateRect",
               "UpdateWindow", "RedrawWindow", "BeginPaint", "EndPaint", "GetDC", "ReleaseDC", "SetScrollInfo",
               "SetScrollPos", "PeekMessageA", "PeekMessageW", "GetMessageA", "GetMessageW", "DispatchMessageA",
               "DispatchMessageW", "PostMessageA", "PostMessageW", "SendMessageA", "SendMessageW", "GetQueueStatus",
               "SetTimer", "KillTimer", "MsgWaitForMultipleObjects", "MsgWaitForMultipleObjectsEx"),
    "ws2_32": ("recv", "ioctlsocket", "WSARecv", "WSAAsyncSelect", "WSAEventSelect", "WSAEnumNetworkEvents",
               "select"),
}
NOTED = re.compile(rb"Call (\w+)\.(\w+)\(.* ret=([0-9a-f]+)")


def options(parser):
    parser.add_argument("--payload", action="append", choices=PAYLOADS, metavar="NAME",
                        help=f"one of {', '.join(PAYLOADS)}; may be repeated (all)")
    parser.add_argument("--mib", type=float, default=1, help="size of a payload in MiB (1)")
    parser.add_argument("--client", action="append", choices=("qxterm", "putty"), help="which one (both)")


def measure(arguments):
    limitNotes()
    for name in arguments.payload or PAYLOADS:
        data = HEAD + PAYLOADS[name](int(arguments.mib * MIB)) + TAIL
        counts = {}
        for client in clients.chosen(arguments.client or ("qxterm", "putty"), arguments.builds):
            counts[client.name] = counted(client, data)
        table(name, arguments.mib, counts)


def limitNotes():
    """Wine notes these functions only."""
    names = ";".join(f"{library}.{function}" for library, functions in FUNCTIONS.items() for function in functions)
    with tempfile.NamedTemporaryFile("w", suffix=".reg") as settings:
        settings.write("REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Debug]\r\n"
                       f"\"RelayInclude\"=\"{names}\"\r\n")
        settings.flush()
        subprocess.run([os.environ["WINE"], "regedit", "/S", f"Z:{settings.name}"], check=True)


class Notes(threading.Thread):
    """Counts what Wine notes, as it comes through a pipe, by library, function and place of the call. Use it in a with
    statement."""

    def __init__(self):
        super().__init__(daemon=True)
        self.counts = collections.Counter()
        reading, self.writing = os.pipe()
        self._pipe = os.fdopen(reading, "rb", buffering=MIB)

    def __enter__(self):
        self.start()
        return self

    def run(self):
        for line in self._pipe:
            if match := NOTED.search(line):
                self.counts[match.groups()] += 1

    def __exit__(self, *_):
        os.close(self.writing)
        self.join()
        self._pipe.close()


class Calls:
    """How often a client has called each function: itself, and the libraries."""

    def __init__(self, counts, image):
        self.own, self.others = collections.Counter(), collections.Counter()
        low, high = image
        for (library, function, place), count in counts.items():
            calls = self.own if low <= int(place, 16) < high else self.others
            calls[f"{library.decode()}.{function.decode()}"] += count


def counted(client, data):
    """The calls of one client between the first byte of the data and a window that stands still."""
    with Notes() as notes:
        client.environment = {"WINEDEBUG": "+relay"}
        client.errors = notes.writing
        with client:
            display.activate(client.window)
            with display.Display() as screen, client.area(screen) as area:
                untilStill(area, time.monotonic() + LIMIT)
                before = notes.counts.copy()
                sending = Sending(client.host, data)
                while not sending.received():
                    if time.monotonic() > sending.began + LIMIT or not client.alive():
                        raise Failure(f"{client.name} {'takes too long' if client.alive() else 'has ended'}")
                    time.sleep(0.1)
                untilStill(area, time.monotonic() + LIMIT)
                return Calls(notes.counts - before, processes.image(client.process))


def table(name, mib, counts):
    print(f"Calls for {mib:g} MiB of {name}:")
    print(f"  {'':<34}" + "".join(f"{client:>12}{'libraries':>12}" for client in counts))
    called = sorted({function for calls in counts.values() for function in calls.own + calls.others})
    for function in called:
        print(f"  {function:<34}" + "".join(f"{calls.own[function]:12}{calls.others[function]:12}"
                                            for calls in counts.values()), flush=True)
