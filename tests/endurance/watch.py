"""Takes the samples of a run in the window: every so many seconds, and at rest when it is told."""

import os
import subprocess
import threading
import time
from pathlib import Path

import processes
from judgement import answersOf, percentile
from program import BUILD, Failure
from ssh_server import helpers

ASKED_EVERY = 100  # milliseconds between two questions to the window


def _status(process):
    lines = Path(f"/proc/{process}/status").read_text().splitlines()
    return dict(line.split(":", 1) for line in lines)


def _resident(process):
    """KiB."""
    return int(_status(process)["VmRSS"].split()[0])


class Asker:
    """The Windows program that asks the window for a sign of life; use it in a with statement."""

    def __init__(self, path):
        """path: a file that gets a line for each question."""
        self._path = path

    def __enter__(self):
        self._out = open(self._path, "w")
        self._process = subprocess.Popen([os.environ["WINE"], str(BUILD / "asker.exe"), str(ASKED_EVERY)],
                                         stdin=subprocess.DEVNULL, stdout=self._out, stderr=subprocess.DEVNULL)
        self._at = 0
        return self

    def __exit__(self, *_):
        self._process.kill()
        self._process.wait()
        self._out.close()

    def news(self):
        """(milliseconds of the window, those of an idle one) since the last call."""
        with open(self._path) as file:
            file.seek(self._at)
            text = file.read()
        whole = text[:text.rfind("\n") + 1]
        self._at += len(whole)
        return answersOf(whole)


class Watch(threading.Thread):
    """Use it in a with statement."""

    def __init__(self, desk, hands, table, asker, sitting, every):
        super().__init__(daemon=True)
        self._desk, self._hands, self._table, self._asker = desk, hands, table, asker
        self._sitting, self._every = sitting, every
        self._began = time.monotonic()
        self._server, self._display = processes.wineServer(), processes.displayServer()
        self._over = threading.Event()
        self._taking = threading.Lock()
        self.received = lambda: 0
        self.phase = "start"
        self.failure = None

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self._over.set()
        self.join()

    def run(self):
        while not self._over.wait(self._every):
            try:
                self.take()
            except (Failure, OSError) as failure:
                self.failure = failure
                return

    def processor(self):
        """Seconds in which the window's thread has run, and in which it has waited for a processor."""
        ran, waited = self._desk.processor()
        return {"ran": ran, "waited": waited}

    def take(self, rest=False):
        with self._taking:
            process = self._desk.process.pid
            resources, timers = self._desk.ask("resources", "timers", seconds=60)
            found, idle = self._asker.news()
            row = {"sitting": self._sitting, "seconds": f"{time.monotonic() - self._began:.1f}", "phase": self.phase,
                   "rest": int(rest), "private": resources["pageFile"] // 1024, "resident": _resident(process), "heap": resources["heap"] // 1024,
                   "handles": resources["handles"], "gdi": resources["gdi"], "user": resources["user"],
                   "registry": sum(not slot["free"] for slot in timers["slots"]),
                   "timers": resources["systemTimers"], "threads": int(_status(process)["Threads"]),
                   "files": len(os.listdir(f"/proc/{process}/fd")), "helpers": len(helpers()),
                   "server": _resident(self._server), "display": _resident(self._display),
                   "received": self.received(), "typed": self._hands.typed, "sessions": self._hands.sessions,
                   "load": f"{os.getloadavg()[0]:.1f}"}
            for name, times in (("answer", found), ("idle", idle)):
                if times:
                    row |= {f"{name}50": f"{percentile(times, 0.5):.2f}", f"{name}99": f"{percentile(times, 0.99):.2f}"}
            self._table.add(row)
            return row
