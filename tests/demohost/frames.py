"""Whether the frames on a screen close: each arm of a line-drawing character must meet an arm of its neighbour."""

from model import SHIFT_OUT

_arms = {"j": "ul", "k": "dl", "l": "dr", "m": "ur", "n": "udlr", "q": "lr", "t": "udr", "u": "udl", "v": "ulr",
         "w": "dlr", "x": "ud"}
_step = {"u": (-1, 0, "d"), "d": (1, 0, "u"), "l": (0, -1, "r"), "r": (0, 1, "l")}


def _armsAt(model, row, column):
    if not (0 <= row < 25 and 0 <= column < 80) or not model.flags(row, column) & SHIFT_OUT:
        return None
    return _arms.get(model.rows[row].text[column], "")


def openEnds(model, skip=()):
    """The loose ends as (row, column, arm); skip is a set of rows not to be looked at.

    A horizontal arm may also end at text, because titles interrupt the upper side of a frame.
    """
    loose = []
    for row in range(25):
        if row in skip:
            continue
        for column in range(80):
            for arm in _armsAt(model, row, column) or "":
                down, right, opposite = _step[arm]
                neighbour = _armsAt(model, row + down, column + right)
                if neighbour is None and right and (row, column + right) != (row, 80):
                    continue
                if neighbour is None or opposite not in neighbour:
                    loose.append((row, column, arm))
    return loose


def corners(model):
    """How many of each corner stand on the screen, as a dictionary by letter."""
    count = dict.fromkeys("lkmj", 0)
    for row in range(25):
        for column in range(80):
            letter = model.rows[row].text[column]
            if letter in count and model.flags(row, column) & SHIFT_OUT:
                count[letter] += 1
    return count
