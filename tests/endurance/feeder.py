"""The host's side of a run: gigabytes at the window's pace, through any number of sessions."""

import contextlib
import socket
import threading
import time

import payloads
from host import Host

PIECE = 65536  # bytes that are sent at once
MEGABYTE = 1_000_000
GOES_ON = b"\x1bc\x1b[?7h"  # before a payload, and where a new session goes on with it
PAGE_ROWS = 24


def withoutLineEnd(size):
    """A line that never ends: half of it wraps at the right edge, half stays there."""
    words = payloads.plain(size).replace(b"\r\n", b" ")
    return b"\x1b[?7h" + words[:len(words) // 2] + b"\x1b[?7l" + words[len(words) // 2:] + b"\x1b[?7h"


KINDS = {"y lines": payloads.yes, "no line end": withoutLineEnd, "recorded": payloads.recorded,
         "plain": payloads.plain, "application": payloads.application}


class TypedHost(Host):
    """Keeps what has come since the last look, and when its last byte came."""

    def take(self):
        """All that has come, and forgets it."""
        found, self.arrivals[:] = list(self.arrivals), []
        return b"".join(block for _, block in found)

    def come(self):
        return b"".join(block for _, block in list(self.arrivals))

    def hangUp(self):
        """Ends the session. Closing alone would wait for the thread that receives."""
        with contextlib.suppress(OSError):
            self.connection.shutdown(socket.SHUT_RDWR)
        self.forget()

    def isRead(self):
        return self.connection is not None and super().isRead()


class Feeder(threading.Thread):
    """Sends payloads of one kind, whole ones, until so many bytes are sent or it is stopped."""

    def __init__(self, host, kind, total):
        super().__init__(daemon=True)
        self._host, self._total = host, total
        self._payload = KINDS[kind](MEGABYTE)
        self._over = threading.Event()
        self.sent = 0
        self.start()

    def run(self):
        ended = None
        while self.sent < self._total and not self._over.is_set():
            connection = self._host.connection
            if connection is None or connection is ended:
                time.sleep(0.02)
                continue
            try:
                self._whole(connection)
            except OSError:
                ended = connection

    def _whole(self, connection):
        for data in (GOES_ON, self._payload):
            for at in range(0, len(data), PIECE):
                piece = data[at:at + PIECE]
                connection.sendall(piece)
                self.sent += len(piece)

    def stop(self):
        """Waits for the end of the payload that is on its way."""
        self._over.set()
        self.join()


def page(random, number):
    """An ordinary page that fills every cell, and its rows."""
    output, rows = b"\x1bc\x1b[?7l\x1b[m", {}
    for row in range(PAGE_ROWS):
        text = f"{number:4} {row:2} {payloads.words(random, random.randint(10, 60))}".rstrip()
        output += b"\x1b[%d;1H%-80s" % (row + 1, text.encode())
        rows[row] = text
    return output + b"\x1b[?7h\x1b[1;1H", rows
