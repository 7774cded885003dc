"""Makes the MSI from its tables, with the tools of Debian's packages msitools and gcab."""

import os
import subprocess
import tempfile
import time
from pathlib import Path

import identity
import tables

CODE_PAGE = 1252


def run(*command, **more):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True,
                          env=dict(os.environ, TZ="UTC"), **more)
    if done.returncode != 0:
        raise SystemExit(f"package: {command[0]} failed: {(done.stderr or done.stdout).strip()}")


def table_text(name, rows):
    """A table as the tools import it: names of the columns, their types, the table and its keys, the rows."""
    columns = [column.split(":") for column in tables.COLUMNS[name]]
    keys = [column for column, _ in columns[:tables.KEYS.get(name, 1)]]
    lines = ["\t".join(column for column, _ in columns), "\t".join(kind for _, kind in columns), "\t".join([name, *keys])]
    for row in rows:
        cells = [str(cell) for cell in row]
        if any("\t" in cell or "\n" in cell or "\r" in cell for cell in cells):
            raise ValueError(f"{name}: a cell holds what separates cells: {cells}")
        lines.append("\t".join(cells))
    return "\r\n".join(lines) + "\r\n"


def cabinet(folder, items, epoch):
    """The files in the order of the table, packed."""
    inside = folder / "files"
    inside.mkdir()
    names = []
    for item in items:
        path = inside / tables.file_key(item.path)
        path.write_bytes(item.data)
        os.utime(path, (epoch, epoch))
        names.append(path.name)
    run("gcab", "-c", "-z", "-n", folder / "qxterm.cab", *names, cwd=inside)
    return folder / "qxterm.cab"


def summary(title, package_code, epoch):
    moment = time.strftime("%Y/%m/%d %H:%M:%S", time.gmtime(epoch))
    # Numbers of the properties: code page, title, subject, author, keywords, comments, platform and language, code
    # of this package, created, saved, needed version of the installer, kind of source (2: packed, with long names),
    # the program that made it, security (2: read-only recommended).
    return [(1, CODE_PAGE), (2, "Installation Database"), (3, title), (4, "qxterm developers"), (5, "Installer"),
            (6, "A character terminal for Windows"), (7, "x64;1033"), (9, package_code), (12, moment), (13, moment),
            (14, 500), (15, 2), (18, "qxterm"), (19, 2)]


def make(path, items, actions, icon, version, title, epoch):
    """Writes the package. items: contents.Item of all files; actions, icon: bytes."""
    digest = identity.digest([version, actions, icon] + [part for item in items for part in (item.path, item.data)])
    rows = tables.build(items, version, title, identity.code(f"product {digest}"))
    rows_digest = identity.digest([repr(sorted(rows.items()))])
    with tempfile.TemporaryDirectory(prefix="qxterm-msi-") as scratch:
        folder = Path(scratch)
        streams = {"Binary": [(tables.LIBRARY, actions)], "Icon": [(tables.ICON, icon)]}
        for name, entries in streams.items():
            (folder / name).mkdir()
            for key, data in entries:
                (folder / name / key).write_bytes(data)
            rows[name] = [(key, key) for key, _ in entries]
        arguments = []
        for name in sorted(rows):
            file = folder / f"{name}.idt"
            file.write_text(table_text(name, rows[name]), encoding="cp1252", newline="")
            arguments += ["-i", file.name]
        package_code = identity.code(f"package {digest} {rows_digest} {epoch}")
        info = folder / "_SummaryInformation.idt"
        lines = ["PropertyId\tValue", "i2\tl255", "_SummaryInformation\tPropertyId"]
        lines += [f"{number}\t{value}" for number, value in summary(title, package_code, epoch)]
        info.write_text("\r\n".join(lines) + "\r\n", encoding="cp1252", newline="")
        arguments += ["-i", info.name, "-a", "qxterm.cab", cabinet(folder, items, epoch).name]
        made = folder / "qxterm.msi"
        run("msibuild", made.name, *arguments, cwd=folder)
        path.write_bytes(made.read_bytes())
