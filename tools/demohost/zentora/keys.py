"""From the bytes that the terminal sends to named keys.

A key is a one-character string for a printable character, else a name: up, down, left, right, enter, tab,
backspace, delete, escape, ctrl-a to ctrl-z, f1 to f8 (the navigation bank of function keys) and t1 to t8 (the tools
bank, see fkeys.py).
"""

ESC = 27

_cursorKeys = {ord("A"): "up", ord("B"): "down", ord("C"): "right", ord("D"): "left"}
_singleKeys = {8: "backspace", 9: "tab", 10: "enter", 127: "delete"}


class Decoder:
    """Collects keys from blocks; a sequence may be cut at any byte."""

    def __init__(self):
        self._pending = bytearray()
        self._afterReturn = False

    @property
    def isPending(self):
        """True while an escape waits for what may follow it."""
        return bool(self._pending)

    def feed(self, block):
        keys = []
        for byte in block:
            self._take(byte, keys)
        return keys

    def giveUp(self):
        """Called when nothing followed for a while: the escape was the Escape key."""
        if not self._pending:
            return []
        self._pending.clear()
        return ["escape"]

    def _take(self, byte, keys):
        # Return arrives as CR alone, CR LF or CR NUL, depending on the client.
        afterReturn, self._afterReturn = self._afterReturn, False
        if afterReturn and byte in (0, 10):
            return
        if self._pending:
            self._continueSequence(byte, keys)
        elif byte == ESC:
            self._pending.append(byte)
        elif byte == 13:
            keys.append("enter")
            self._afterReturn = True
        elif byte in _singleKeys:
            keys.append(_singleKeys[byte])
        elif 1 <= byte <= 26:
            keys.append("ctrl-" + chr(byte + 96))
        elif 32 <= byte <= 126 or 161 <= byte <= 254:
            keys.append(chr(byte))

    def _continueSequence(self, byte, keys):
        if len(self._pending) == 1:
            if byte in (ord("["), ord("O")):
                self._pending.append(byte)
                return
            self._pending.clear()
            keys.append("escape")
            self._take(byte, keys)
            return
        introducer = self._pending[1]
        if introducer == ord("["):
            if byte in _cursorKeys:
                keys.append(_cursorKeys[byte])
            elif (ord("0") <= byte <= ord("9") or byte == ord(";")) and len(self._pending) < 16:
                # Another terminal's longer sequence is read to its end and means nothing here.
                self._pending.append(byte)
                return
        elif ord("c") <= byte <= ord("j"):
            keys.append(f"f{byte - ord('b')}")
        elif ord("1") <= byte <= ord("8"):
            keys.append(f"t{byte - ord('0')}")
        self._pending.clear()
        if byte == ESC:
            self._pending.append(byte)
