"""What is in the package: the files, where each comes from and where it goes.

A path in the package is written with "/"; the installer puts the files below its folder, the zip below a folder with
the name and version.
"""

import re
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]

PROGRAMS = ("qxterm.exe", "qxterm-start.exe", "zpt_ssh.exe", "zpt_tnetd.exe")
BESIDE_PROGRAM = ("QXTERM.ttf", "enu_te.chm", "tmspl16.dat")
# The library of the installer's actions: in the MSI, never installed.
ACTIONS = "setup-actions.dll"

# Pages of docs/ for those who develop the program; the others go along.
FOR_DEVELOPERS = ("architecture", "benchmarks", "code-map", "scenario-tool")
# For the hosts, all of each folder.
HOST_FOLDERS = ("terminfo", "profile.d")

# What the programs are linked with: the name in the SBOM, Debian's package, the licence by SPDX's names, its file.
LINKED = (
    ("GCC run-time library (libstdc++, libgcc)", "g++-mingw-w64-x86-64-posix",
     "GPL-3.0-or-later WITH GCC-exception-3.1", "gcc"),
    ("MinGW-w64 run-time library and winpthreads", "mingw-w64-x86-64-dev",
     "ZPL-2.1 AND MIT AND BSD-3-Clause", "mingw-w64"),
)


@dataclass(frozen=True)
class Item:
    """One file of the package."""
    path: str
    data: bytes
    licence: str = "MIT"


def project_version(root=ROOT):
    text = (root / "CMakeLists.txt").read_text()
    return re.search(r"^project\(qxterm VERSION (\d+\.\d+\.\d+)\b", text, re.MULTILINE).group(1)


def title(root=ROOT):
    text = (root / "src" / "platform" / "program_title.h").read_text()
    return re.search(r'#define QXTERM_PROGRAM_TITLE "(.*)"', text).group(1)


def for_notepad(path, pages=(), folder=""):
    """A text as Windows' own editor shows it. pages: names of the manual's pages, which it may link to; folder: where
    they are. Of a link to anything else in the project only its words stay."""
    text = path.read_text(encoding="utf-8")

    def link(match):
        words, target = match.groups()
        page = re.fullmatch(r"(?:\.\./)?(?:docs/)?([\w-]+)\.md(?:#[\w-]*)?", target)
        if page and page.group(1) in pages:
            return f"[{words}]({folder}{page.group(1)}.txt)"
        return match.group(0) if "://" in target else words

    if path.suffix == ".md":
        text = re.sub(r"!?\[([^][]*)\]\(([^()\s]+)\)", link, text)
    # The mark at the beginning tells editors of every age that this is UTF-8.
    mark = "" if text.isascii() else "\ufeff"
    return (mark + text.replace("\n", "\r\n")).encode("utf-8")


def debian_copyright(package):
    """What Debian's package says of copyright and licence: it has to come along with what is linked."""
    path = Path("/usr/share/doc") / package / "copyright"
    if not path.is_file():
        raise SystemExit(f"package: {path} is missing: install the package {package}")
    return path.read_text(encoding="utf-8").replace("\r\n", "\n").replace("\n", "\r\n").encode("utf-8")


def programs(build):
    """The programs and what they look for in their own folder."""
    return ([Item(name, (build / name).read_bytes()) for name in PROGRAMS]
            + [Item(name, (build / name).read_bytes(), "OFL-1.1" if name.endswith(".ttf") else "MIT")
               for name in BESIDE_PROGRAM])


def installed(build, root=ROOT):
    """All files of the package, sorted by path."""
    items = programs(build)
    pages = {page.stem: page for page in (root / "docs").glob("*.md") if page.stem not in FOR_DEVELOPERS}
    items.append(Item("LICENSE.txt", for_notepad(root / "LICENSE")))
    items.append(Item("CHANGELOG.txt", for_notepad(root / "CHANGELOG.md", pages, "manual/")))
    items.append(Item("licences/font.txt", for_notepad(root / "resources" / "font" / "OFL.txt"), "OFL-1.1"))
    for name, package, licence, file in LINKED:
        items.append(Item(f"licences/{file}.txt", debian_copyright(package), licence))
    for name, page in pages.items():
        items.append(Item(f"manual/{name}.txt", for_notepad(page, pages)))
    # They are for the hosts, and stay byte for byte as they are.
    for folder in HOST_FOLDERS:
        base = root / "packaging" / folder
        for source in sorted(base.rglob("*")):
            if source.is_file() and "__pycache__" not in source.parts:
                items.append(Item(f"host/{source.relative_to(base).as_posix()}", source.read_bytes()))
    return sorted(items, key=lambda item: item.path)


def zipped(build, root=ROOT):
    """The zip has no installer, so it brings what does one thing of the installer's."""
    extra = [Item(name, for_notepad(root / "packaging" / "zip" / name))
             for name in ("per-user-settings.cmd", "README.txt")]
    return sorted(installed(build, root) + extra, key=lambda item: item.path)
