"""The window at rest: its start, the delay of a cell and of a key, processor time of doing nothing."""

import statistics
import time

import clients
import display
import processes
from drain import untilStill
from flood import keyDelay
from program import Failure

STARTS = 5
SAMPLES = 40
LOOK_PAUSE = 0.0002  # seconds between two looks at a cell
REST = 0.1  # seconds between two samples
IDLE = 10.0  # seconds
PATIENCE = 20.0
CELL = b"\x1b[?25l\x1b[5;5H%c"


def options(parser):
    parser.add_argument("--client", action="append", choices=("qxterm", "putty"), help="which one (both)")


def measure(arguments):
    names = arguments.client or ("qxterm", "putty")
    starts = {}
    for _ in range(STARTS - 1):
        for client in clients.chosen(names, arguments.builds):
            with client:
                starts.setdefault(client.name, []).append(client.shownAt - client.startedAt)
    for client in clients.chosen(names, arguments.builds):
        with client:
            starts[client.name].append(client.shownAt - client.startedAt)
            display.activate(client.window)
            print(f"{client.name}:")
            for name, value in figures(client, starts[client.name]):
                print(f"  {name:<28} {value}", flush=True)


def figures(client, starts):
    yield "start to window", start(client, starts)
    with display.Display() as screen, client.area(screen) as area:
        yield "socket to cell drawn", spread(cellDelays(client, area))
        yield "key to socket", spread([pressed(client, screen) for _ in range(SAMPLES)])
        untilStill(area, time.monotonic() + PATIENCE)
    before = processes.exactTime(client.process)
    time.sleep(IDLE)
    used = processes.exactTime(client.process) - before
    yield f"processor time, {IDLE:g} s idle", f"{used * 1000:.1f} ms, {used / IDLE * 100:.3f} %"


def start(client, starts):
    """From the creation of its process. What a picture rests on the display for is a fixed time, and taken off."""
    median = statistics.median(starts)
    pause = f" ({median:.2f} s with the picture's {client.pause:g} s)" if client.pause else ""
    return f"median {(median - client.pause) * 1000:.0f} ms{pause}, {len(starts)} starts"


def spread(delays):
    values = sorted(delay * 1000 for delay in delays)
    return (f"median {statistics.median(values):.1f} ms, 95 % {values[int(len(values) * 0.95)]:.1f} ms, "
            f"worst {values[-1]:.1f} ms, {len(values)} samples")


def cellDelays(client, area):
    """Seconds from the sending of a character to its pixels, again and again in one cell. The cell is found by looking at
    what the second character changes."""
    client.host.send(b"\x1b[2J" + CELL % ord("x"))
    time.sleep(1)
    area.changed()
    client.host.send(CELL % ord("M"))
    time.sleep(1)
    delays = []
    with area.part(*area.changedPart()) as cell:
        for number in range(SAMPLES):
            time.sleep(REST)
            cell.changed()
            sent = time.monotonic()
            client.host.send(CELL % (ord("x") if number % 2 == 0 else ord("M")))
            while not cell.changed():
                if time.monotonic() > sent + PATIENCE:
                    raise Failure(f"{client.name} does not show the character")
                time.sleep(LOOK_PAUSE)
            delays.append(time.monotonic() - sent)
    return delays


def pressed(client, screen):
    time.sleep(REST)
    delay = keyDelay(screen, client.host, PATIENCE)
    if delay is None:
        raise Failure(f"{client.name} sends no key")
    return delay
