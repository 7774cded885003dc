"""The time that the pages show, and the seed of everything that looks like chance."""

import datetime
import random


class SystemClock:
    """The machine's clock; figures differ from session to session."""

    isFixed = False

    def now(self):
        return datetime.datetime.now()

    def makeRandom(self):
        return random.Random()


class FixedClock:
    """A stopped clock: the live pages move only when the user asks, and always in the same way."""

    isFixed = True
    _moment = datetime.datetime(2024, 5, 14, 9, 30, 0)
    # A morning with something to see: every state of an agent, a call that has waited too long.
    _seed = 2

    def now(self):
        return self._moment

    def makeRandom(self):
        return random.Random(self._seed)
