"""The host of one client: it listens, sends, and knows what the client has left unread."""

import contextlib
import fcntl
import socket
import struct
import termios
import threading
import time

from listener import Listener
from program import waitFor

PIECE = 16384  # bytes of a flood that are sent at once
SOCK_DIAG = 4  # the protocol of netlink by which the system tells of its sockets
BY_FAMILY = 20
REQUEST = 1
ANY_COOKIE = 0xFFFFFFFF
ALL_STATES = 0xFFFFFFFF
LENGTHS = 16 + 4 + 48 + 4  # the header, the kind of socket, its addresses, its timer: then come the two lengths


class Queue:
    """What lies in the receive queue of a client's socket. Asking costs microseconds, where reading /proc/net/tcp costs
    milliseconds."""

    def __init__(self, client, host):
        """client, host: the addresses of the connection's two ends."""
        addresses = struct.pack("!HH4s12x4s12x", client[1], host[1], *(socket.inet_aton(end[0]) for end in (client, host)))
        asked = struct.pack("=BBBBI", socket.AF_INET, socket.IPPROTO_TCP, 0, 0, ALL_STATES) + addresses + \
            struct.pack("=III", 0, ANY_COOKIE, ANY_COOKIE)
        self._request = struct.pack("=IHHII", 16 + len(asked), BY_FAMILY, REQUEST, 1, 0) + asked
        self._system = socket.socket(socket.AF_NETLINK, socket.SOCK_RAW, SOCK_DIAG)

    def length(self):
        """Bytes that the client has not read yet; None when its socket is gone."""
        self._system.send(self._request)
        answer = self._system.recv(4096)
        if struct.unpack_from("=IH", answer)[1] != BY_FAMILY:
            return None
        return struct.unpack_from("=I", answer, LENGTHS)[0]

    def close(self):
        self._system.close()


class Host:
    """Use it in a with statement. Serves the newest connection; keeps what the client sends, and when it came."""

    def __init__(self):
        self.arrivals = []
        self.connection = None
        self.connectedAt = self.endedAt = None
        self._queue = None
        self._listener = Listener(self._take)
        self.port = self._listener.port

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._listener.close()
        self.forget()

    def forget(self):
        """Closes the connection, if there is one."""
        if self.connection is not None:
            self.connection.close()
            self._queue.close()
            self.connection = None

    def _take(self, connection):
        self.forget()
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._queue = Queue(connection.getpeername(), connection.getsockname())
        self.endedAt = None
        self.connectedAt = time.monotonic()
        self.connection = connection
        threading.Thread(target=self._receive, args=(connection,), daemon=True).start()

    def _receive(self, connection):
        block = b" "
        while block:
            try:
                block = connection.recv(4096)
            except OSError:
                block = b""
            self.arrivals.append((time.monotonic(), block))
        self.endedAt = time.monotonic()

    def waitConnected(self, seconds=60):
        waitFor(lambda: self.connection is not None, "the client connects", seconds)

    def send(self, data):
        self.connection.sendall(data)

    def isRead(self):
        """Whether the client has read all that was sent. What is still to be acknowledged may not be in its queue yet."""
        unacknowledged = struct.unpack("i", fcntl.ioctl(self.connection, termios.TIOCOUTQ, bytes(4)))[0]
        return unacknowledged == 0 and self._queue.length() == 0


class Sending:
    """Data on its way to a client, in a thread of its own. began: when the first byte went."""

    def __init__(self, host, data):
        self._host, self._data = host, data
        self.began = None
        self.done = threading.Event()
        self._thread = threading.Thread(target=self._send, daemon=True)
        self._thread.start()
        waitFor(lambda: self.began is not None, "sending begins", pause=0)

    def _send(self):
        self.began = time.monotonic()
        try:
            self._host.send(self._data)
        finally:
            self.done.set()

    def received(self):
        """Whether all of it is sent, and the client has read it."""
        return self.done.is_set() and self._host.isRead()


class Flood:
    """A block that is sent again and again as long as the with statement runs. sent: bytes."""

    def __init__(self, host, block):
        self._host, self._block = host, block
        self.sent = 0
        self._over = False

    def __enter__(self):
        self._thread = threading.Thread(target=self._send, daemon=True)
        self._thread.start()
        return self

    def _send(self):
        with contextlib.suppress(OSError):
            while not self._over:
                for at in range(0, len(self._block), PIECE):
                    piece = self._block[at:at + PIECE]
                    self._host.send(piece)
                    self.sent += len(piece)
                    if self._over:
                        return

    def __exit__(self, *_):
        self._over = True
        self._thread.join()
