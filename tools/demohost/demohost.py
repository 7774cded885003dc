#!/usr/bin/env python3
"""Demonstration host: a small telnet server for a terminal of the type QXTERM.

It listens on the loopback address only and shows the fictional call-centre suite "Zentora": a sign-on, a menu, a
live table, a form, a long report and a page that shows what the terminal can display. Any name and any password
are accepted.
"""

import argparse
import asyncio
import sys

from zentora.clock import FixedClock, SystemClock
from zentora.server import serve


def positiveSeconds(text):
    value = float(text)
    if not 0 < value <= 86400:
        raise argparse.ArgumentTypeError("seconds from above 0 to 86400")
    return value


def portNumber(text):
    value = int(text)
    if not 0 <= value <= 65535:
        raise argparse.ArgumentTypeError("a port from 0 to 65535")
    return value


def parseArguments(argv):
    parser = argparse.ArgumentParser(description="Telnet host for trying out the terminal, on 127.0.0.1 only.")
    parser.add_argument("--port", type=portNumber, default=2323, help="TCP port; 0 takes any free port (default 2323)")
    parser.add_argument("--once", action="store_true", help="serve one session, then end")
    parser.add_argument("--fixed-clock", action="store_true",
                        help="stopped clock and seeded figures: every screen is the same at every run")
    parser.add_argument("--idle", type=positiveSeconds, default=900.0, metavar="SECONDS",
                        help="end a session after this time without a key (default 900)")
    return parser.parse_args(argv)


def main(argv=None):
    options = parseArguments(argv)
    clock = FixedClock() if options.fixed_clock else SystemClock()
    try:
        asyncio.run(serve(options.port, clock, options.idle, options.once))
    except KeyboardInterrupt:
        return 130
    except OSError as failure:
        print(f"demonstration host: cannot listen on port {options.port}: {failure.strerror}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
