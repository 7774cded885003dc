"""A log that is replayed shows what the session showed: sessions of every kind are played with the trace on, the trace
is replayed, and screen, window and scrollback are compared behind each block; so are the traces of both.

    round_trip.py QXTERM-SCENARIO
"""

import sys
from pathlib import Path

from trace_logs import BLOCK_COMMANDS, logOf, pieces, play, replayOf, setUp, withDumps

RECORDINGS = Path(__file__).resolve().parents[1] / "recordings"
LONGEST = 20000  # bytes of a recording
NET = {"connect": "net", "host": "host1", "netport": 23}
SERIAL = {"connect": "serial", "commport": 2, "baud": 19200, "parity": "e", "databits": 7, "stopBits": 2,
          "flowControl": 3}
MODEM = {"connect": "modem", "commport": 3, "reset": "AT&F", "prefix": "ATDP", "phone": "555 1234", "suffix": ",9"}
SSH = {"connect": "ssh", "host": "host2", "SSHnetport": 2222}
LOOP = {"connect": "loop"}
UP = ["socket connect", "wait 350"]
NEGOTIATION = ["socket data fffd18fffb01", "socket data fffa1801fff0fffd1f"]


def received(data, seed, command="socket data", longest=2000):
    return [f"{command} {piece.hex()}" for piece in pieces(data, seed, longest)]


def recorded(name):
    return (RECORDINGS / f"{name}.bin").read_bytes()[:LONGEST]


def interleaved(lines, others, every):
    """One of the other lines behind each so many lines."""
    result, others = [], list(others)
    for n, line in enumerate(lines):
        result.append(line)
        if n % every == every - 1 and others:
            result.append(others.pop(0))
    return result + others


TYPED = ["key 38", 'type "ls -l\\r"', "key 46", "key 37", 'type "\\x1b"', 'type "\\xe9\\xff"', "key 40", "key 39"]
PASTED = ['clipboard "pasted text, longer than one line of a dump: 0123456789\\r\\nand on"', "menu edit 1"]


def network(name):
    return setUp({"lab": NET}), ["start lab", *UP, *NEGOTIATION,
                                 *interleaved(received(recorded(name), name), TYPED + PASTED, 7)]


def serial(name):
    return setUp({"lab": SERIAL}), ["start lab", "wait 350",
                                    *interleaved(received(recorded(name), name, "serial data"), TYPED, 5)]


# Received text that looks like the log's own lines as far as it can, and all line ends.
AWKWARD = [b"\r", b"\n", b"\r\n", b"\n\r\n", b"a\r\nb\r\n", b"\r\r\n", b"BYTES", b"\nBYTES>> 41 \n", b"x\n",
           b"\r\nComser_OnComm() - MSCOMM_EV_RECEIVE no\r\n", b"\0\x01\x1a", b" ", b"  two", bytes(range(128, 256)),
           b"41 42 \r\n"]


def awkwardSerial():
    return setUp({"lab": SERIAL}), ["start lab", "wait 350", *(f"serial data {text.hex()}" for text in AWKWARD)]


def modem():
    return setUp({"lab": MODEM}), [
        "start lab", 'serial data "OK\\r\\n"', "wait 1000", 'serial data "RINGING\\r\\n"', "wait 5000",
        'serial data "CONNECT 9600\\r\\n"', "serial carrier on", "wait 350", 'serial data "login: "', 'type "bob\\r"',
        'serial data "\\e[1;31mWelcome\\e[m\\r\\n"', "serial carrier off"]


def modemWithoutCarrier():
    return setUp({"lab": MODEM, "other": SERIAL}), [
        "start lab", "wait 1000", 'serial data "BUSY\\r\\n"', "serial event 1007", "click cmdCancel", "menu profile 6",
        "wait 350", 'serial data "a serial line\\r\\n"', "serial carrier on", 'serial data "still\\r\\n"',
        "serial carrier off", "serial event 5", 'serial data "there\\r\\n"']


def ssh():
    return setUp({"lab": SSH}), [
        "start lab", 'type "bob\\rsecret\\r"', *UP, "socket data fffd18fffd20", 'socket data "SunOS 5.8\\r\\n"',
        'socket data "\\r\\nlogin: "', 'socket data "bob\\r\\n"', 'socket data "Password: "',
        'socket data "\\r\\nLast login: Mon from host2\\r\\n"', 'socket data "host2% "', 'type "ls\\r"',
        *received(recorded("shell")[:3000], "ssh")]


def loop():
    return setUp({"lab": LOOP}), ["start lab", "wait 350"]


def severalInOneProgram():
    text = recorded("mc")[:4000]
    return setUp({"one": NET, "two": SERIAL, "three": dict(NET, host="host3", netport=2323), "four": SSH}), [
        "start one", *UP, *received(text, "one"), "menu connection 1",
        "menu connection 0", *UP, 'type "again"', *received(text, "again"), "socket close",
        "menu profile 6", "wait 350", *received(text, "two", "serial data"), "menu connection 1",
        "menu profile 7", "wait 300", "click cmdCancel",  # nobody answers
        "menu profile 8", *UP, *received(text, "three"), "menu connection 1",
        "menu profile 8", 'type "ann\\rword\\r"', *UP, 'socket data "login: "', 'socket data "Password: "',
        *received(text, "four")]


def twoPrograms():
    setting, first = network("nano")
    return setting, [*first, "start lab", *UP, *received(recorded("less")[:5000], "second")]


def firstArrivalOfOneByte():
    return setUp({"lab": NET}), ["start lab", *UP, "socket data 41", 'socket data "BC"', "socket data 44"]


def yields():
    """What happens while a block is interpreted stands in the log in the middle of it; in the replay it comes behind."""
    text = recorded("less")[:1500].hex()
    return setUp({"lab": NET}), ["start lab", *UP, 'socket data "begin\\r\\n"', 'onyield type "x"',
                                 'onyield socket data "\\r\\n\\e[7minside\\e[m\\r\\n"', "onyield key 38",
                                 f"socket data {text}", 'socket data "end"']


def emptyHost():
    return setUp({"lab": {"connect": "net"}, "other": NET}), [
        "start lab", "click cmdCancel", "menu profile 6", *UP, 'socket data "there"']


SESSIONS = {
    **{f"network: {path.stem}": (lambda name=path.stem: network(name)) for path in sorted(RECORDINGS.glob("*.bin"))},
    "serial: shell": lambda: serial("shell"),
    "serial: vim": lambda: serial("vim"),
    "serial: awkward": awkwardSerial,
    "modem": modem,
    "modem without carrier": modemWithoutCarrier,
    "ssh": ssh,
    "loop": loop,
    "several in one program": severalInOneProgram,
    "two programs": twoPrograms,
    "first arrival of one byte": firstArrivalOfOneByte,
    "yields": yields,
    "empty host": emptyHost,
}
# Whose blocks are not those of the replay: the end alone is compared.
OTHER_BLOCKS = ["yields"]


def firstDifference(found, expected):
    for n, (one, other) in enumerate(zip(found, expected)):
        if one != other:
            return f"number {n}:\n  replay   {str(one)[:300]}\n  original {str(other)[:300]}"
    return f"replay {len(found)}, original {len(expected)}"


def compare(tool, name):
    setting, lines = SESSIONS[name]()
    dumps, trace = play(tool, setting + list(withDumps(lines)))
    log = logOf(trace)
    scenario = replayOf(tool, log)
    dumpsAgain, traceAgain = play(tool, ["ini Settings Logging 1", *withDumps(scenario)])
    blocks = sum(line.startswith(BLOCK_COMMANDS) for line in lines)
    if len(dumps) != 2 * blocks + 1 or not log:
        raise AssertionError(f"{name}: the session did not run")
    if name in OTHER_BLOCKS:
        dumps, dumpsAgain, traceAgain = dumps[-3:], dumpsAgain[-3:], trace
    if dumpsAgain != dumps:
        raise AssertionError(f"{name}: a dump differs, {firstDifference(dumpsAgain, dumps)}")
    if traceAgain != trace:
        raise AssertionError(f"{name}: the trace differs, {firstDifference(traceAgain, trace)}")
    remarks = [line for line in scenario if "REMARK" in line]
    return f"{name}: {blocks} blocks, {len(log)} bytes of log, remarks: {len(remarks)}"


def main():
    tool = sys.argv[1]
    failed = 0
    for name in sys.argv[2:] or SESSIONS:
        try:
            print(compare(tool, name), flush=True)
        except AssertionError as failure:
            failed += 1
            print(f"FAILED {failure}", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
