"""Telnet on the host's side: a decoder for what the client sends, and the requests that the host makes.

The decoder keeps its state from block to block, so a command may be cut at any byte.
"""

from enum import Enum, auto

SE, SB, WILL, WONT, DO, DONT, IAC = 240, 250, 251, 252, 253, 254, 255
ECHO, SUPPRESS_GO_AHEAD, TIMING_MARK, TERMINAL_TYPE = 1, 3, 6, 24
TYPE_IS, TYPE_SEND = 0, 1

# Longer sub-negotiations are read to their end, but only this much of them is kept.
SUBNEGOTIATION_LIMIT = 128

OPENING = bytes([IAC, DO, TERMINAL_TYPE, IAC, WILL, ECHO, IAC, WILL, SUPPRESS_GO_AHEAD])

# Answer to DO TIMING-MARK: all that came before it has been acted upon.
TIME_MARKED = bytes([IAC, WILL, TIMING_MARK])

# The terminal skips one byte behind IAC SE; the NUL is there to be skipped (and is ignored where it is not).
ASK_TYPE = bytes([IAC, SB, TERMINAL_TYPE, TYPE_SEND, IAC, SE, 0])


class _State(Enum):
    data = auto()
    command = auto()
    option = auto()
    subData = auto()
    subCommand = auto()


class Decoder:
    """Splits received bytes into data, option offers and sub-negotiations.

    feed() returns a list of events in order of arrival: ("data", bytes), ("option", command, option) with command
    WILL, WONT, DO or DONT, and ("sub", option, bytes).
    """

    def __init__(self):
        self._state = _State.data
        self._command = 0
        self._sub = bytearray()

    def feed(self, block):
        events = []
        plain = bytearray()

        def endPlain():
            if plain:
                events.append(("data", bytes(plain)))
                plain.clear()

        for byte in block:
            if self._state is _State.data:
                if byte == IAC:
                    self._state = _State.command
                else:
                    plain.append(byte)
            elif self._state is _State.command:
                if byte == IAC:
                    plain.append(IAC)
                    self._state = _State.data
                elif byte in (WILL, WONT, DO, DONT):
                    self._command = byte
                    self._state = _State.option
                elif byte == SB:
                    self._sub.clear()
                    self._state = _State.subData
                else:
                    self._state = _State.data
            elif self._state is _State.option:
                endPlain()
                events.append(("option", self._command, byte))
                self._state = _State.data
            elif self._state is _State.subData:
                if byte == IAC:
                    self._state = _State.subCommand
                else:
                    self._keepSub(byte)
            else:
                if byte == IAC:
                    self._keepSub(IAC)
                    self._state = _State.subData
                elif byte == SE:
                    endPlain()
                    if self._sub:
                        events.append(("sub", self._sub[0], bytes(self._sub[1:])))
                    self._state = _State.data
                else:
                    self._state = _State.subData
        endPlain()
        return events

    def _keepSub(self, byte):
        if len(self._sub) < SUBNEGOTIATION_LIMIT:
            self._sub.append(byte)


class Refusals:
    """Answers to offers that the host did not ask for; each option is answered once, so that no loop can arise."""

    def __init__(self):
        self._answered = set()

    def answer(self, command, option):
        """The bytes to send for one offer, often none."""
        own = (ECHO, SUPPRESS_GO_AHEAD)
        if command == WILL and option not in (TERMINAL_TYPE, SUPPRESS_GO_AHEAD):
            reply = DONT
        elif command == DO and option not in own:
            reply = WONT
        else:
            return b""
        if (reply, option) in self._answered:
            return b""
        self._answered.add((reply, option))
        return bytes([IAC, reply, option])
