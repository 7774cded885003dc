"""What the program connects to: a peer in this process, the demonstration host, a telnet daemon."""

import re
import socket
import subprocess
import sys
import threading
import time

from listener import Listener
from program import PATIENCE, ROOT, Failure, waitFor


class Peer:
    """Listens on the loopback address. Each connection's bytes are kept with the times at which they came."""

    def __init__(self, onConnect=None, port=0):
        self._onConnect = onConnect
        self.connections = []
        self.ended = 0  # connections that the other side has ended
        self.received = bytearray()
        self.arrivals = []
        self._listener = Listener(self._take, port)
        self.port = self._listener.port

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._listener.close()
        self.drop()

    def _take(self, connection):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.connections.append(connection)
        threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        try:
            if self._onConnect is not None:
                self._onConnect(connection)
            while True:
                block = connection.recv(4096)
                if not block:
                    self.ended += 1
                    return
                self.arrivals.append((time.time(), block))
                self.received += block
        except ConnectionResetError:
            self.ended += 1
        except OSError:
            pass

    def send(self, data):
        """To the newest connection."""
        waitFor(lambda: self.connections, "the program connects")
        self.connections[-1].sendall(data)

    def drop(self):
        for connection in self.connections:
            connection.close()
        self.connections = []

    def expect(self, data, what):
        """Waits until exactly these bytes have come since the last expect or clear."""
        waitFor(lambda: len(self.received) >= len(data),
                lambda: f"{what}: {data!r} arrives; there is {bytes(self.received)!r}")
        found = bytes(self.received)
        if found != data:
            raise Failure(f"{what}: {data!r} arrives; it was {found!r}")
        self.received.clear()


class DemonstrationHost:
    def __enter__(self):
        host = ROOT / "tools" / "demohost" / "demohost.py"
        self.process = subprocess.Popen([sys.executable, str(host), "--port", "0", "--fixed-clock"],
                                        stdout=subprocess.PIPE, text=True)
        announced = self.process.stdout.readline()
        match = re.search(r"port (\d+)", announced)
        if match is None:
            raise Failure(f"the demonstration host said {announced!r}")
        self.port = int(match.group(1))
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(PATIENCE)


class TelnetDaemon:
    """Starts the system's telnet daemon for each connection, as an internet super-server does."""

    def __init__(self, port=0):
        """port: where it listens; 0 lets the system choose."""
        found = subprocess.run([ROOT / "tools" / "setup" / "telnetd.sh"], stdout=subprocess.PIPE, text=True)
        if found.returncode != 0:
            raise Failure("there is no telnet daemon, and its package cannot be had")
        self._command = [found.stdout.strip(), "-h", "-L", "/bin/login"]
        self._processes = []
        self._listener = Listener(self._start, port)
        self.port = self._listener.port

    def __enter__(self):
        return self

    @property
    def accepted(self):
        return self._listener.accepted

    def _start(self, connection):
        with connection:
            self._processes.append(subprocess.Popen(self._command, stdin=connection, stdout=connection,
                                                    stderr=subprocess.DEVNULL))

    def __exit__(self, *_):
        self._listener.close()
        for process in self._processes:
            process.terminate()
            process.wait(PATIENCE)
