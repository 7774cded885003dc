"""How long a client takes for what a host sends: from the first byte until it has read all and its window stands still."""

import contextlib
import statistics
import time

import clients
import display
import processes
from host import Sending
from payloads import HEAD, PAYLOADS, TAIL
from program import Failure

MIB = 1024 * 1024
WARM_UP = MIB // 16  # bytes
QUEUE_PAUSE = 0.001  # seconds between two looks at the client's queue
PICTURE_PAUSE = 0.02  # and at its window
QUIET = 0.6  # seconds without a change: the window stands still


def options(parser):
    parser.add_argument("--payload", action="append", choices=PAYLOADS, metavar="NAME",
                        help=f"one of {', '.join(PAYLOADS)}; may be repeated (all)")
    parser.add_argument("--rounds", type=int, default=5, help="how often each is sent (5)")
    parser.add_argument("--mib", type=float, default=8, help="size of a payload in MiB (8)")
    parser.add_argument("--limit", type=float, default=300, help="seconds that one may take (300)")
    parser.add_argument("--client", action="append", choices=("qxterm", "putty", "reader"),
                        help="may be repeated (all three)")


class Drained:
    """What one client took for one payload, in seconds."""

    def __init__(self, seconds, processor, server, shown):
        self.seconds = seconds
        self.processor = processor  # of the client
        self.server = server  # of Wine's server
        self.shown = shown  # of the display


def untilStill(area, end):
    """Looks until the window stands still. The moment of its last change, or None when there was none."""
    last, before = None, time.monotonic()
    began = before
    while time.monotonic() - (last or began) < QUIET:
        if time.monotonic() > end:
            raise Failure("the window does not come to rest")
        time.sleep(PICTURE_PAUSE)
        differs, now = area.changed(), time.monotonic()
        if differs:
            # It lies between two looks.
            last = (before + now) / 2
        before = now
    return last


def drained(client, screen, data, limit):
    """Sends the data to the client. The window is looked at only once the client has read everything."""
    servers = (client.process, processes.wineServer(), processes.displayServer())
    with contextlib.ExitStack() as stack:
        area = stack.enter_context(client.area(screen)) if client.window else None
        before = [processes.processorTime(process) for process in servers]
        sending = Sending(client.host, data)
        end = sending.began + limit
        while not sending.received():
            if time.monotonic() > end or not client.alive():
                raise Failure(f"{client.name} {'takes too long' if client.alive() else 'has ended'}")
            time.sleep(QUEUE_PAUSE)
        stands = time.monotonic()
        if area:
            area.changed()
            stands = untilStill(area, end) or stands
        used = [processes.processorTime(process) - then for process, then in zip(servers, before)]
    return Drained(stands - sending.began, *used)


def measure(arguments):
    names = arguments.client or ("qxterm", "putty", "reader")
    with contextlib.ExitStack() as stack:
        screen = stack.enter_context(display.Display())
        running = [stack.enter_context(client) for client in clients.chosen(names, arguments.builds)]
        header(running, arguments)
        for name in arguments.payload or PAYLOADS:
            data = HEAD + PAYLOADS[name](int(arguments.mib * MIB)) + TAIL
            times = {client: [] for client in running}
            for number in range(arguments.rounds + 1):
                for client in running:
                    if client.window:
                        display.activate(client.window)
                    if number == 0:
                        drained(client, screen, HEAD + data[:WARM_UP] + TAIL, arguments.limit)
                    else:
                        times[client].append(drained(client, screen, data, arguments.limit))
            row(name, running, times)


def header(running, arguments):
    print(f"Seconds until {arguments.mib:g} MiB are read and shown, and seconds of the client's processor time; medians of "
          f"{arguments.rounds} rounds,\nin which the clients take turns\n")
    cells = [f"{client.name:>8} {'cpu':>6}" for client in running]
    print(f"{'payload':<12}" + "   ".join(cells) + "   " + "   ".join(name for name, _, _ in ratios(running)))


def ratios(running):
    """(name, above, below) of the quotients that are printed: each build of qxterm by PuTTY, by the reader, by qxterm."""
    above = [client for client in running if isinstance(client, clients.Qxterm)]
    pairs = [(one, other) for one in above for other in running if other not in above]
    pairs += [(above[0], other) for other in above[1:]]
    return [(f"{one.name}/{other.name}", one, other) for one, other in pairs]


def row(name, running, times):
    def median(client, of):
        return statistics.median(getattr(one, of) for one in times[client])

    cells = [f"{median(client, 'seconds'):8.3f} {median(client, 'processor'):6.2f}" for client in running]
    quotients = [f"{median(one, 'seconds') / median(other, 'seconds'):{len(title)}.2f}"
                 for title, one, other in ratios(running)]
    print(f"{name:<12}" + "   ".join(cells) + "   " + "   ".join(quotients), flush=True)
    for client in running:
        seconds = [one.seconds for one in times[client]]
        print(f"  {client.name}: {min(seconds):.3f} to {max(seconds):.3f} s; processor time of Wine's server "
              f"{median(client, 'server'):.2f}, of the display {median(client, 'shown'):.2f}", flush=True)
