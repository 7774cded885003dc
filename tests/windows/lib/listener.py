"""A port of the loopback address where the test waits for connections."""

import contextlib
import socket
import threading

from program import Failure


class PortTaken(Failure):
    """Another program listens there."""


class Listener:
    def __init__(self, serve, port=0):
        """serve: gets each connection, one after the other, in the listener's thread. port: 0 lets the system choose."""
        try:
            self._listener = socket.create_server(("127.0.0.1", port))
        except OSError as error:
            raise PortTaken(f"port {port} cannot be listened on: {error.strerror}") from error
        self._serve = serve
        self.port = self._listener.getsockname()[1]
        self.accepted = 0
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            self.accepted += 1
            self._serve(connection)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        # A blocked accept keeps the port; shutting down wakes it.
        with contextlib.suppress(OSError):
            self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()


def inBackground(serve):
    """A routine for Listener that serves each connection in a thread of its own and closes it in the end."""
    def serveOne(connection):
        with connection, contextlib.suppress(OSError):
            serve(connection)

    return lambda connection: threading.Thread(target=serveOne, args=(connection,), daemon=True).start()
