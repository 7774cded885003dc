#!/usr/bin/env python3
"""The help, the pages of docs/ and the program say the same.

What the pages state in tables is compared with what the program does when it is asked: the keys of qxterm.ini and what
counts without them, what the keys of the keyboard send, the entries of the menus, the boxes and lists of the options. The
messages, the numbers, the exit codes of the helpers and the commands of the scenario tool are compared with the sources.

Usage: check-help.py --program QXTERM-SCENARIO [FOLDER]     (default: the project)
"""

import argparse
import html.parser
import json
import os
import re
import shlex
import subprocess
import sys

import house

HELP = "resources/help/"
INI_HELP = HELP + "settings-file.htm"
INI_PAGE = "docs/profiles.md"
KEYS_HELP = HELP + "keys.htm"
KEYS_PAGE = "docs/control-sequences.md"
MENUS_HELP = HELP + "window.htm"
MESSAGES_HELP = HELP + "messages.htm"
CONFIG = "src/config/"
CONNECT_WORDS = "src/config/connect_type.h"

# Texts of the sources that are sentences, but no messages. Each has to stand somewhere, or it has to go from here.
NO_MESSAGES = [
    # what stands in windows and on the screen
    r"Letters and digits only",
    r"This is some sample text .*",
    r"Copyright .*",
    r"Opening (network|serial|modem|SSH) connection .*",
    r"This system is restricted .*",
    r"Unauthorized access .*",
    r"Serial and Modem Settings",
    r"KRV Network &Address:",
    r"Time \(seconds\) allowed .*",
    r"Options for profile: %1",
    # lines of the trace
    r"Connection Type: .*",
    r"GetNetworkBytes.*",
    r"Comser_OnComm.*",
    r"TerminateProcess.*",
    # what stands behind "message:" of an unexpected error, and is the system's wording
    r"Invalid procedure call or argument",
    r"Subscript out of range",
    r"Can't perform requested operation",
    r"Bad file name or number",
    r"Object variable .* not set",
    r"Application-defined or object-defined error",
]


# Pages


class Tables(html.parser.HTMLParser):
    """The tables of a help page, as lists of rows of texts, and the paragraphs. A text in italics is "%"."""

    def __init__(self, text):
        super().__init__()
        self.tables, self.paragraphs, self.keys = [], [], []
        self.text, self.variable = None, False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        if tag == "table":
            self.tables.append([])
        elif tag == "tr":
            self.tables[-1].append([])
        elif tag in ("td", "th", "p"):
            self.text = ""
        elif tag == "br":
            self.handle_data("\n")
        elif tag == "i":
            self.handle_data("%")
            self.variable = True

    def handle_endtag(self, tag):
        if tag == "i":
            self.variable = False
        elif tag in ("td", "th", "p") and self.text is not None:
            text = " ".join(self.text.replace("\xa0", " ").split())
            (self.paragraphs if tag == "p" else self.tables[-1][-1]).append(text)
            self.text = None

    def handle_data(self, data):
        if self.text is not None and not self.variable:
            self.text += data

    def table(self, *heads):
        """The rows of the tables whose first row begins with these texts; None when there is none."""
        found = [t for t in self.tables if t and t[0][: len(heads)] == list(heads)]
        return [row for table in found for row in table[1:]] if found else None


def help_page(root, path):
    with open(os.path.join(root, path), encoding="ascii") as file:
        return Tables(file.read())


def markdown_table(root, path, heading):
    """The rows of the first table below a heading, without the head and without the marks for code."""
    rows, inside = [], False
    for line in house.read_lines(path, root):
        if line.startswith("#"):
            if rows:
                break
            inside = line.lstrip("# ") == heading
        elif inside and line.startswith("|"):
            rows.append([cell.strip().replace("`", "") for cell in line.strip("|").split("|")])
        elif rows:
            break
    return rows[2:]


# The program


class Program:
    """Plays lines in qxterm-scenario."""

    def __init__(self, command):
        self.command = command

    def play(self, lines):
        """What each line printed, one list of objects a line."""
        text = "".join(line + "\n" for line in lines)
        result = subprocess.run(
            [*self.command, "--lines"], input=text.encode(), capture_output=True, timeout=60, check=False)
        if result.returncode != 0:
            sys.exit(f"check-help.py: {self.command[0]} failed: {result.stderr.decode().strip()}")
        printed, line = [[] for _ in lines], 0
        for item in map(json.loads, result.stdout.decode().splitlines()):
            if list(item) == ["file", "line"]:
                line = item["line"] - 1
            else:
                printed[line].append(item)
        return printed


def open_profile(*keys):
    """Lines that open a profile with these keys."""
    return ["ini Settings Profiles it", *(f"ini it {key}" for key in keys),
            "menu profile 1", "choose lstprof 0", "click cmd3Dopen"]


def plain(caption):
    return caption.replace("&", "").rstrip(":")


# qxterm.ini


def names_and_defaults(rows):
    """{key in small letters: what counts without it}; one row may tell several keys."""
    entries = {}
    for row in rows:
        names = row[0].split(", ")
        defaults = row[1].split(", ") if len(names) > 1 else [row[1]]
        for name, default in zip(names, defaults + [None] * len(names)):
            entries[name.lower()] = "" if default == "empty" else default
    return entries


def settings_of_program(root):
    """{key: default} of the section Settings, and the keys of a profile, as the sources read them."""
    settings, profile = {}, set()
    for path in house.project_files(root):
        if not (path.startswith(CONFIG) and path.endswith(".cpp")):
            continue
        with open(os.path.join(root, path), encoding="utf-8") as file:
            text = file.read()
        constants = dict(re.findall(r'constexpr const char\* (\w+) = "(\w+)"', text))
        for key, default in re.findall(r'readSetting\(settingsSection, ("?\w+"?), "([^"]*)"', text):
            settings[constants.get(key, key.strip('"')).lower()] = default
        profile |= {key.lower() for key in re.findall(r'section\.(?:text|number\d+)\("(\w+)"', text)}
        for keys in re.findall(r"portKey\(.*?\) \{(.*?)\n\}", text, re.S):
            profile |= {key.lower() for key in re.findall(r'"(\w+)"', keys)}
    return settings, profile


def profile_defaults(program):
    """{key: what the program writes for a profile whose section lacked the key}"""
    defaults = {}
    for kind in (None, "net", "ssh"):
        printed = program.play([*open_profile(*([f"connect {kind}"] if kind else [])), "menu profile 2"])[-1]
        for item in printed:
            if item["event"] == "ini" and item["section"] == "it":
                defaults.setdefault(item["key"].lower(), item["value"])
    return defaults


def compare_entries(path, what, stated, true):
    problems = [f"{path}:1: {what} lacks {key}" for key in sorted(true.keys() - stated.keys())]
    problems += [f"{path}:1: {what} has {key}, which the program does not know"
                 for key in sorted(stated.keys() - true.keys())]
    return problems + [f'{path}:1: {what}, {key}: "{stated[key]}", but the program has "{true[key]}"'
                       for key in sorted(stated.keys() & true.keys()) if stated[key] != true[key]]


def check_ini(root, program):
    settings, profile = settings_of_program(root)
    written = profile_defaults(program)
    problems = []
    if not settings or profile != set(written):
        problems.append(f"{CONFIG}:1: reads the profile's keys {sorted(profile)} but writes {sorted(written)}")
    page = help_page(root, INI_HELP)
    tables = [t for t in page.tables if t[0][:2] == ["Key", "Without it"]]
    if len(tables) != 2:
        return [*problems, f"{INI_HELP}:1: there are not two tables with the head Key, Without it"]
    stated = {INI_HELP: [t[1:] for t in tables],
              INI_PAGE: [markdown_table(root, INI_PAGE, h) for h in ("Section Settings", "A profile's section")]}
    with open(os.path.join(root, CONNECT_WORDS), encoding="utf-8") as file:
        words = {"connect": re.findall(r'Word\{\w+, "(\w+)"\}', file.read()), "font": ["small", "medium", "large"]}
    for path, (of_settings, of_profile) in stated.items():
        problems += compare_entries(path, "section Settings", names_and_defaults(of_settings), settings)
        problems += compare_entries(path, "a profile's section", names_and_defaults(of_profile), written)
        for row in of_profile:
            missing = [w for w in words.get(row[0].lower(), []) if w not in re.findall(r"\w+", row[2])]
            problems += [f"{path}:1: {row[0]} does not name {word}" for word in missing]
    return problems


# The keyboard

CODES = {"Page Up": 33, "Page Down": 34, "End": 35, "Home": 36, "Left": 37, "Up": 38, "Right": 39, "Down": 40,
         "Insert": 45, "Delete": 46, **{f"F{n}": 111 + n for n in range(1, 13)}}
CHARACTERS = {"Backspace": "\\b", "Tab": "\\t", "Enter": "\\r", "Escape": "\\e"}
SHORT = {"Del": "Delete", "Ins": "Insert", "Esc": "Escape"}
NOT_OURS = {"F10"}  # opens the menu, and never comes to the terminal
# Rows that tell of many keys at once, or of no bytes.
WITHOUT_BYTES = re.compile(r"Letters, digits, signs|every other character|Ctrl with a letter|Control with a letter|"
                           r"(Ctrl|Control)\+F5|F1 to F8")


def escape_bytes(text):
    """ "ESC [ A" as hexadecimal digits."""
    return "".join("1b" if part == "ESC" else part.encode().hex() for part in text.split())


def keys_of_help(page):
    sent, problems = {}, []
    for name, what in page.table("Key", "What is sent") or []:
        name = SHORT.get(name, name)
        if name == "Cursor keys":
            for final, way in re.findall(r"ESC \[ ([A-D]) (\w+)", what):
                sent[way.capitalize()] = escape_bytes("ESC [ " + final)
        elif (name in CODES or name in CHARACTERS) and (number := re.search(r"\((\d+)\)$", what)):
            sent[name] = f"{int(number.group(1)):02x}"
        elif not WITHOUT_BYTES.fullmatch(name):
            problems.append(f"{KEYS_HELP}:1: cannot tell what {name} sends")
    for row in page.table("Key", "String") or []:
        sent |= {row[n]: escape_bytes(row[n + 1]) for n in (0, 2)}
    return sent, problems


def keys_of_page(rows):
    sent, problems = {}, []
    for name, what in rows:
        names = [f"F{n}" for n in range(1, 9)] if name == "F1 ... F8" else name.split(", ")
        texts = re.findall(r"ESC [\[O] \w|\b\d+\b", what)
        if all(n in CODES or n in CHARACTERS for n in names) and len(texts) == len(names):
            for key, text in zip(names, texts):
                sent[key] = escape_bytes(text) if text.startswith("ESC") else f"{int(text):02x}"
        elif not WITHOUT_BYTES.fullmatch(name):
            problems.append(f"{KEYS_PAGE}:1: cannot tell what {name} sends")
    return sent, problems


def silent_keys(text):
    """Keys of the sentence that ends with "send nothing"; "F9 to F12" are four."""
    sentence = re.search(r"([^.]*?) send nothing", text)
    if not sentence:
        return set()
    listed = re.sub(r"\([^)]*\)", "", sentence.group(1))
    listed = re.sub(r"F(\d+) to F(\d+)", lambda m: ", ".join(f"F{n}" for n in range(int(m[1]), int(m[2]) + 1)), listed)
    names = {SHORT.get(n.strip(), n.strip()) for n in re.split(r",|\band\b", listed)}
    return {n for n in names if n} - NOT_OURS


def keys_of_program(program):
    keys = [*CODES, *CHARACTERS]
    lines = ["ini Settings Order it", "ini it connect net", "ini it host h", "menu profile 5", "socket connect",
             "wait 1000"]
    printed = program.play(lines + [f"key {CODES[k]}" if k in CODES else f'type "{CHARACTERS[k]}"' for k in keys])
    return {k: "".join(i["bytes"] for i in items if i["event"] == "send")
            for k, items in zip(keys, printed[len(lines):])}


def check_keys(root, program):
    true = keys_of_program(program)
    page = help_page(root, KEYS_HELP)
    text = " ".join(line for line in house.read_lines(KEYS_PAGE, root) if not line.startswith(("|", "#")))
    problems = []
    for path, (sent, found), silent in (
        (KEYS_HELP, keys_of_help(page), silent_keys(next((p for p in page.paragraphs if "send nothing" in p), ""))),
        (KEYS_PAGE, keys_of_page(markdown_table(root, KEYS_PAGE, "What keys send")), silent_keys(text)),
    ):
        problems += found
        problems += compare_entries(path, "keys", sent, {k: b for k, b in true.items() if b})
        problems += compare_entries(path, "silent keys", {k: "" for k in silent},
                                    {k: "" for k, b in true.items() if not b and k not in NOT_OURS})
    return problems


# Menus and options


def check_menus(root, program):
    menus = program.play(["dump menus"])[0][-1]
    true = {menu: [plain(e["caption"]) for e in menus[menu] if e["caption"] not in ("", "-")]
            for menu in ("profile", "edit", "connection", "help")}
    stated, menu = {}, None
    for row in help_page(root, MENUS_HELP).table("Menu", "Entry", "What it does") or []:
        if len(row) == 3:
            menu = row[0].lower()
        if row[-2] != "1 to 4":
            stated.setdefault(menu, []).append(row[-2])
    return compare_entries(MENUS_HELP, "menus", stated, true)


def options_of_program(program):
    lines = [*open_profile("connect ssh"), "menu connection 3", "dump form frmOptions"]
    return next(item for item in program.play(lines)[-1] if "dump" in item)["controls"]


def check_options(root, program):
    controls = options_of_program(program)
    captions = {plain(c["caption"]): name for name, c in controls.items() if "caption" in c}
    labels = {caption: name for caption, name in captions.items() if name.startswith("lbl")}
    problems = []

    def page(name):
        return help_page(root, f"{HELP}options{name}.htm")

    def names_all(path, what, stated, true):
        if set(stated) != set(true) or len(stated) != len(true):
            problems.append(f"{HELP}{path}:1: {what} {stated}, but the program has {true}")

    names_all("options.htm", "tabs", [r[0] for r in page("").table("Tab") or []], controls["fptOptions"]["items"])
    choices = [c for c, n in captions.items() if n.startswith("opt") and "3D" not in n]
    names_all("options-connection.htm", "connections",
              [r[0] for r in page("-connection").table("Choice") or []], choices)
    names_all("options-fonts.htm", "sizes", [r[0] for r in page("-fonts").table("Choice") or []],
              [c for c, n in captions.items() if n.startswith("option3D")])

    lists = {labels[c].replace("lbl", "cmb"): c for c in labels if labels[c].replace("lbl", "cmb") in controls}
    true = {caption: [", ".join(controls[n]["items"]), controls[n]["items"][controls[n]["index"]]]
            for n, caption in lists.items()}
    true["Port"][0] = f"{controls['cmbPort']['items'][0]} to {controls['cmbPort']['items'][-1]}"
    stated = {r[0]: r[1:] for r in page("-connection").table("List", "Choices", "New profile") or []}
    problems.extend(compare_entries(HELP + "options-connection.htm", "lists", stated, true))

    true = {c: controls[n.replace("lbl", "txt")]["text"] or "empty" for c, n in labels.items()
            if n.replace("lbl", "txt") in controls and n in
            ("lblPhoneNumber", "lblDialPrefix", "lblDialSuffix", "lblHangup", "lblReset")}
    stated = {r[0]: r[2] for r in page("-modem").table("Box", "Meaning", "New profile") or []}
    problems.extend(compare_entries(HELP + "options-modem.htm", "boxes", stated, true))

    for name in ("-connection", "-timeout"):
        boxes = [r[0] for r in page(name).table("Box") or []]
        problems.extend(f"{HELP}options{name}.htm:1: there is no box {box}" for box in boxes if box not in captions)
        if not boxes:
            problems.append(f"{HELP}options{name}.htm:1: no table of boxes was found")
    return problems


# Messages

LITERALS = re.compile(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*')
# Four words at least, the first with a capital: shorter ones are labels and titles.
SENTENCE = re.compile(r"[A-Z]\S*( +\S+){3}.*")


def texts_of_sources(root):
    """{text of the program: file}"""
    found = {}
    for path in house.source_files(root, "src/"):
        if "/headless/" in path:
            continue
        for literal in LITERALS.findall("\n".join(house.without_comments(house.read_lines(path, root)))):
            joined = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literal))
            found[joined.replace('\\"', '"').replace("\\r\\n", "").strip()] = path
    return found


def is_message(text):
    """Whether it reads like a sentence for a person, and is none of those that are no messages."""
    return bool(SENTENCE.fullmatch(text)) and not any(re.fullmatch(p, text) for p in NO_MESSAGES)


def message_key(text):
    """One spelling for a text of the sources and one of the page: blanks and placeholders."""
    return " ".join(re.sub(r"%\d?", "%", text).split()).rstrip(": %")


def message_of_page(cell):
    """What the sources have for a cell of the page: without remarks, and of an error report the first line."""
    text = re.sub(r" ?\((?:title|or): [^)]*\)", "", cell).split(" routine:")[0]
    return re.sub(r"^The hostname is too long", "The % is too long", message_key(text))


def check_messages(root, _program):
    texts = texts_of_sources(root)
    known = {message_key(t) for t in texts}
    true = {message_key(t): path for t, path in texts.items() if is_message(t)}
    cells = [row[0] for row in help_page(root, MESSAGES_HELP).table("Message") or []]
    stated = {message_of_page(cell) for cell in cells} | set(re.findall(r"\(title: ([^)]*)\)", " ".join(cells)))
    problems = [f"{MESSAGES_HELP}:1: lacks the message of {path}: {text}"
                for text, path in sorted(true.items()) if text not in stated]
    problems += [f"{MESSAGES_HELP}:1: no source has the message: {text}" for text in sorted(stated - known)]
    problems += [f"tools/checks/check-help.py:1: no source has the text that is no message: {p}"
                 for p in NO_MESSAGES if not any(re.fullmatch(p, t) for t in texts)]
    if not stated:
        problems.append(f"{MESSAGES_HELP}:1: no table of messages was found")
    return problems


# Numbers

# What it is, and where it stands: a file, and a pattern with the number, or with several, as groups.
NUMBERS = {
    "lines of the scrollback": [
        ("src/terminal/model/screen_store.h", r"scrollbackLines = (\d+);"),
        (HELP + "scrollback.htm", r"the last (\d+) of them"),
        (KEYS_PAGE, r"scrollback, of (\d+) lines"),
        ("README.md", r"(\d+) lines of scrollback"),
    ],
    "the last port tried for a tunnel": [
        ("src/connection/ssh_ports.cpp", r"lastPort = (\d+);"),
        (HELP + "connect-ssh.htm", r"ends at (\d+)"),
    ],
    "points of the three sizes": [
        (CONFIG + "user_profile.cpp", r"smallFont = (\d+);.*?mediumFont = (\d+);.*?largeFont = (\d+);"),
        (HELP + "options-fonts.htm", r"Small</td><td>(\d+) points.*?Medium</td><td>(\d+) points.*?Large</td><td>(\d+) points"),
        (INI_PAGE, r"`small`, `medium`, `large`: (\d+), (\d+), (\d+) points"),
    ],
    "pixels at which the size of a new profile changes": [
        (CONFIG + "profile_record.cpp", r"pixels < (\d+)\).*?pixels < (\d+) \?"),
        (HELP + "options-fonts.htm", r"fewer than (\d+) lines of pixels, medium below (\d+)"),
        (INI_PAGE, r"points below (\d+) pixels, 10 below (\d+)"),
    ],
    "seconds allowed for connecting": [
        ("src/app/dialogs/options_fields.cpp", r"must be betweeen (\d+)-(\d+)"),
        (HELP + "options-timeout.htm", r"may take, (\d+) to (\d+) seconds"),
    ],
}


def check_numbers(root, _program):
    problems = []
    for what, places in NUMBERS.items():
        found = {}
        for path, pattern in places:
            with open(os.path.join(root, path), encoding="utf-8") as file:
                match = re.search(pattern, " ".join(file.read().split()))
            if match:
                found[path] = match.groups()
            else:
                problems.append(f"{path}:1: does not tell the {what} any more, or in other words")
        true = found.get(places[0][0])
        problems += [f"{path}:1: {what}: {' '.join(stated)}, but the program has {' '.join(true)}"
                     for path, stated in found.items() if true and stated != true]
    return problems


# Helpers and tools

SCENARIO_PAGE = "docs/scenario-tool.md"
SCENARIO_SOURCES = "tools/qxterm-scenario/"
FAILURES_HEADING = "Calls that fail"
FAILURES_SOURCE = "src/platform/headless/failures.cpp"


def markdown_cells(root, path):
    """(heading above, first cell) of each row of a page's tables."""
    heading, cells = "", []
    for line in house.read_lines(path, root):
        if line.startswith("#"):
            heading = line.lstrip("# ")
        elif line.startswith("| "):
            cells.append((heading, line.split(" | ")[0].strip("| ")))
    return cells


def check_failures(root, _program):
    """Each call of the system that can be made to fail stands in the page's table, and the reverse."""
    text = "\n".join(house.read_lines(FAILURES_SOURCE, root))
    known = set(re.findall(r'\{Point::\w+, "([a-z.]+)"', text))
    told = {cell.strip("`") for heading, cell in markdown_cells(root, SCENARIO_PAGE)
            if heading == FAILURES_HEADING and cell.startswith("`")}
    problems = [f"{SCENARIO_PAGE}:1: no call fails under the name {name}" for name in sorted(told - known)]
    problems += [f"{SCENARIO_PAGE}:1: lacks the call {name}" for name in sorted(known - told)]
    return problems if known else [f"{FAILURES_SOURCE}:1: no table of calls was found"]


def check_commands(root, _program):
    """Each command of the scenario tool has its place in the tables of the page, and the reverse."""
    known = set()
    for path in house.source_files(root, SCENARIO_SOURCES):
        text = "\n".join(house.read_lines(path, root))
        known |= set(re.findall(r'^ +\{"([a-z ]+)", (?:true|false), [^}]+\},$', text, re.M))
    told, problems = set(), []
    for heading, cell in markdown_cells(root, SCENARIO_PAGE):
        if heading == FAILURES_HEADING:
            continue
        for text in re.findall(r"`([a-z][^`]*)`", cell):
            words = f"dump {text}" if heading == "Dumps" else text
            fitting = [name for name in known if f"{words} ".startswith(f"{name} ")]
            if fitting:
                told.add(max(fitting, key=len))
            else:
                problems.append(f"{SCENARIO_PAGE}:1: the tool has no command {words}")
    problems += [f"{SCENARIO_PAGE}:1: lacks the command {name}" for name in sorted(known - told)]
    return problems if known else [*problems, f"{SCENARIO_SOURCES}:1: no table of commands was found"]


def check_exit_codes(root, _program):
    """The codes with which a helper ends by itself are those of its page."""
    problems = []
    for helper in ("zpt_ssh", "zpt_tnetd"):
        source, page = f"helpers/{helper}/win32/main.cpp", f"docs/{helper}.md"
        true = set(re.findall(r"^constexpr int \w+ = (\d+);", "\n".join(house.read_lines(source, root)), re.M))
        stated = {cell for heading, cell in markdown_cells(root, page) if heading == "Exit status" and cell.isdigit()}
        if not true or stated != true:
            problems.append(f"{page}:1: has the exit codes {sorted(stated)}, {source} has {sorted(true)}")
    return problems


CHECKS = [check_ini, check_keys, check_menus, check_options, check_messages, check_numbers, check_failures, check_commands,
          check_exit_codes]


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("folder", nargs="?", default=house.ROOT)
    arguments = parser.parse_args()
    program = Program(shlex.split(arguments.program))
    problems = [p for check in CHECKS for p in check(os.path.abspath(arguments.folder), program)]
    for problem in problems:
        print(problem)
    print(f"{len(problems)} found" if problems else f"{len(CHECKS)} subjects in order")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
