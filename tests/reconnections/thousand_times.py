"""Connects and disconnects a thousand times, by each kind of connection, and finds everything as after the first time.

    thousand_times.py QXTERM-SCENARIO
"""

import json
import subprocess
import sys

TIMES = 1000

# What the user, the host and the clock do for one session, from Connect to its end.
SESSIONS = {
    "net": ["socket connect", "wait 350", 'socket data "login: "', "menu connection 1"],
    "serial": ["wait 350", 'serial data "login: "', "menu connection 2", "menu connection 1"],
    "modem": ["wait 1000", "serial carrier on", "wait 350", 'serial data "login: "', "menu connection 1",
              "serial carrier off"],
    "ssh": ['type "bob\\rsecret\\r"', "wait 300", "socket connect", "wait 350", 'socket data "login: "',
            'socket data "Password: "', "menu connection 1"],
    "loop": ["wait 350", 'type "x"', "menu connection 1"],
}
# In a third of the attempts the user gives up first, in another third the host ends the session.
CANCELLED = {"net": ["wait 200", "click cmdCancel"], "modem": ["wait 1200", "click cmdCancel"],
             "ssh": ['type "bob\\rsecret\\r"', "wait 300", "click cmdCancel"]}
DROPPED = {"net": [*SESSIONS["net"][:-1], "socket close"], "modem": [*SESSIONS["modem"][:4], "serial carrier off"],
           "ssh": [*SESSIONS["ssh"][:-1], "socket close"]}
AFTERWARDS = ["wait 1000", "dump timers", "dump menus", "dump state", "dump screen", "dump scrollback"]


def scenario(kind):
    lines = ["ini Settings Order host", f"ini host connect {kind}", "ini host host host1", "ini host phone 5551234"]
    ways = [SESSIONS[kind], CANCELLED.get(kind, SESSIONS[kind]), DROPPED.get(kind, SESSIONS[kind])]
    for turn in range(TIMES):
        # Choosing the profile connects it.
        lines.append("menu profile 5" if turn == 0 else "menu connection 0")
        lines += ways[turn % len(ways)] + AFTERWARDS
    return "\n".join(lines) + "\n"


def rounds(output):
    """What was printed, cut behind the last dump of each round."""
    found, current = [], []
    for line in output.splitlines():
        event = json.loads(line)
        # The only numbers that count on: rounds in which something was received.
        event.pop("packetCount", None)
        current.append(event)
        if event.get("dump") == "scrollback":
            found.append(current)
            current = []
    return found, current


def short(what):
    return str(what)[:400]


def check(kind, program):
    run = subprocess.run([program], input=scenario(kind), capture_output=True, text=True, check=False)
    if run.returncode != 0:
        return f"exit status {run.returncode}: {run.stderr.strip()}"
    found, rest = rounds(run.stdout)
    if len(found) != TIMES or rest != []:
        return f"{len(found)} rounds, and {short(rest)} behind them"
    for turn, events in enumerate(found):
        sessions = [event for event in events if event.get("event") in ("socket", "serial", "process")]
        if (not sessions) != (kind == "loop"):
            return f"round {turn + 1} connects nothing: {short(events)}"
        # The first three rounds are the first of their kinds, and the program's first.
        if turn >= 6 and events != found[turn - 3]:
            different = next((pair for pair in zip(events, found[turn - 3]) if pair[0] != pair[1]), "their number")
            return f"round {turn + 1} is not like round {turn - 2}: {short(different)}"
    return ""


def main():
    failed = False
    for kind in SESSIONS:
        complaint = check(kind, sys.argv[1])
        print(f"{kind}: {complaint or f'{TIMES} times'}", flush=True)
        failed = failed or complaint != ""
    return 1 if failed else 0


sys.exit(main())
