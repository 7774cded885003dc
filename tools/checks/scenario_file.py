"""Scenario files: the commands, and below each command what it must print, in lines that begin with "#> ".

An object that the tool prints is written in lines that a person can read; `encode` makes them, `decode` turns them
back into the same object:

    {"event":"caption","name":"frmterm",...}    caption name="frmterm" text="QXTERM"
    {"dump":"view","cursor":[5,0],...}          dump view cursor=[5,0]
                                                  rows.0:  |hello|

The first line names the event or the dump; any other object stands there as JSON. Members follow as KEY=VALUE. What
is long stands below, indented, one part a line, each behind the path that leads to it:

    PATH: |text|         a text, with all of its blanks
    PATH: KEY=VALUE ...  members of an object; more lines of the same path go on
    PATH: VALUE          anything else
    PATH+: VALUE         goes on with a text or list that began above

In a path `.KEY` leads into an object, `[N]` into a list; `[N-M]` stands for equal items. A value is JSON, or a list of
numbers in short: `[7*80]` is 7 eighty times, `[0..24]` all numbers from 0 to 24.
"""

import copy
import dataclasses
import json
import re

MARK = "#> "
INDENT = "  "
WIDTH = 120 - len(MARK)
PIECE = 80  # characters of a long text in a line
SHORT = 8  # a list of numbers up to this length stays JSON

BARE_KEY = re.compile(r"[A-Za-z0-9_()]+")
HEAD = re.compile(r"(dump )?([a-z]+)(?: +|$)")
ITEM = re.compile(r"\[(\d+)(?:-(\d+))?\]")
RUN = r"-?\d+(?:\*\d+|\.\.-?\d+)?"
RUNS = re.compile(rf"\[({RUN}(?: {RUN})*)\]")


class Malformed(Exception):
    """What is wrong with a line; `line` counts from 1."""

    def __init__(self, message, line=0):
        super().__init__(message)
        self.line = line


# Objects to lines


def encode(item):
    """The lines of one object."""
    if isinstance(item, dict) and item:
        first, *others = item
        kind = item[first]
        members = {key: item[key] for key in others}
        if first in ("event", "dump") and isinstance(kind, str) and re.fullmatch("[a-z]+", kind) and kind != "dump":
            head = kind if first == "event" else f"dump {kind}"
            return encode_members(head, INDENT, "", members)
    return [as_json(item)]


def encode_members(start, further, path, members):
    """Lines with the members of an object, from the line `start` on; further lines begin with `further`."""
    lines, room = [start], True
    for key, value in members.items():
        key = encode_key(key)
        inner = f"{path}.{key}" if path else key
        word = f"{key}={encode_value(value)}"
        if stands_below(value) or len(further) + len(word) > WIDTH:
            lines += encode_parts(inner, value)
            room = False
        elif room and len(lines[-1]) + 1 + len(word) <= WIDTH:
            lines[-1] += word if lines[-1] == further else " " + word
        else:
            lines.append(further + word)
            room = True
    if lines[0] == further:  # a path whose members all stand below
        lines.pop(0)
    return lines


def stands_below(value):
    return bool(value) and (isinstance(value, dict) or isinstance(value, list) and isinstance(value[0], dict))


def encode_parts(path, value):
    """Lines with the parts of a value that is too long for one."""
    lines = []
    if isinstance(value, dict):
        for key, part in value.items():
            lines += encode_part(f"{path}.{encode_key(key)}:", len(path) + len(".24: ") * key.isdigit(), part)
    elif isinstance(value, list) and not is_numbers(value):
        widest = "[10-24]: " if len(value) > 10 else "[0-9]: "
        for first, last in equal_items(value):
            place = f"{path}[{first}]:" if first == last else f"{path}[{first}-{last}]:"
            lines += encode_part(place, len(path) + len(widest), value[first])
    else:
        for n, piece in enumerate(pieces(value)):
            lines.append(f"{INDENT}{path}{'+' if n else ''}: {piece}")
    return lines


def encode_part(place, width, value):
    start = INDENT + (place + " ").ljust(width)
    path = place[:-1]
    if isinstance(value, dict) and value:
        return encode_members(start, start, path, value)
    if isinstance(value, str) and value.isprintable():
        line = f"{start}|{value}|"
    else:
        line = start + encode_value(value)
    return [line] if len(line) <= WIDTH else encode_parts(path, value)


def encode_key(key):
    return key if BARE_KEY.fullmatch(key) else as_json(key)


def encode_value(value):
    if is_numbers(value):
        short = f"[{' '.join(runs(value))}]"
        if len(short) < len(as_json(value)):
            return short
    return as_json(value)


def as_json(value):
    text = json.dumps(value, ensure_ascii=False, separators=(",", ":"))
    return text if text.isprintable() else json.dumps(value, separators=(",", ":"))


def is_numbers(value):
    return isinstance(value, list) and len(value) > SHORT and all(type(n) is int for n in value)


def runs(numbers):
    """The short words for a list of numbers."""
    words, n = [], 0
    while n < len(numbers):
        first = numbers[n]
        equal = rising = n + 1
        while equal < len(numbers) and numbers[equal] == first:
            equal += 1
        while rising < len(numbers) and numbers[rising] == numbers[rising - 1] + 1:
            rising += 1
        if equal - n > 1:
            words.append(f"{first}*{equal - n}")
        elif rising - n > 3:
            words.append(f"{first}..{numbers[rising - 1]}")
        else:
            words.append(str(first))
        n = equal if equal - n > 1 else rising if rising - n > 3 else n + 1
    return words


def equal_items(items):
    """(first, last) of each group of equal items in a row."""
    texts = [as_json(item) for item in items]
    first = 0
    for n in range(1, len(items) + 1):
        if n == len(items) or texts[n] != texts[first]:
            yield first, n - 1
            first = n


def pieces(value):
    """A long text or list of numbers in parts of a line each; a text is cut behind its line feeds."""
    if isinstance(value, str):
        return [as_json(piece) for piece in re.findall(rf"(?s).{{0,{PIECE - 1}}}\n|.{{1,{PIECE}}}", value)]
    if is_numbers(value):
        found = [""]
        for word in runs(value):
            if len(found[-1]) + len(word) > PIECE:
                found.append("")
            found[-1] += f" {word}" if found[-1] else word
        return [f"[{piece}]" for piece in found]
    return [as_json(value)]


# Lines to objects


def decode(lines):
    """The object that the lines of one stand for. Malformed counts the lines from 1."""
    try:
        line = 1
        text = Text(lines[0])
        if lines[0].startswith("{"):
            item = text.json()
            text.end()
        else:
            head = text.take(HEAD)
            if not head:
                raise Malformed("an object begins with the name of an event, with \"dump NAME\", or with \"{\"")
            item = {"dump" if head[1] else "event": head[2]}
            text.members(item)
        for line, further in enumerate(lines[1:], 2):
            decode_further(Text(further.strip(" ")), item)
        return item
    except Malformed as fault:
        raise Malformed(str(fault), line) from None


def decode_further(text, item):
    """Adds what an indented line says to the object."""
    start = text.at
    steps, goes_on = text.path()
    if not steps:
        text.at = start
        text.members(item)
    elif text.rest().startswith("|"):
        add(item, steps, goes_on, text.bars())
    elif text.begins_member():
        members = {}
        text.members(members)
        for parent, key in places(item, steps):
            inner = child(parent, key, {})
            if not isinstance(inner, dict):
                raise Malformed("the path leads to no object")
            for name, value in members.items():
                put(inner, name, copy.deepcopy(value))
    else:
        value = text.value()
        text.end()
        add(item, steps, goes_on, value)


def add(item, steps, goes_on, value):
    for parent, key in places(item, steps):
        if not goes_on:
            put(parent, key, copy.deepcopy(value))
        elif holds(parent, key) and type(parent[key]) is type(value) and isinstance(value, (str, list)):
            parent[key] = parent[key] + value
        else:
            raise Malformed("there is no such text or list that goes on")


def places(parent, steps):
    """(container, key) of each place that a path leads to; containers on the way are made."""
    step, *rest = steps
    for key in [step] if isinstance(step, str) else range(step[0], step[1] + 1):
        if rest:
            yield from places(child(parent, key, {} if isinstance(rest[0], str) else []), rest)
        else:
            yield parent, key


def holds(container, key):
    if isinstance(container, dict) and isinstance(key, str):
        return key in container
    if isinstance(container, list) and isinstance(key, int):
        if key > len(container):
            raise Malformed(f"item {key} stands before item {len(container)}")
        return key < len(container)
    raise Malformed(f"the path does not fit what stands above: {key}")


def child(parent, key, empty):
    if not holds(parent, key):
        put(parent, key, empty)
    return parent[key]


def put(container, key, value):
    if holds(container, key):
        raise Malformed(f"{key} stands there twice")
    if isinstance(container, dict):
        container[key] = value
    else:
        container.append(value)


class Text:
    """A line that is read from left to right."""

    def __init__(self, line):
        self.line = line
        self.at = 0

    def rest(self):
        return self.line[self.at:]

    def take(self, pattern):
        found = pattern.match(self.line, self.at)
        if found:
            self.at = found.end()
        return found

    def end(self):
        if self.rest().strip(" "):
            raise Malformed(f"nothing more is expected: {self.rest()}")

    def json(self):
        try:
            value, self.at = json.JSONDecoder().raw_decode(self.line, self.at)
        except ValueError:
            raise Malformed(f"this is no value: {self.rest()}") from None
        return value

    def value(self):
        short = self.take(RUNS)
        if not short:
            return self.json()
        numbers = []
        for word in short[1].split(" "):
            if "*" in word:
                number, count = word.split("*")
                numbers += [int(number)] * int(count)
            elif ".." in word:
                first, last = word.split("..")
                numbers += range(int(first), int(last) + 1)
            else:
                numbers.append(int(word))
        return numbers

    def bars(self):
        text = self.rest().rstrip(" ")
        if len(text) < 2 or text[-1] != "|":
            raise Malformed("the bar behind the text is missing")
        return text[1:-1]

    def key(self):
        found = self.take(BARE_KEY)
        if found:
            return found[0]
        return self.json() if self.rest().startswith('"') else None

    def begins_member(self):
        ahead = Text(self.rest())
        return ahead.key() is not None and ahead.rest().startswith("=")

    def members(self, container):
        while self.rest().strip(" "):
            member = self.rest()
            key = self.key()
            if key is None or not self.take(re.compile("=")):
                raise Malformed(f"KEY=VALUE is expected: {member}")
            put(container, key, self.value())
            if not self.take(re.compile(" +|$")):
                raise Malformed(f"a blank is expected behind a value: {self.rest()}")

    def path(self):
        """The steps of a path and whether it is one of what goes on; no steps where none stands."""
        steps = [self.key()]
        while steps[-1] is not None:
            if self.take(re.compile(r"\.")):
                steps.append(self.key())
            elif self.rest().startswith("["):
                place = self.rest()
                item = self.take(ITEM)
                if not item or item[2] and int(item[2]) <= int(item[1]):
                    raise Malformed(f"[N] or [N-M] is expected: {place}")
                steps.append((int(item[1]), int(item[2] or item[1])))
            else:
                break
        end = self.take(re.compile(r"(\+)?: *"))
        return (steps, bool(end[1])) if end and None not in steps else ([], False)


# Files


@dataclasses.dataclass
class Expected:
    """An object that a command must print, and the lines that say so."""

    item: object
    lines: list
    line: int = 0  # where it begins, as below


@dataclasses.dataclass
class Command:
    """A command, and what stands below it: Expected, or text for a line to be kept as it is."""

    line: int  # where it stands, from 1; 0 for what stands above the first command
    text: str
    below: list

    def expected(self):
        return [part.item for part in self.below if isinstance(part, Expected)]


def read(path):
    """[Command]. Malformed tells the line of the file."""
    with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
        lines = file.read().split("\n")
    if lines[-1] == "":
        lines.pop()
    commands = [Command(0, "", [])]
    for number, line in enumerate(lines, 1):
        line = line.rstrip("\r")
        below = commands[-1].below
        if line.startswith(MARK + INDENT):
            if not below or not isinstance(below[-1], Expected):
                raise Malformed("an indented line has no object above it", number)
            below[-1].lines.append(line)
        elif line.lstrip(" \t").startswith(MARK.rstrip()):
            if not line.startswith(MARK):
                raise Malformed(f'what is expected stands behind "{MARK}", at the beginning of the line', number)
            if commands[-1].line == 0:
                raise Malformed("there is no command above that could print this", number)
            below.append(Expected(None, [line], number))
        elif line.strip(" \t") == "" or line.lstrip(" \t").startswith("#"):
            below.append(line)
        else:
            commands.append(Command(number, line, []))
    for part in (part for command in commands for part in command.below if isinstance(part, Expected)):
        try:
            part.item = decode([line[len(MARK):] for line in part.lines])
        except Malformed as fault:
            raise Malformed(str(fault), part.line + fault.line - 1) from None
    return commands


def write(path, commands):
    lines = []
    for command in commands:
        lines += [command.text] if command.line else []
        for part in command.below:
            lines += part.lines if isinstance(part, Expected) else [part]
    with open(path, "w", encoding="utf-8", errors="surrogateescape", newline="") as file:
        file.write("".join(line + "\n" for line in lines))


def expect(item):
    return Expected(item, [MARK + line for line in encode(item)])
