#!/usr/bin/env python3
"""Puts values into one section of an initialisation file and leaves the rest of the file as it stands.

Usage: ini.py FILE SECTION KEY=VALUE ...

Section and key names are compared without regard to case, as Windows does. A file that is not there is made.
"""

import os
import sys


def section_name(line):
    text = line.strip()
    return text[1:-1].strip().lower() if text.startswith("[") and text.endswith("]") else None


def key_name(line):
    return line.split("=", 1)[0].strip().lower() if "=" in line else None


def put(lines, section, values):
    """The lines with each (key, value) set in the first section of that name, which is added when missing."""
    lines = list(lines)
    start = next((n for n, line in enumerate(lines) if section_name(line) == section.lower()), None)
    if start is None:
        if lines and lines[-1].strip():
            lines.append("")
        start = len(lines)
        lines.append(f"[{section}]")
    for key, value in values:
        end = next((n for n in range(start + 1, len(lines)) if section_name(lines[n]) is not None), len(lines))
        entry = f"{key}={value}"
        at = next((n for n in range(start + 1, end) if key_name(lines[n]) == key.lower()), None)
        if at is not None:
            lines[at] = entry
            continue
        while end > start + 1 and not lines[end - 1].strip():
            end -= 1
        lines.insert(end, entry)
    return lines


def main(arguments):
    if len(arguments) < 3 or any("=" not in a for a in arguments[2:]):
        print(__doc__.strip(), file=sys.stderr)
        return 2
    path, section = arguments[:2]
    text = ""
    if os.path.exists(path):
        # Latin-1 keeps every byte as it is.
        with open(path, encoding="latin-1", newline="") as file:
            text = file.read()
    lines = put(text.splitlines(), section, [a.split("=", 1) for a in arguments[2:]])
    os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
    with open(path, "w", encoding="latin-1", newline="") as file:
        file.write("\r\n".join(lines) + "\r\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
