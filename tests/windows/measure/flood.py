"""What is left for the user while a host sends without end: pictures a second, keys, menus, Disconnect."""

import statistics
import threading
import time

import clients
import display
from host import Flood
from payloads import HEAD, PAYLOADS
from program import Failure, waitFor

BLOCK = 1024 * 1024  # bytes of a payload, sent again and again
SETTLE = 1.0  # seconds from the flood's beginning
LOOK_PAUSE = 0.005  # seconds between two looks at the window
KEY_PAUSE = 0.25  # seconds between two keys
MENUS = 5
PATIENCE = 30.0  # seconds; what has not happened by then does not happen


def options(parser):
    parser.add_argument("--payload", action="append", choices=PAYLOADS, metavar="NAME",
                        help=f"one of {', '.join(PAYLOADS)}; may be repeated (plain, y, application)")
    parser.add_argument("--seconds", type=float, default=20, help="length of a flood (20)")
    parser.add_argument("--client", action="append", choices=("qxterm", "putty"), help="which one (both)")


def measure(arguments):
    names = arguments.client or ("qxterm", "putty")
    for name in arguments.payload or ("plain", "y", "application"):
        block = HEAD + PAYLOADS[name](BLOCK)
        print(f"Flood of {name}, {arguments.seconds:g} s:")
        for client in clients.chosen(names, arguments.builds):
            with client:
                display.activate(client.window)
                for line in flooded(client, block, arguments.seconds):
                    print(f"  {client.name:<10} {line}", flush=True)


def flooded(client, block, seconds):
    """The lines that tell about one client."""
    with Flood(client.host, block) as flood:
        time.sleep(SETTLE)
        before, began = flood.sent, time.monotonic()
        typing = Typing(client.host, seconds)
        pictures, looks = countPictures(client, seconds)
        typing.join()
        took = time.monotonic() - began
        yield f"{(flood.sent - before) / took / 1e6:.2f} MB/s"
        yield f"{pictures / seconds:.1f} pictures a second (of {looks / seconds:.0f} looks)"
        yield f"key to host: {spread(typing.delays)}"
        yield f"menu opens:  {spread([menuOpens(client) for _ in range(MENUS)])}"
    if isinstance(client, clients.Qxterm):
        yield f"Disconnect:  {spread([disconnects(client, block) for _ in range(MENUS)])}"


def spread(delays):
    """Median and worst of delays in seconds; None stands for what did not happen."""
    happened = [delay for delay in delays if delay is not None]
    lost = len(delays) - len(happened)
    missed = f", {lost} of {len(delays)} not within {PATIENCE:g} s" if lost else ""
    if not happened:
        return f"none of {len(delays)} within {PATIENCE:g} s"
    return f"median {statistics.median(happened) * 1000:.0f} ms, worst {max(happened) * 1000:.0f} ms{missed}"


def countPictures(client, seconds):
    """How many pictures differed from the one before, and how many were taken."""
    changes = looks = 0
    with display.Display() as screen, client.area(screen) as area:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            changes += area.changed()
            looks += 1
            time.sleep(LOOK_PAUSE)
    return changes, looks


def keyDelay(screen, host, limit):
    """Presses a key; seconds until the host has it, or None."""
    host.arrivals.clear()
    pressed = screen.key("a")
    end = pressed + limit
    while not host.arrivals and time.monotonic() < end:
        time.sleep(0.001)
    return host.arrivals[0][0] - pressed if host.arrivals else None


class Typing(threading.Thread):
    """Keys beside the looking, each when the one before has arrived."""

    def __init__(self, host, seconds):
        super().__init__(daemon=True)
        self._host, self._end = host, time.monotonic() + seconds
        self.delays = []
        self.start()

    def run(self):
        with display.Display() as screen:
            while time.monotonic() < self._end:
                self.delays.append(keyDelay(screen, self._host, PATIENCE))
                time.sleep(KEY_PAUSE)


def menuOpens(client, close=True):
    """Opens a menu; seconds until its window appears, or None."""
    with display.Display() as screen:
        screen.watchWindows()
        pressed = client.callMenu(screen)
        appeared = screen.windowAppears(PATIENCE)
        if close:
            time.sleep(0.3)
            screen.key("Escape")
            screen.key("Escape")
            time.sleep(0.5)
    return None if appeared is None else appeared - pressed


def disconnects(client, block):
    """Connects anew when there is no connection, floods, chooses Disconnect; seconds until the connection ends, or None."""
    host = client.host
    with display.Display() as screen:
        if host.connection is None:
            reconnect(client, screen)
        with Flood(host, block):
            time.sleep(SETTLE)
            if menuOpens(client, close=False) is None:
                raise Failure("there is no menu to choose Disconnect from")
            pressed = screen.key("d")
            try:
                waitFor(lambda: host.endedAt, "the connection ends", PATIENCE, pause=0.001)
            except Failure:
                return None
    ended = host.endedAt
    host.forget()
    return ended - pressed


def reconnect(client, screen):
    menuOpens(client, close=False)
    screen.key("c")
    client.host.waitConnected()
    # The little window that tells of connecting goes.
    time.sleep(1)
    display.activate(client.window)
