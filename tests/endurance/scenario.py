"""The scenario part: hours of virtual time and a million events in qxterm-scenario, with samples of its process."""

import contextlib
import json
import random
import subprocess
import tempfile
import time
from pathlib import Path

from figures import SCENARIO_COLUMNS
from samples import Table
from script import HEAD, Script

SAMPLES = 200
# What is asked for each sample; the last one tells that all before it has been carried out.
QUESTIONS = ("dump terminal", "dump scrollback", "dump state", "dump timers")
UNEXPECTED = "An unexpected error"


class Tool:
    """A running qxterm-scenario. Use it in a with statement."""

    def __init__(self, program):
        self._program = program
        self.boxes = {}  # texts of message boxes, and how often
        self.counts = {"forms": 0, "sockets": 0, "ports": 0, "helpers": 0}
        self.refused = self.printed = 0

    def __enter__(self):
        self._complaints = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([str(self._program)], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=self._complaints, text=True)
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        with contextlib.suppress(OSError):
            self.process.stdin.close()
        self.process.stdout.close()
        self._complaints.close()

    def play(self, lines):
        """Plays these and answers with the dumps, by name."""
        written = "\n".join([*lines, *QUESTIONS]) + "\n"
        try:
            self.process.stdin.write(written)
            self.process.stdin.flush()
        except OSError:
            raise self._ended() from None
        dumps = {}
        while "timers" not in dumps:
            line = self.process.stdout.readline()
            if not line:
                raise self._ended()
            self.printed += 1
            event = json.loads(line)
            if "dump" in event:
                dumps[event["dump"]] = event
            else:
                self._note(event)
        return dumps

    def _ended(self):
        status = self.process.wait()
        self._complaints.seek(0)
        return RuntimeError(f"qxterm-scenario has ended with status {status}: {self._complaints.read().strip()[-2000:]}")

    def _note(self, event):
        kind, operation = event["event"], event.get("op")
        if kind == "window":
            self.counts["forms"] += {"show": 1, "modal": 1, "unload": -1}[operation]
        elif kind == "socket":
            self.counts["sockets"] = 1 if operation == "connect" else 0
        elif kind == "serial" and operation in ("open", "close"):
            self.counts["ports"] = 1 if operation == "open" else 0
        elif kind == "process":
            self.counts["helpers"] += 1 if operation == "start" else -1
        elif kind == "box":
            self.boxes[event["text"]] = self.boxes.get(event["text"], 0) + 1
        elif kind == "refused":
            self.refused += 1

    def memory(self):
        """KiB: private and resident."""
        lines = Path(f"/proc/{self.process.pid}/status").read_text().splitlines()
        status = dict(line.split(":", 1) for line in lines)
        return int(status["RssAnon"].split()[0]), int(status["VmRSS"].split()[0])


def play(program, folder, sitting, seed, events, hours):
    """Plays so many events in so many hours of virtual time. Returns what there is to tell."""
    began = time.monotonic()
    told = {"seed": seed, "failures": []}
    table = Table(folder / "scenario.csv", SCENARIO_COLUMNS)
    script = Script(random.Random(seed))
    with Tool(program) as tool:
        try:
            lines = list(HEAD)
            while script.events < events:
                due = script.events + max(1, events // SAMPLES)
                while script.events < min(due, events):
                    # Long pieces would fill both pipes at once.
                    tool.play([*lines, *script.episode()])
                    lines = []
                # Time goes on evenly.
                behind = int(hours * 3_600_000 * script.events / events) - script.virtual
                dumps = tool.play([script.wait(behind)] if behind > 0 else [])
                table.add(sample(tool, dumps, script, sitting, time.monotonic() - began))
        except (RuntimeError, OSError, ValueError) as failure:
            told["failures"].append(f"behind {script.events} events: {failure}")
    told["failures"] += [f"{count} times the box {text!r}" for text, count in tool.boxes.items() if UNEXPECTED in text]
    return told | {"events": script.events, "virtual": script.virtual / 1000, "boxes": tool.boxes, "refused": tool.refused,
                   "printed": tool.printed, "seconds": time.monotonic() - began}


def sample(tool, dumps, script, sitting, seconds):
    private, resident = tool.memory()
    return {"sitting": sitting, "seconds": f"{seconds:.1f}", "virtual": f"{script.virtual / 1000:.1f}",
            "events": script.events, "rest": 1, "private": private, "resident": resident,
            "registry": sum(not slot["free"] for slot in dumps["timers"]["slots"]), **tool.counts,
            "lines": len(dumps["scrollback"]["lines"]), "carried": len(dumps["terminal"]["carry"]) // 2,
            "files": len(list(Path(f"/proc/{tool.process.pid}/fd").iterdir()))}
