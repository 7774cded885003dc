"""A scenario without an end: sessions of all kinds, one after another, with a user who does this and that. A seed decides.

Each episode begins and ends without a session and without a dialog.
"""

PROFILES = ("net", "serial", "modem", "ssh", "loop")  # in the order of the Open dialog
HEAD = [f"ini Settings Profiles {' '.join(PROFILES)}",
        *(f"ini {name} {key} {value}" for name in PROFILES
          for key, value in (("connect", name), ("host", "host1"), ("phone", "5551234"), ("font", "medium"))),
        'clipboard "what is pasted"', "start"]
WORDS = ("one", "status", "queue", "ready", "call", "agent", "report", "waiting", "north", "line")
KEYS = (13, 9, 8, 27, 33, 34, 35, 36, 37, 38, 39, 40, 112, 115, 119)  # virtual-key codes
CELL = (8, 16)  # pixels, at medium size
MOST_PARAMETER = 30


class Script:
    """What is played. events: how many; virtual: milliseconds that have passed by `wait`."""

    def __init__(self, random):
        self._random = random
        self.events = 0
        self.virtual = 0

    def wait(self, milliseconds):
        self.virtual += milliseconds
        return f"wait {milliseconds}"

    def episode(self, actions=150):
        """The lines of one session, and of what comes before it."""
        kind = self._random.randrange(len(PROFILES))
        name = PROFILES[kind]
        lines = ["menu profile 1", f"choose lstprof {kind}", "click cmd3Dconn"]
        arrive = "socket data" if name in ("net", "ssh") else "serial data"
        if name == "ssh":
            lines += ['type "bob\\rsecret\\r"', self.wait(300)]
        if name in ("net", "modem", "ssh") and self._random.random() < 0.1:
            # The user does not wait for it.
            return self._counted([*lines, self.wait(200), "click cmdCancel", self.wait(500)])
        lines += {"net": ["socket connect", self.wait(350)], "serial": [self.wait(350)],
                  "modem": [self.wait(1000), "serial carrier on", self.wait(350)],
                  "ssh": ["socket connect", self.wait(350), 'socket data "login: "', 'socket data "Password: "'],
                  "loop": [self.wait(350)]}[name]
        for _ in range(self._random.randint(actions // 2, actions + actions // 2)):
            lines += self._action(arrive, name)
        # Whatever the last output left behind: an end to it.
        end = '"\\e\\\\\\ec\\e[m"'
        lines += [f"{arrive} {end}"] if name != "loop" else [f"type {end}"]
        lines += self._end(name)
        return self._counted(lines)

    def _counted(self, lines):
        self.events += len(lines)
        return lines

    def _end(self, name):
        if name in ("net", "ssh") and self._random.random() < 0.4:
            return ["socket close", self.wait(1000)]
        if name == "modem":
            return self._random.choice((["menu connection 1", "serial carrier off"], ["serial carrier off", self.wait(1000)])) + \
                [self.wait(1000)]
        return ["menu connection 1", self.wait(1000)]

    # --- in a session ------------------------------------------------------------------------------------------------

    def _action(self, arrive, name):
        kind = self._random.random()
        if kind < 0.5:
            if name == "loop":
                return [f'type "{self._text()}"']
            return [f"{arrive} {self._output()}"]
        if kind < 0.6:
            return [self.wait(self._random.choice((10, 10, 20, 50)))]
        choices = (self._typed, self._typed, self._key, self._mouse, self._mouse, self._scroll, self._edit, self._options,
                   self._about, self._profiles, self._paint, self._clipboard)
        return self._random.choice(choices)()

    def _text(self):
        return " ".join(self._random.choices(WORDS, k=self._random.randint(1, 12)))

    def _output(self):
        """A block as hosts send them."""
        parts = []
        for _ in range(self._random.randint(1, 12)):
            parts.append(self._random.choice((self._line, self._line, self._sequence, self._programmed))())
        return '"' + "".join(parts) + '"'

    def _line(self):
        return self._text() + self._random.choice(("\\r\\n", "\\r\\n", "\\n", "\\r", "\\t", "", "\\b"))

    def _sequence(self):
        number = lambda: self._random.randint(0, MOST_PARAMETER)  # noqa: E731
        final = self._random.choice("ABCDHJKLMPmrhl@X")
        if final == "m":
            return f"\\e[{self._random.choice((0, 1, 4, 5, 7, 31, 34, 42, 47))}m"
        if final == "r":
            top = self._random.randint(1, 20)
            return f"\\e[{top};{self._random.randint(top + 1, 24)}r"
        if final in "hl":
            return f"\\e[{self._random.choice(('4', '?5', '?6', '?7', '?25', '20'))}{final}"
        if final == "H":
            return f"\\e[{self._random.randint(1, 24)};{self._random.randint(1, 80)}H"
        if final == "J":
            return f"\\e[{self._random.randint(0, 2)}J"
        return f"\\e[{number()}{final}"

    def _programmed(self):
        return self._random.choice(("\\e7", "\\e8", "\\eD", "\\eM", "\\eE", "\\eH", "\\x0e", "\\x0f", "\\e)0", "\\e(B", "\\x07",
                                    "\\e[2p", "\\e[0p", "\\e[5", "\\e[m"))

    def _typed(self):
        return [f'type "{self._random.choice(WORDS)}"']

    def _key(self):
        return [f"key {self._random.choice(KEYS)} {self._random.choice((0, 0, 0, 1, 2))}"]

    def _at(self):
        return f"{self._random.randrange(80) * CELL[0]} {self._random.randrange(-1, 26) * CELL[1]}"

    def _mouse(self):
        return [f"mouse down {self._at()}", *(f"mouse move {self._at()}" for _ in range(self._random.randint(1, 4))),
                f"mouse up {self._at()}"]

    def _scroll(self):
        return [f"scroll {self._random.randint(1, 501)}"]

    def _edit(self):
        return [f"menu edit {self._random.choice((0, 0, 1))}"]

    def _paint(self):
        return [self._random.choice(("paint", "deactivate", "activate"))]

    def _clipboard(self):
        return [f'clipboard "{self._text()}"']

    def _about(self):
        return ["menu help 3", self.wait(10), "click cmdOK"]

    def _profiles(self):
        return ["menu profile 3", "set txtprof other", "click cmd3Dcancel"]

    def _options(self):
        size = self._random.choice(("Small", "Medium", "Large"))
        lines = ["menu connection 3", f"click option3D{size}", f"set txtConnectTimeout {self._random.randint(1, 999)}"]
        if self._random.random() < 0.5:
            return [*lines, "click cmdCancel"]
        # Kept, so that nothing is asked about it when the next profile is opened.
        return [*lines, "click cmdOK", "menu profile 2"]
