"""One sitting in the window: gigabytes from a host while a user works. tests/endurance starts it, with display and prefix."""

import argparse
import contextlib
import json
import random
import socket
import sys
import tempfile
import time
import traceback
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "windows" / "lib"), str(HERE.parent / "windows" / "measure")]
import feeder  # noqa: E402
from account import testUser  # noqa: E402
from display import Display  # noqa: E402
from figures import WINDOW_COLUMNS  # noqa: E402
from hands import Hands, SharedDesk, expectNothing  # noqa: E402
from listener import Listener, PortTaken, inBackground  # noqa: E402
from program import BUILD, Failure, Skip, netProfile, saveScreen, waitFor, writeProfiles, xdotool  # noqa: E402
from samples import Table  # noqa: E402
from serial_line import SerialLine, nameSerialPorts, serialProfile  # noqa: E402
from ssh_server import HOST, TELNET, SshServer, noHelpers, programFolder  # noqa: E402
from watch import Asker, Watch  # noqa: E402

SSH_SESSIONS = 3  # of a round
LONGEST_PAUSE = 2.0  # seconds of the user between two things
PORT_PATIENCE = 300.0  # seconds
MOST_FAILURES = 5  # one behind the other, until the sitting is given up
SERIAL_SECONDS = 20.0
SERIAL_PIECE = 4096
SERIAL_SPEED = 11520  # bytes a second, at 115200 baud
DROPPED = "The connection has been dropped"


class Over(Exception):
    """The sitting's time is over."""


class Sitting:
    def __init__(self, plan, desk, hands, host, watch, line, tunnel):
        self._plan, self._desk, self._hands, self._host = plan, desk, hands, host
        self._watch, self._line, self._tunnel = watch, line, tunnel
        self._random = hands.random
        self._end = time.monotonic() + plan.hours * 3600
        self._fed = 0  # bytes of the phases that are over
        self._feeder = None
        self._inARow = 0
        self.failures = []
        self.actions = {}
        self.rounds = 0
        self.left = []  # phases that could not be, and why
        watch.received = self.received

    def received(self):
        return self._fed + (self._feeder.sent if self._feeder is not None else 0)

    def run(self):
        with contextlib.suppress(Over):
            while True:
                self.rounds += 1
                for name, phase in self._phases():
                    self._one(name, phase)
        return self

    def _phases(self):
        flood = {kind: lambda kind=kind: self._flood(kind) for kind in ("y lines", "no line end", "recorded")}
        return [*flood.items(), ("reconnections", self._reconnections), ("by hand", self._byHand), ("serial", self._serial),
                ("loop", self._loop), ("ssh", self._ssh)]

    def _one(self, name, phase):
        self._watch.phase = f"{self.rounds} {name}"
        began = time.monotonic()
        try:
            phase()
        except Failure as failure:
            self._failed(name, failure)
            self._network()
        if self._watch.failure is not None:
            raise self._watch.failure
        self._settled(name)
        print(f"round {self.rounds}, {name}: {time.monotonic() - began:.0f} s, {self.received() / 1e9:.2f} GB so far, "
              f"{len(self.failures)} failures", flush=True)
        self._stopWhenOver()

    def _stopWhenOver(self):
        if time.monotonic() > self._end:
            raise Over

    def _failed(self, what, failure):
        if not self._desk.alive():
            raise failure
        number = len(self.failures) + 1
        text = f"round {self.rounds}, {what}: {failure}"
        self.failures.append(text)
        print(f"FAILED {text}", flush=True)
        saveScreen(f"endurance-{number}")
        self._inARow += 1
        if self._inARow >= MOST_FAILURES:
            raise Failure(f"{MOST_FAILURES} failures one behind the other: the sitting is given up")
        self._hands.rest()
        self._host.take()

    # --- phases ------------------------------------------------------------------------------------------------------

    def _flood(self, kind):
        """A gigabyte of one kind, while the user does this and that."""
        self._network()
        self._feeder = feeder.Feeder(self._host, kind, self._plan.megabytes * feeder.MEGABYTE)
        try:
            while self._feeder.is_alive() and time.monotonic() < self._end:
                self._act(self._hands.any)
                if self._random.random() < 0.05:
                    self._act(self._hands.reconnect)
        finally:
            self._feeder.stop()
            self._fed, self._feeder = self.received(), None

    def _act(self, action):
        try:
            name = action() or action.__name__
        except Failure as failure:
            self._failed(self._watch.phase, failure)
            self._network()
        else:
            time.sleep(self._random.uniform(0, LONGEST_PAUSE))
            self._inARow = 0
            self.actions[name] = self.actions.get(name, 0) + 1

    def _reconnections(self):
        """The session ends while output flows, or between two blocks, and a new one begins."""
        self._network()
        self._feeder = feeder.Feeder(self._host, "application", 10 ** 12)
        try:
            for number in range(self._plan.reconnections):
                if number % 4 == 3:
                    # This time it is the host that ends it.
                    self._host.hangUp()
                    self._desk.answer(DROPPED, "OK")
                    self._desk.waitState("g_bConnectActive", False)
                self._act(self._hands.reconnect)
                if time.monotonic() > self._end:
                    break
        finally:
            self._feeder.stop()
            self._fed, self._feeder = self.received(), None

    def _byHand(self):
        """A host that is quiet."""
        self._network()
        for _ in range(self._plan.actions):
            self._act(self._hands.any)

    def _serial(self):
        self._hands.choose("serial")
        self._hands.connected()
        # At the line's speed. Each wait for characters costs Wine a thread, of which 400 bytes stay for good: without
        # the pace that would be megabytes.
        output = feeder.KINDS["plain"](int(self._plan.serial * SERIAL_SPEED))
        self._line.received.clear()
        for at in range(0, len(output), SERIAL_PIECE):
            self._line.send(output[at:at + SERIAL_PIECE], 60)
            time.sleep(SERIAL_PIECE / SERIAL_SPEED)
        self._fed += len(output)
        self._desk.type("serial words")
        self._line.expect(b"serial words", "what the serial line gets of the keys", 60)
        self._hands.typed += len("serial words")
        self._hands.ordinaryIsRight(self._line.send, feeder.page)

    def _loop(self):
        self._hands.choose("loop")
        self._hands.connected()
        text = "".join(self._random.choices("abcdefgh ", k=40)).strip()
        self._desk.key("Escape")
        self._desk.type("c")
        self._desk.type(text)
        self._desk.waitRows({0: text}, "what was typed into the loop")

    def _ssh(self):
        if self._tunnel is None:
            return
        self._hands.leave()
        with self._tunnel.behind():
            for number in range(SSH_SESSIONS):
                if number == 0:
                    self._hands.choose("tunnel")
                else:
                    self._desk.connectionMenu("c")
                self._desk.focus()
                for word in (self._tunnel.name, "word"):
                    self._desk.type(word)
                    self._desk.key("Return")
                self._desk.waitText(f"welcome {self._tunnel.name} with word", seconds=60)
                self._hands.connected()
                self._hands.leave()
                noHelpers("after a session through SSH")

    # --- between them ------------------------------------------------------------------------------------------------

    def _network(self):
        """In a session over the network."""
        if self._desk.caption().endswith(" - net"):
            if not self._desk.ask("state")["g_bConnectActive"]:
                self._hands.reconnect()
            return
        before = self._host.connectedAt
        self._hands.choose("net")
        waitFor(lambda: self._host.connectedAt != before, "the host sees the new session")
        self._hands.connected()
        self._host.take()

    def _settled(self, name):
        """Behind a phase ordinary output is shown rightly, the host has got what was typed, and a sample is taken."""
        try:
            self._network()
            waitFor(self._host.isRead, "the window has read all", 120)
            self._hands.ordinaryIsRight(self._host.send, feeder.page)
            self._hands.typeWord()
            expectNothing(self._host, f"behind {name}")
            # What is closed goes with the next messages.
            time.sleep(1)
            self._watch.take(rest=True)
        except Failure as failure:
            self._failed(f"behind {name}", failure)


class Tunnel:
    """What stands at the far end of a session through SSH."""

    def __init__(self, name):
        self.name = name

    def behind(self):
        def serve(connection):
            connection.sendall(b"login: ")
            name = line(connection)
            connection.sendall(b"Password: ")
            word = line(connection)
            connection.sendall(b"\r\nwelcome " + name + b" with " + word)
            while connection.recv(100):
                pass

        def listener():
            with contextlib.suppress(PortTaken):
                return Listener(inBackground(serve), TELNET)
            return None

        # Another test may have it for a while.
        return waitFor(listener, f"port {TELNET}, behind the tunnel, is free", PORT_PATIENCE, pause=1)


def line(connection):
    text = b""
    while not text.endswith(b"\r"):
        text += connection.recv(1) or b"\r"
    return text[:-1]


def openTunnel(stack, profiles):
    """(tunnel, the program's folder, why there is none): sessions through SSH need root, a client and a free port."""
    try:
        folder = programFolder(stack.enter_context(tempfile.TemporaryDirectory(prefix="qxterm-ssh-")))
        name, _, _ = stack.enter_context(testUser())
        server = stack.enter_context(SshServer(name))
        socket.create_server((HOST, TELNET)).close()
    except (Failure, Skip, OSError) as reason:
        return None, BUILD, str(reason)
    server.introduce()
    profiles["tunnel"] = {"connect": "ssh", "host": HOST, "SSHnetport": server.port, "Font": "medium"}
    return Tunnel(name), folder, ""


def sit(plan):
    """Returns what there is to tell about the sitting."""
    seed = plan.seed
    told = {"failures": [], "seed": seed}
    line_ = SerialLine()
    nameSerialPorts({"COM2": line_.link})
    began = time.monotonic()
    try:
        with contextlib.ExitStack() as stack:
            host = stack.enter_context(feeder.TypedHost())
            profiles = {"net": netProfile(host.port, Font="medium"), "serial": serialProfile(baud=115200),
                        "loop": {"connect": "loop", "Font": "large"}}
            tunnel, folder, without = openTunnel(stack, profiles)
            writeProfiles(profiles, Order="".join(f"{name} " for name in profiles), timeout=30)
            stack.enter_context(line_)
            screen = stack.enter_context(Display())
            desk = stack.enter_context(SharedDesk("net", folder=folder, environment=line_.environment()))
            hands = Hands(desk, random.Random(seed), host, screen)
            host.waitConnected()
            hands.connected()
            asker = stack.enter_context(Asker(plan.folder / f"answers-{plan.sitting}.txt"))
            table = Table(plan.folder / "window.csv", WINDOW_COLUMNS)
            watch = stack.enter_context(Watch(desk, hands, table, asker, plan.sitting, plan.every))
            sitting = Sitting(plan, desk, hands, host, watch, line_, tunnel)
            try:
                sitting.run()
            finally:
                told |= {"failures": sitting.failures, "rounds": sitting.rounds, "received": sitting.received(),
                         "typed": hands.typed, "sessions": hands.sessions, "actions": sitting.actions, "without": without}
                with contextlib.suppress(OSError):
                    told |= watch.processor()
                (plan.folder / f"keys-{plan.sitting}.txt").write_text("".join(f"{ms:.2f}\n" for ms in hands.keyTimes))
    except (Failure, OSError, KeyError) as failure:
        print(f"FAILED {failure}", flush=True)
        traceback.print_exc()
        told["failures"].append(f"the sitting ended early: {failure}")
    told["seconds"] = time.monotonic() - began
    return told


def parsed():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folder", type=Path, required=True)
    parser.add_argument("--sitting", type=int, required=True)
    parser.add_argument("--hours", type=float, required=True)
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--every", type=float, required=True)
    parser.add_argument("--megabytes", type=int, required=True)
    parser.add_argument("--reconnections", type=int, default=20)
    parser.add_argument("--actions", type=int, default=20)
    parser.add_argument("--serial", type=float, default=SERIAL_SECONDS)
    return parser.parse_args()


def main():
    plan = parsed()
    xdotool("mousemove", 5, 5)
    told = sit(plan)
    (plan.folder / f"sitting-{plan.sitting}.json").write_text(json.dumps(told))


main()
