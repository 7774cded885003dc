"""Shows what a host sends to the model of the terminal, too; Relay stands between the program and a host for it.

The model (tests/demohost/model.py) knows nothing of the program: what it holds is what the program must hold.
"""

import contextlib
import socket
import sys
import threading

from listener import Listener
from program import ROOT, waitFor

sys.path.insert(0, str(ROOT / "tests" / "demohost"))
from model import Model  # noqa: E402


class Watched:
    """A model that is shown what a host sends, and the program compared with it."""

    def __init__(self):
        self._lock = threading.Lock()
        self.model = Model()

    def show(self, block):
        with self._lock:
            self.model.feed(block)
            # The program answers for itself.
            self.model.replies.clear()

    def differences(self, screen):
        """Where the records differ from the model: lines to be read."""
        found = []
        with self._lock:
            model = self.model
            for row in range(25):
                text, words = model.rowText(row), [f + fg * 256 + bg * 4096 for f, fg, bg in model.rows[row].attrs]
                if screen["rows"][row] != text:
                    found += [f"row {row:2} expected {text!r}", f"       found    {screen['rows'][row]!r}"]
                elif screen["attrs"][row] != words:
                    column = next(at for at in range(80) if screen["attrs"][row][at] != words[at])
                    found.append(f"row {row}, column {column}: word {words[column]} expected, found "
                                 f"{screen['attrs'][row][column]}, line {text!r}")
            if screen["cursor"] != [model.column, model.row]:
                found.append(f"cursor expected at {[model.column, model.row]}, found at {screen['cursor']}")
        return found

    def waitForAgreement(self, program, what):
        """Waits until the program's records are those of the model."""

        def told():
            lines = self.differences(program.ask("screen"))
            return f"{what}: the records differ from the model's\n  " + "\n  ".join(lines)

        waitFor(lambda: not self.differences(program.ask("screen")), told)


class Relay(Watched):
    def __init__(self, target):
        super().__init__()
        self._target = target
        self._sockets = []
        self.sent = bytearray()
        self.ended = False
        self._listener = Listener(self._join)
        self.port = self._listener.port

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._listener.close()
        for one in self._sockets:
            one.close()

    def _join(self, terminal):
        host = socket.create_connection(("127.0.0.1", self._target))
        for one in (terminal, host):
            one.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            self._sockets.append(one)
        with self._lock:
            self.model = Model()
        threading.Thread(target=self._carry, args=(terminal, host, self.sent.extend), daemon=True).start()
        threading.Thread(target=self._carry, args=(host, terminal, self.show), daemon=True).start()

    def _carry(self, source, target, watch):
        with contextlib.suppress(OSError):
            while block := source.recv(4096):
                watch(block)
                target.sendall(block)
        with contextlib.suppress(OSError):
            target.shutdown(socket.SHUT_WR)
        self.ended = True
