"""A source file that holds many mutants at once, each behind a switch (switch.h).

A changed expression becomes `(mutantOn(7) ? (changed) : (unchanged))`, a statement that may be left out stands behind an
`if`. Lines keep their numbers. What cannot be written so (the size of an array, the label of a case, a constant that is
needed while compiling) is left to a build of its own.
"""

import re

CLOSING = {"(": ")", "[": "]", "{": "}"}
OPENING = {close: open_ for open_, close in CLOSING.items()}
# What stands before brackets that are not part of the expression behind them.
HEADS = re.compile(r"\b(?:if|while|for|switch|if constexpr|catch)\s*$")
# What an expression cannot begin with.
WORDS = re.compile(r"(?:return|throw|case|else|do|co_return|goto|const|constexpr)\b\s*")
# Behind the arguments of a template, in a declaration.
TEMPLATE = re.compile(r"\w> \w")
# Not `static constexpr`, which a class could not do without.
CONSTANT = re.compile(r"^(\s*(?:inline )?)constexpr (?!.*\)\s*(?:const )?(?:noexcept )?\{)")


def masked(text, strings=True):
    """The text with blanks in the place of comments and, unless told otherwise, of what stands in quotation marks."""
    out, at = [], 0
    while at < len(text):
        if text.startswith("//", at):
            end = text.find("\n", at)
            end = len(text) if end < 0 else end
            out.append(" " * (end - at))
        elif text.startswith("/*", at):
            end = text.index("*/", at) + 2
            out.append(re.sub(r"[^\n]", " ", text[at:end]))
        elif text.startswith('R"', at) and not (at and (text[at - 1].isalnum() or text[at - 1] == "_")):
            mark = text[at + 2:text.index("(", at)]
            end = text.index(")" + mark + '"', at) + len(mark) + 2
            out.append(re.sub(r"[^\n]", "_", text[at:end]) if strings else text[at:end])
        elif text[at] == '"' or text[at] == "'" and not (at and text[at - 1].isalnum()):
            end = at + 1
            while text[end] != text[at]:
                end += 2 if text[end] == "\\" else 1
            end += 1
            out.append("_" * (end - at) if strings else text[at:end])
        else:
            end = at + 1
            out.append(text[at])
        at = end
    return "".join(out)


def matching(text, at):
    """The place of the bracket that belongs to the one at `at`, or -1."""
    step = 1 if text[at] in CLOSING else -1
    deeper, higher = (CLOSING, OPENING) if step == 1 else (OPENING, CLOSING)
    depth = 0
    while 0 <= at < len(text):
        depth += (text[at] in deeper) - (text[at] in higher)
        if depth == 0:
            return at
        at += step
    return -1


def _ends_expression(text, at):
    """Whether the character, outside of brackets, ends an expression."""
    c = text[at]
    if c == ":":
        return text[at - 1] != ":" and text[at + 1:at + 2] != ":"
    return c in ";,?"


def _is_assignment(text, at):
    return (text[at] == "=" and text[at + 1:at + 2] != "=" and
            (text[at - 1] not in "=<>!" or text[at - 2:at] in ("<<", ">>")))


def expression_around(text, start, end):
    """The widest expression that holds a place of the masked text: (start, end)."""
    left = start
    while left > 0:
        c = text[left - 1]
        if c in CLOSING or _ends_expression(text, left - 1) or _is_assignment(text, left - 1):
            break
        if c in OPENING:
            if c == "}" and "\n" in text[left:start][:len(text[left:start]) - len(text[left:start].lstrip())]:
                break  # a block before
            opening = matching(text, left - 1)
            if c == ")" and HEADS.search(text[:opening]) or c == "]" and text[opening:opening + 2] == "[[":
                break
            left = opening
            continue
        left -= 1
    while True:
        left += len(text[left:start]) - len(text[left:start].lstrip())
        word = WORDS.match(text, left, start + 1)
        if not word:
            break
        left = word.end()
    right = end
    while right < len(text):
        c = text[right]
        if c in OPENING or _ends_expression(text, right):
            break
        right = matching(text, right) + 1 if c in CLOSING else right + 1
    return left, right - (len(text[left:right]) - len(text[left:right].rstrip()))


class _Place:
    """A part of the text that has changed forms. `forms` are (number of the mutant, changed text)."""

    def __init__(self, start, end, statement=False):
        self.start, self.end, self.statement = start, end, statement
        self.forms, self.truth, self.inner = [], False, []

    def holds(self, other):
        return self.start <= other.start and other.end <= self.end

    def apart(self, other):
        return other.end <= self.start or self.end <= other.start


def _difference(before, after):
    """(start, end before, end after) of what differs."""
    start = 0
    while start < min(len(before), len(after)) and before[start] == after[start]:
        start += 1
    end = 0
    while end < min(len(before), len(after)) - start and before[-1 - end] == after[-1 - end]:
        end += 1
    return start, len(before) - end, len(after) - end


class Schema:
    """One file with those of its mutants that can stand behind switches. `mutants` are {number: Mutant}; `left_out` are the
    numbers of those that cannot."""

    def __init__(self, text, mutants):
        self.text = text
        self._bare = masked(text)
        self._code = masked(text, strings=False)
        self._starts = [0] + [match.end() for match in re.finditer("\n", text)]
        self.left_out = []
        self._places = []
        self._constants = set()
        for number, mutant in sorted(mutants.items()):
            self._add(number, mutant)

    def _add(self, number, mutant):
        line_start = self._starts[mutant.line - 1]
        before = self._code[line_start:].split("\n", 1)[0].rstrip()  # `after` has no comment either
        a, b, c = _difference(before, mutant.after)
        start, end, new = line_start + a, line_start + b, mutant.after[a:c]
        truth = statement = False
        if mutant.kind == "statement left out":
            indent = len(mutant.before) - len(mutant.before.lstrip())
            place = _Place(line_start + indent, line_start + self._bare[line_start:].split("\n")[0].rindex(";") + 1, True)
            form, statement = "", True
            if self._bare[:place.start].rstrip()[-1:] not in ";{}:)":
                self.left_out.append(number)  # the end of a longer one
                return
        elif mutant.kind == "condition turned":
            opening = self._bare.index("(", line_start + max(a - 1, 0))
            place = _Place(opening + 1, matching(self._bare, opening))
            form, truth = f"!static_cast<bool>({self._flat(place.start, place.end)})", True
        elif mutant.kind == "result turned":
            opening = line_start + mutant.before.index("return ") + len("return ")
            place = _Place(opening, self._bare.index(";", opening))
            form = f"!({self._flat(place.start, place.end)})"
        else:
            around = (start, end)
            if mutant.kind == "arguments exchanged":  # the call, and what it stands in
                while self._bare[start] != "(" or matching(self._bare, start) < end:
                    start -= 1
                around = (start - 1, matching(self._bare, start) + 1)
                start = line_start + a
            place = _Place(*expression_around(self._bare, *around))
            form = self._flat(place.start, start) + new + self._flat(end, place.end)
        same = [other for other in self._places
                if (other.start, other.end, other.statement) == (place.start, place.end, statement)]
        if same:
            place = same[0]
        elif place.start >= place.end or TEMPLATE.search(self._bare[place.start:place.end]) or not all(place.apart(other) or place.holds(other) or other.holds(place)
                                                 for other in self._places):
            self.left_out.append(number)
            return
        else:
            self._places.append(place)
        place.forms.append((number, form))
        place.truth |= truth
        if CONSTANT.match(mutant.before):
            self._constants.add(mutant.line)

    def _flat(self, start, end):
        return self._code[start:end].replace("\n", " ")

    def numbers_at(self, line):
        """The mutants whose switches stand on a line."""
        start = self._starts[line - 1]
        end = self._starts[line] if line < len(self._starts) else len(self.text) + 1
        return [number for place in self._places if place.start < end and start < place.end for number, _ in place.forms]

    def _render(self, start, end, places):
        out, at = [], start
        for place in places:
            if place.start < at:
                continue  # inside the one before
            inner = [other for other in places if other is not place and place.holds(other)]
            unchanged = self._render(place.start, place.end, inner)
            out.append(self._code[at:place.start])
            if place.statement:
                numbers = " && ".join(f"!mutantOn({number})" for number, _ in place.forms)
                out.append(f"{{ if ({numbers}) {{ {unchanged} }} }}")
            else:
                as_truth = (lambda form: f"static_cast<bool>({form})") if place.truth else (lambda form: f"({form})")
                chain = "".join(f"mutantOn({number}) ? {as_truth(form)} : " for number, form in place.forms)
                out.append(f"({chain}{as_truth(unchanged)})")
            at = place.end
        out.append(self._code[at:end])
        return "".join(out)

    def source(self):
        places = sorted(self._places, key=lambda place: (place.start, -place.end, not place.statement))
        lines = self._render(0, len(self.text), places).split("\n")
        for line in self._constants:
            # Given its value when the program starts.
            lines[line - 1] = CONSTANT.sub(r"\1const ", lines[line - 1])
        return "\n".join(lines)
