"""Trace logs as the program writes them: sessions of every kind played by qxterm-scenario with the trace on."""

import json
import random
import subprocess

BLOCK_COMMANDS = ("socket data ", "serial data ")
DUMPS = ["dump screen", "dump window"]


def play(tool, lines):
    """What the tool prints for these lines: the dumps as they are printed, and the lines of the trace."""
    text = "".join(line + "\n" for line in lines)
    done = subprocess.run([tool], input=text.encode("latin-1"), capture_output=True)
    if done.returncode != 0:
        raise AssertionError(f"the scenario ends with {done.returncode}: {done.stderr.decode()}")
    printed = done.stdout.splitlines()
    dumps = [line for line in printed if line.startswith(b'{"dump"')]
    return dumps, [json.loads(line)["line"] for line in printed if line.startswith(b'{"event":"trace"')]


def withDumps(lines):
    """The same lines, and behind each block the state of screen and window, and of the scrollback at the end."""
    for line in lines:
        yield line
        if line.startswith(BLOCK_COMMANDS):
            yield from DUMPS
    yield "dump scrollback"


def logOf(trace, lineEnd="\r\n"):
    """The file that the program would have written."""
    return "".join(line + lineEnd for line in trace).encode("latin-1")


def pieces(data, seed, longest=2000):
    """The bytes in blocks of random lengths, many of them short."""
    chance = random.Random(seed)
    place = 0
    while place < len(data):
        length = chance.randint(1, chance.choice([3, 40, longest]))
        yield data[place:place + length]
        place += length


def setUp(profiles):
    """Lines that prepare profiles {name: {key: value}}, with the trace on. The first is menu entry 5, and so on."""
    lines = ["ini Settings Logging 1", "ini Settings Profiles " + " ".join(profiles),
             "ini Settings Order " + " ".join(profiles)]
    for name, values in profiles.items():
        lines += [f"ini {name} {key} {value}" for key, value in values.items()]
    return lines


def replayOf(tool, log):
    """The lines of the scenario that the tool makes of a log."""
    done = subprocess.run([tool, "--replay", "-"], input=log, capture_output=True)
    if done.returncode != 0:
        raise AssertionError(f"--replay ends with {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode("ascii").splitlines()
