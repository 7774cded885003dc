"""Measures the program in its window: throughput and memory, delays of a key and of a cell, what connecting leaves.

Not a test: it prints numbers. Run it with tests/windows/_measure.sh on a machine that does nothing else.
"""

import os
import statistics
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from program import Program, netProfile, waitFor, writeProfiles, xdotool  # noqa: E402

STREAM = 100 * 1024 * 1024  # bytes
BLOCK = b"".join(b"%07d an ordinary line of output, of common length\r\n" % n for n in range(20000))
SAMPLES = 40
CONNECTIONS = 50
END = b"\x1b[2J\x1b[Hthe end of it"


def memory(program):
    """Resident and peak resident size in MiB, as the system has them."""
    status = Path(f"/proc/{program.process.pid}/status").read_text()
    values = dict(line.split(":", 1) for line in status.splitlines())
    return tuple(int(values[name].split()[0]) / 1024 for name in ("VmRSS", "VmHWM"))


def processorTime(program):
    """Seconds of processor time that the program has used."""
    fields = Path(f"/proc/{program.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def connected(program):
    program.waitState("g_bConnectActive", True)
    program.waitForm("frmConn", loaded=False)
    program.focus()


def spread(name, seconds):
    values = sorted(second * 1000 for second in seconds)
    print(f"{name:<34} median {statistics.median(values):6.1f} ms   95 % {values[int(len(values) * 0.95)]:6.1f} ms   "
          f"worst {values[-1]:6.1f} ms")


def stream():
    started = []

    def send(connection):
        started.append(time.monotonic())
        sent = 0
        while sent < STREAM:
            connection.sendall(BLOCK)
            sent += len(BLOCK)
        connection.sendall(END)

    with Peer(send) as peer:
        writeProfiles({"stream": netProfile(peer.port)})
        with Program("stream") as program:
            connected(program)
            before, used = memory(program), processorTime(program)
            while program.ask("view", seconds=60)["cursor"] != [13, 0]:
                # Seldom, so that the watching costs nothing.
                time.sleep(0.5)
            took = time.monotonic() - started[0]
            after = memory(program)
            print(f"{'100 MiB of lines':<34} {took:.1f} s, {STREAM / took / 1e6:.2f} MB/s, "
                  f"{processorTime(program) - used:.1f} s of processor time")
            print(f"{'memory before / after / peak':<34} {before[0]:.1f} / {after[0]:.1f} / {after[1]:.1f} MiB")


def delays():
    with Peer() as peer:
        writeProfiles({"keys": netProfile(peer.port)})
        with Program("keys") as program:
            connected(program)
            keys, cells = [], []
            for number in range(SAMPLES):
                peer.arrivals.clear()
                began = time.time()
                xdotool("key", "--delay", "0", "a")
                waitFor(lambda: peer.arrivals, "the key arrives")
                keys.append(peer.arrivals[0][0] - began)
            program.ask("drawn")
            for number in range(SAMPLES):
                count = program.ask("drawn")["count"]
                began = time.time()
                peer.send(b"b")
                waitFor(lambda: program.ask("drawn")["count"] > count, "the cell is drawn")
                cells.append(program.ask("drawn")["last"] - began)
            spread("key (with xdotool's start) to socket", keys)
            spread("socket to drawn cell", cells)


def connections():
    with Peer(lambda connection: connection.sendall(b"hello\r\n" * 50)) as peer:
        writeProfiles({"again": netProfile(peer.port)})
        with Program("again") as program:
            connected(program)

            def cycle():
                program.connectionMenu("d")
                program.waitState("g_bConnectActive", False)
                program.connectionMenu("c")
                connected(program)
                waitFor(lambda: "hello" in program.rows(), "the host's words")

            for _ in range(3):
                cycle()
            before = figures(program)
            for _ in range(CONNECTIONS):
                cycle()
            after = figures(program)
            print(f"{CONNECTIONS} connections more:")
            for name, value in before.items():
                print(f"  {name:<32} {value:>10} -> {after[name]:>10}")


def figures(program):
    resources, timers = program.ask("resources", "timers")
    return {"handles": resources["handles"], "GDI objects": resources["gdi"], "windows": resources["windows"],
            "timers of the registry": sum(not slot["free"] for slot in timers["slots"]),
            "memory, KiB": round(memory(program)[0] * 1024)}


for part in (delays, connections, stream):
    if len(sys.argv) == 1 or part.__name__ in sys.argv[1:]:
        part()
