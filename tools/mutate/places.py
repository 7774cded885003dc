"""The places of a C++ file that can be changed, and what each change makes of its line.

A mutant is one change at one place: what a slip of the hand might have written instead, and what still compiles as a rule.
Lines are looked at one by one; clang-format's spacing tells operators from brackets of templates.
"""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    path: str
    line: int  # from 1
    kind: str
    before: str
    after: str

    def name(self):
        return f"{self.path}:{self.line} {self.kind}: {self.before.strip()}  ->  {self.after.strip()}"


COMPARISONS = {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == "}
LOGIC = {" && ": " || ", " || ": " && "}
ARITHMETIC = {" + ": " - ", " - ": " + ", " * ": " / ", " / ": " * ", " += ": " -= ", " -= ": " += ", "++": "--",
              "--": "++", " % ": " / ", " & ": " | ", " | ": " & "}
NUMBER = re.compile(r"(?<![\w.'\"])(\d+)(?![\w.'\"])")
TRUTH = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(if|while) \(")
RETURN = re.compile(r"^(\s*)return ([^;{}]+);$")
# Signs for texts in quotation marks: none of them stands in a source file.
FIRST_SIGN = 0xE000
ARGUMENT = r"([\w.\[\]:\->\uE000-\uF8FF]+)"
CALL = re.compile(r"\b(\w+)\(" + ARGUMENT + ", " + ARGUMENT + r"\)")
# A whole statement on a line: a call, or a value given to something that exists.
STATEMENT = re.compile(r"^(\s+)((?:\w[\w.\->:\[\]+ ]*|\(void\)[\w.\->:]+)(?:\(.*\)| [-+*/|&]?= .*|\+\+|--));$")
DECLARATION = re.compile(r"^\s+(?:static |const |constexpr |auto |using |typedef |return |throw |delete |new )")
NO_CODE = re.compile(r"^\s*(?:#|static_assert|template|using |namespace|extern |friend )")


def _closing(text, opening):
    """The place of the bracket that closes the one at `opening`, or -1."""
    depth = 0
    for at in range(opening, len(text)):
        depth += (text[at] == "(") - (text[at] == ")")
        if depth == 0:
            return at
    return -1


def _exchanges(line, table, kind):
    for old, new in table.items():
        at = line.find(old)
        while at >= 0:
            yield kind, line[:at] + new + line[at + len(old):]
            at = line.find(old, at + len(old))


def _numbers(line):
    for match in NUMBER.finditer(line):
        value = int(match.group(1))
        for other in sorted({value + 1, max(value - 1, 0)} - {value}):
            yield "number", line[:match.start()] + str(other) + line[match.end():]
    for match in TRUTH.finditer(line):
        other = "false" if match.group(1) == "true" else "true"
        yield "truth", line[:match.start()] + other + line[match.end():]


def _conditions(line):
    for match in CONDITION.finditer(line):
        opening = match.end() - 1
        closing = _closing(line, opening)
        if closing > 0 and ";" not in line[opening:closing]:
            yield "condition turned", line[:opening] + "(!" + line[opening:closing + 1] + ")" + line[closing + 1:]


def _results(line):
    match = RETURN.match(line)
    if match:
        yield "result turned", f"{match.group(1)}return !({match.group(2)});"


def _statements(line):
    match = STATEMENT.match(line)
    if match and not DECLARATION.match(line) and not re.match(r"^\s+\w[\w:]*(?:<.*>)?[&*]? \w+(?: =|\{|\()", line):
        yield "statement left out", f"{match.group(1)};"


def _arguments(line):
    for match in CALL.finditer(line):
        if match.group(2) != match.group(3):
            swapped = f"{match.group(1)}({match.group(3)}, {match.group(2)})"
            yield "arguments exchanged", line[:match.start()] + swapped + line[match.end():]


def _without_strings(line):
    """The line with a sign of its own in the place of each text in quotation marks, and without a comment at its end; and
    the texts by their signs."""
    out, texts, at = "", {}, 0
    while at < len(line):
        c = line[at]
        if line.startswith("//", at):
            break
        if c in "\"'" and not (c == "'" and at > 0 and line[at - 1].isdigit()):
            end = at + 1
            while end < len(line) and line[end] != c:
                end += 2 if line[end] == "\\" else 1
            sign = chr(FIRST_SIGN + len(texts))
            texts[sign] = line[at:end + 1]
            out += sign
            at = end + 1
        else:
            out += c
            at += 1
    return out.rstrip(), texts


def _with_strings(line, texts):
    return "".join(texts.get(c, c) for c in line)


def mutants_of(path, lines):
    """Every mutant of a file's lines, in their order. In a text that goes over several lines nothing is found wrongly, as
    what does not compile is no mutant."""
    found = []
    for number, line in enumerate(lines, 1):
        bare, texts = _without_strings(line)
        if not bare.strip() or NO_CODE.match(bare):
            continue
        changes = [*_exchanges(bare, COMPARISONS, "comparison"), *_exchanges(bare, LOGIC, "and, or"),
                   *_exchanges(bare, ARITHMETIC, "arithmetic"), *_numbers(bare), *_conditions(bare), *_results(bare),
                   *_statements(bare), *_arguments(bare)]
        for kind, changed in changes:
            found.append(Mutant(path, number, kind, line, _with_strings(changed, texts)))
    return found
