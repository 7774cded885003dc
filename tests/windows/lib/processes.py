"""What the system knows of processes: which there are, their processor time and memory."""

import contextlib
import os
import socket
import struct
from pathlib import Path

TICKS = os.sysconf("SC_CLK_TCK")  # a second


def inPrefix(variable="WINEPREFIX"):
    """The words of the command lines of the processes in this run's prefix, by process number. variable: of their environment,
    which names the prefix."""
    wanted = f"{variable}={os.environ['WINEPREFIX']}".encode()
    found = {}
    for folder in Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):  # it has ended meanwhile
            words = (folder / "cmdline").read_bytes().rstrip(b"\0").decode("latin-1").split("\0")
            if words[0] and wanted in (folder / "environ").read_bytes().split(b"\0"):
                found[int(folder.name)] = words
    return found


def processorTime(process):
    """Seconds of processor time that the process has used."""
    fields = Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def threadTimes(process):
    """Seconds in which the process's first thread has run, and in which it has waited for a processor."""
    ran, waited, _ = Path(f"/proc/{process}/schedstat").read_text().split()
    return int(ran) / 1e9, int(waited) / 1e9


def exactTime(process):
    """As processorTime, to the nanosecond, of a process whose threads stay."""
    threads = Path(f"/proc/{process}/task").iterdir()
    return sum(int((thread / "schedstat").read_text().split()[0]) for thread in threads) / 1e9


def memory(process):
    """Resident and peak resident size in MiB."""
    status = Path(f"/proc/{process}/status").read_text()
    values = dict(line.split(":", 1) for line in status.splitlines())
    return tuple(int(values[name].split()[0]) / 1024 for name in ("VmRSS", "VmHWM"))


def image(process):
    """The addresses between which a Windows program's own file lies, without the libraries."""
    lines = Path(f"/proc/{process}/maps").read_text().splitlines()
    ranges = [line.split(" ", 1)[0].split("-") for line in lines if line.endswith(".exe")]
    return int(ranges[0][0], 16), int(ranges[-1][1], 16)


def wineServer():
    """The process that stands in for the system's kernel in this run's prefix."""
    for process, words in inPrefix().items():
        if "wineserver" in words[0]:
            return process
    raise ProcessLookupError("Wine's server is not running")


def displayServer():
    """The process that is the display."""
    number = os.environ["DISPLAY"].lstrip(":").split(".")[0]
    with socket.socket(socket.AF_UNIX) as connection:
        connection.connect(f"/tmp/.X11-unix/X{number}")
        who = connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, struct.calcsize("3i"))
    return struct.unpack("3i", who)[0]
