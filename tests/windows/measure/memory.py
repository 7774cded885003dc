"""Resident memory of the program, and the most that there was, after little and after much output."""

import time

import clients
import processes
from host import Sending
from payloads import HEAD, PAYLOADS
from program import Failure

MEGABYTE = 1_000_000
PIECE = 16 * MEGABYTE  # sent at once
SETTLE = 1.0  # seconds behind the last byte
LIMIT = 120.0  # seconds for a piece


def options(parser):
    parser.add_argument("--megabytes", type=int, nargs="+", default=[1, 1000], help="how much output (1 1000)")
    parser.add_argument("--payload", choices=PAYLOADS, default="plain", metavar="NAME",
                        help=f"one of {', '.join(PAYLOADS)} (plain)")
    parser.add_argument("--client", action="append", choices=("qxterm", "putty"), help="which one (both)")


def measure(arguments):
    piece = HEAD + PAYLOADS[arguments.payload](PIECE)
    print(f"{'MB of output':<14}{'client':<12}{'resident MiB':>12}{'most MiB':>10}")
    for client in clients.chosen(arguments.client or ("qxterm", "putty"), arguments.builds):
        with client:
            sent = 0
            for megabytes in sorted(arguments.megabytes):
                while sent < megabytes * MEGABYTE:
                    part = piece[:megabytes * MEGABYTE - sent]
                    send(client, part)
                    sent += len(part)
                time.sleep(SETTLE)
                resident, most = processes.memory(client.process)
                print(f"{megabytes:<14}{client.name:<12}{resident:12.1f}{most:10.1f}", flush=True)


def send(client, data):
    sending = Sending(client.host, data)
    while not sending.received():
        if time.monotonic() > sending.began + LIMIT or not client.alive():
            raise Failure(f"{client.name} does not read on")
        time.sleep(0.05)
