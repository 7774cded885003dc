"""The system's table of TCP connections: who listens, who is connected to whom."""

import contextlib
import socket
import sys
from pathlib import Path
from typing import NamedTuple

LISTENS, CONNECTED = 0x0A, 0x01
LOOPBACK = "127.0.0.1"


class Row(NamedTuple):
    address: str
    port: int
    peer: str
    peerPort: int
    state: int
    waiting: int  # unread bytes; of a listener, connections that it has not accepted yet


def _end(family, text):
    """Address and port, from ADDRESS:PORT in hexadecimal digits."""
    address, port = text.split(":")
    # Words of 32 bits, each a number as this machine has it in memory.
    words = [int(address[at:at + 8], 16).to_bytes(4, sys.byteorder) for at in range(0, len(address), 8)]
    return socket.inet_ntop(family, b"".join(words)), int(port, 16)


def rows():
    for table, family in (("tcp", socket.AF_INET), ("tcp6", socket.AF_INET6)):
        with contextlib.suppress(FileNotFoundError):  # a system without version 6
            for line in Path("/proc/net", table).read_text().splitlines()[1:]:
                own, peer, state, queues = line.split()[1:5]
                yield Row(*_end(family, own), *_end(family, peer), int(state, 16), int(queues.split(":")[1], 16))


def listeners(port):
    """The addresses at which somebody listens on the port."""
    return {row.address for row in rows() if row.port == port and row.state == LISTENS}


def waitingAt(port):
    """Connections that a listener of the loopback address has not accepted yet."""
    return sum(row.waiting for row in rows() if (row.address, row.port, row.state) == (LOOPBACK, port, LISTENS))


def connectedTo(port):
    """Whether somebody on this machine has a connection to the port."""
    return any((row.peer, row.peerPort, row.state) == (LOOPBACK, port, CONNECTED) for row in rows())
