"""What a machine runs short of, or changes, under a running program: address space, room on the disk, the clock, the
display."""

import contextlib
import os
import resource
import subprocess
import tempfile
from pathlib import Path

from program import Failure, waitFor

HERE = Path(__file__).resolve().parent


def addressSpace(process):
    """Bytes that the process has taken."""
    for line in Path(f"/proc/{process}/status").read_text().splitlines():
        if line.startswith("VmSize:"):
            return int(line.split()[1]) * 1024
    raise Failure(f"process {process} has no size")


def _limit(process, size):
    resource.prlimit(process, resource.RLIMIT_AS, (size, resource.RLIM_INFINITY))


class SmallDisk:
    """A disk of a few KiB, mounted in the mounts of this process and its children."""

    def __init__(self, kib):
        self._folder = tempfile.TemporaryDirectory(prefix="qxterm-disk-")
        self.path = Path(self._folder.name)
        self._mounted = []
        self._mount("-t", "tmpfs", "-o", f"size={kib}k,mode=755", "none", self.path)

    def _mount(self, *words):
        done = subprocess.run(["mount", *map(str, words)], capture_output=True, text=True)
        if done.returncode != 0:
            raise Failure(f"{self.path}: {done.stderr.strip()}")
        self._mounted.append(words[-1])

    def over(self, folder):
        """What is written in the folder from now on needs room on this disk."""
        upper, work = self.path / "upper", self.path / "work"
        upper.mkdir()
        work.mkdir()
        self._mount("-t", "overlay", "overlay", "-o", f"lowerdir={folder},upperdir={upper},workdir={work}", folder)

    def fill(self, left=0):
        """Takes all room but `left` bytes, in pages of 4 KiB."""
        with open(self.path / "filler", "wb", buffering=0) as file:
            with contextlib.suppress(OSError):
                while file.write(b"\1" * 4096) == 4096:
                    pass
            file.truncate(os.fstat(file.fileno()).st_size // 4096 * 4096 - left)

    def empty(self):
        (self.path / "filler").unlink()

    def close(self):
        for place in reversed(self._mounted):
            subprocess.run(["umount", "-l", str(place)], check=True)
        self._folder.cleanup()


class Machine:
    """What the programs that are started with `environment` see of their machine."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="qxterm-machine-")
        self._path = Path(self._folder.name)
        library = self._path / "machine.so"
        subprocess.run(["gcc", "-shared", "-fPIC", "-O1", "-o", library, HERE / "machine.c", "-ldl"], check=True)
        self.environment = {"LD_PRELOAD": str(library), "QXTERM_MACHINE": str(self._path)}

    def _set(self, name, number):
        half = self._path / "new"
        half.write_text(str(number))
        half.rename(self._path / name)

    def setClock(self, seconds):
        """By so many seconds away from the right time."""
        self._set("clock", seconds)

    @contextlib.contextmanager
    def fullAddressSpace(self, program, left, largest):
        """Within the with statement the program can take `left` bytes more, in blocks of `largest`. What Wine has set
        aside is taken first. The value gives all of it back before the end."""
        process = program.process.pid
        _limit(process, addressSpace(process) + 65536)
        taken = program.ask("noSpace")["bytes"]
        if taken < 1 << 30:
            raise Failure(f"only {taken} bytes were to be had")
        _limit(process, addressSpace(process) + left)
        self._set("largest", largest)

        def giveBack():
            self._set("largest", 0)
            if program.alive():
                _limit(process, resource.RLIM_INFINITY)
                program.ask("freeSpace")

        try:
            yield giveBack
        finally:
            giveBack()


class Display:
    """A display of its own, without a window manager, that can be taken away."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="qxterm-display-")
        announced = Path(self._folder.name) / "number"
        with open(announced, "wb") as number:
            self._server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp",
                                             "-noreset"], stdin=subprocess.DEVNULL, stdout=number,
                                            stderr=subprocess.DEVNULL)
        waitFor(announced.read_text, "the display listens")
        self.name = f":{announced.read_text().strip()}"

    def kill(self):
        if self._server.poll() is None:
            self._server.kill()
        self._server.wait()

    def close(self):
        self.kill()
        self._folder.cleanup()
