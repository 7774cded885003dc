#!/usr/bin/env python3
"""Compiles the help file resources/enu_te.chm from resources/help/, and makes docs/manual.md from the same pages.

    make_help.py            checks the sources, compiles them and writes the manual
    make_help.py --check    checks the sources, and that both were made from them; writes nothing

Needs chmcmd (Debian package fp-utils-3.2.2), and to check extract_chmLib (libchm-bin). Building the program needs neither: the
compiled file is kept. Two runs differ in their time stamps.

The pages are HTML as the help viewer's old engine understands it, in ASCII. enu_te.hhp names them and gives the
context numbers of src/app/dialogs/help_topics.h their pages, enu_te.hhc is the table of contents, enu_te.hhk the index.
"""

import argparse
import configparser
import html.parser
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile

import manual

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ROOT / "resources" / "help"
COMPILED = ROOT / "resources" / "enu_te.chm"
TOPICS = ROOT / "src" / "app" / "dialogs" / "help_topics.h"
PROJECT = "enu_te.hhp"
# chmcmd puts the folder that it works in before the pages of context numbers. This name of it is the same on
# every machine.
FOLDER_PREFIX = "/proc/self/cwd/"
MANUAL = ROOT / "docs" / "manual.md"


class Problem(Exception):
    pass


class Page(html.parser.HTMLParser):
    """What a page or a site map links to, and the places in it that can be linked to."""

    def __init__(self, path):
        super().__init__()
        self.links, self.anchors, self.open = [], set(), []
        self.titles = {"title": "", "h1": ""}
        self.feed(path.read_text(encoding="ascii"))
        if self.open:
            raise Problem(f"{path.name}: <{self.open[-1]}> is not closed")

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag not in ("meta", "link", "br", "param"):
            self.open.append(tag)
        if "href" in values:
            self.links.append(values["href"])
        if tag == "param" and values.get("name") == "Local":
            self.links.append(values["value"])
        if tag == "a" and "name" in values:
            self.anchors.add(values["name"])

    def handle_endtag(self, tag):
        # Site maps leave <li> open, which HTML allows.
        while self.open and self.open[-1] == "li" and tag != "li":
            self.open.pop()
        if not self.open or self.open.pop() != tag:
            raise Problem(f"</{tag}> in line {self.getpos()[0]} closes nothing")

    def handle_data(self, data):
        if self.open and self.open[-1] in self.titles:
            self.titles[self.open[-1]] += data


class Project:
    def __init__(self):
        parser = configparser.ConfigParser(
            allow_no_value=True, delimiters=("=",), comment_prefixes=(";",), interpolation=None, strict=True
        )
        parser.optionxform = str
        parser.read(SOURCES / PROJECT, encoding="ascii")
        self.title = parser["OPTIONS"]["Title"]
        self.files = list(parser["FILES"])
        self.maps = [parser["OPTIONS"]["Contents file"], parser["OPTIONS"]["Index file"]]
        numbers = {}
        for line in parser["MAP"]:
            _, name, number = line.split()
            numbers[name] = int(number)
        self.contexts = {numbers[name]: page for name, page in parser["ALIAS"].items()}
        if len(self.contexts) != len(numbers):
            raise Problem(f"{PROJECT}: [MAP] and [ALIAS] do not name the same topics")


def checkSources(project):
    present = {path.name for path in SOURCES.iterdir()}
    if present != {*project.files, *project.maps, PROJECT}:
        raise Problem(f"{PROJECT} and the folder differ: {sorted(present ^ {*project.files, *project.maps, PROJECT})}")
    pages = {}
    for name in [*project.files, *project.maps]:
        if name.endswith(".css"):
            continue
        try:
            pages[name] = Page(SOURCES / name)
        except (Problem, UnicodeDecodeError) as problem:
            raise Problem(f"{name}: {problem}") from problem
    for name, page in pages.items():
        for link in page.links:
            target, _, anchor = link.partition("#")
            if target not in present:
                raise Problem(f"{name} links to {link}, which is not there")
            if anchor and anchor not in pages[target].anchors:
                raise Problem(f"{name} links to {link}, but {target} has no such place")
        if name not in project.maps and (not page.titles["h1"] or page.titles["h1"] != page.titles["title"]):
            raise Problem(f"{name}: title and heading differ or are empty")
    missing = {name for name in pages if name.endswith(".htm")} - set(pages[project.maps[0]].links)
    if missing:
        raise Problem(f"{project.maps[0]} lacks {sorted(missing)}")
    asked = {int(number) for number in re.findall(r"\bint32_t \w+ = (\d+);", TOPICS.read_text())}
    if not asked or asked != set(project.contexts):
        raise Problem(f"context numbers: the program has {sorted(asked)}, {PROJECT} {sorted(project.contexts)}")


def filesIn(chm):
    """{name: bytes} of all that a compiled file holds."""
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out"
        subprocess.run(["extract_chmLib", str(chm), str(out)], check=True, capture_output=True)
        return {str(path.relative_to(out)): path.read_bytes() for path in out.rglob("*") if path.is_file()}


def contextTable(files):
    """Pairs of a context number and where its page's name stands in #STRINGS, from #IVB."""
    return list(struct.iter_unpack("<II", files["#IVB"][4:]))


def stringAt(strings, place):
    return strings[place : strings.index(b"\0", place)].decode("ascii")


def checkCompiled(chm, project):
    files = filesIn(chm)
    for name in [*project.files, *project.maps]:
        if files.get(name) != (SOURCES / name).read_bytes():
            raise Problem(f"{chm.name} holds another {name} than resources/help: run tools/make-help/make_help.py")
    found = {number: stringAt(files["#STRINGS"], place) for number, place in contextTable(files)}
    if found != project.contexts:
        raise Problem(f"{chm.name} has the context numbers {found}")


def manualText(project):
    def read(name):
        return (SOURCES / name).read_text(encoding="ascii")

    try:
        return manual.manual(project.title, read(project.maps[0]), read)
    except manual.UnknownElement as unknown:
        raise Problem(f"the manual knows no element <{unknown}>") from unknown


def checkManual(project):
    if not MANUAL.exists() or MANUAL.read_text(encoding="utf-8") != manualText(project):
        raise Problem(f"{MANUAL.relative_to(ROOT)} is not that of resources/help: run tools/make-help/make_help.py")


def replaceOnce(data, old, new):
    if len(old) != len(new) or data.count(old) != 1:
        raise Problem("this chmcmd writes another form of file")
    return data.replace(old, new)


def correctContexts(chm):
    """Lets the context numbers lead to the bare names of the pages, as the viewer needs them.

    The names are in the file, as the ends of those with the folder before them, so the numbers in #IVB only have
    to point further on. #IVB itself is compressed and cannot be changed in place; the corrected one goes to the end
    of a remark that the compiler leaves uncompressed at the start of the contents, and the directory is told so.
    """
    files = filesIn(chm)
    strings, remark = files["#STRINGS"], files["_#_README_#_"]
    table = b""
    for number, place in contextTable(files):
        if not stringAt(strings, place).startswith(FOLDER_PREFIX):
            raise Problem("this chmcmd writes context numbers in another way")
        table += struct.pack("<II", number, place + len(FOLDER_PREFIX))
    table = struct.pack("<I", len(table)) + table
    rest = len(remark) - len(table)
    # A length or place in the directory takes one byte up to 127, two up to 16383; the remark's needs two.
    if not (0 <= rest < 128 <= len(remark) and len(table) < 128):
        raise Problem("too many context numbers for the place that there is")
    data = chm.read_bytes()
    data = replaceOnce(data, remark, remark[:rest] + table)
    data = replaceOnce(
        data,
        b"\x0d/_#_README_#_\x00\x00" + bytes([0x80 | len(remark) >> 7, len(remark) & 0x7F]),
        b"\x0d/_#_README_#_\x00\x00" + bytes([0x80, rest]),
    )
    data = replaceOnce(
        data, b"\x05/#IVB\x01\x00" + bytes([len(table)]), b"\x05/#IVB\x00" + bytes([rest, len(table)])
    )
    chm.write_bytes(data)


def compileHelp(project):
    with tempfile.TemporaryDirectory() as folder:
        for name in [*project.files, *project.maps, PROJECT]:
            shutil.copy(SOURCES / name, folder)
        subprocess.run(["chmcmd", FOLDER_PREFIX + PROJECT], cwd=folder, check=True, capture_output=True)
        chm = pathlib.Path(folder) / COMPILED.name
        correctContexts(chm)
        checkCompiled(chm, project)
        shutil.copyfile(chm, COMPILED)


def main():
    parser = argparse.ArgumentParser(description="Compiles the help file.")
    parser.add_argument("--check", action="store_true", help="write nothing")
    options = parser.parse_args()
    needed = {"extract_chmLib": "libchm-bin"} | ({} if options.check else {"chmcmd": "fp-utils-3.2.2"})
    for tool, package in needed.items():
        if shutil.which(tool) is None:
            sys.exit(f"make_help.py: {tool} is missing; it is in Debian's package {package}")
    try:
        project = Project()
        checkSources(project)
        if options.check:
            checkCompiled(COMPILED, project)
            checkManual(project)
        else:
            compileHelp(project)
            MANUAL.write_text(manualText(project), encoding="utf-8")
    except Problem as problem:
        sys.exit(f"make_help.py: {problem}")
    except subprocess.CalledProcessError as failed:
        sys.exit(f"make_help.py: {failed.cmd[0]} failed: {(failed.stderr or failed.stdout).decode().strip()}")


if __name__ == "__main__":
    main()
