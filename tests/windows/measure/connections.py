"""What connecting again and again leaves behind in the program: handles, windows, timers, memory."""

import processes
from peers import Peer
from program import Program, netProfile, waitFor, writeProfiles

FIRST = 3  # connections before counting begins


def options(parser):
    parser.add_argument("--count", type=int, default=50, help="how many connections (50)")


def measure(arguments):
    with Peer(lambda connection: connection.sendall(b"hello\r\n" * 50)) as peer:
        writeProfiles({"again": netProfile(peer.port)})
        with Program("again") as program:
            waitConnected(program)
            for _ in range(FIRST):
                cycle(program)
            before = figures(program)
            for _ in range(arguments.count):
                cycle(program)
            after = figures(program)
    print(f"{arguments.count} connections more:")
    for name, value in before.items():
        print(f"  {name:<32} {value:>10} -> {after[name]:>10}")


def waitConnected(program):
    program.waitState("g_bConnectActive", True)
    program.waitForm("frmConn", loaded=False)
    program.focus()


def cycle(program):
    program.connectionMenu("d")
    program.waitState("g_bConnectActive", False)
    program.connectionMenu("c")
    waitConnected(program)
    waitFor(lambda: "hello" in program.rows(), "the host's words")


def figures(program):
    resources, timers = program.ask("resources", "timers")
    return {"handles": resources["handles"], "GDI objects": resources["gdi"], "windows": resources["windows"],
            "timers of the registry": sum(not slot["free"] for slot in timers["slots"]),
            "memory, KiB": round(processes.memory(program.process.pid)[0] * 1024)}
