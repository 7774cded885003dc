"""The installer under Wine: packages made for the test, msiexec, and what stands in the prefix before and behind it."""

import contextlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from program import BUILD, ROOT, Failure, check, checkEqual

sys.path.insert(0, str(ROOT / "packaging"))
import version_resource  # noqa: E402

OLD_VERSION = "0.9.0"

PREFIX = Path(os.environ.get("WINEPREFIX", "/nonexistent"))
DRIVE = PREFIX / "drive_c"
FOLDER = DRIVE / "Program Files" / "qxterm"
MAPPING = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\IniFileMapping\qxterm.ini"
USER = r"HKCU\Software\qxterm"
PROGRAMS = ("qxterm.exe", "qxterm-start.exe", "zpt_ssh.exe", "zpt_tnetd.exe")
TAKEN = (*PROGRAMS, "QXTERM.ttf", "enu_te.chm", "tmspl16.dat", "setup-actions.dll")
SUCCESS, FAILED = 0, 67  # 1603, of which a Unix exit status keeps one byte


def projectVersion():
    return re.search(r"^project\(qxterm VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE).group(1)


def windowsPath(path):
    """How a program under Wine names a file of this system."""
    return "Z:" + str(path).replace("/", "\\")


def wine(*arguments, seconds=120, folder=None):
    """Runs a Windows program to its end; returns its exit status and what it printed. folder: where
    it is started."""
    with tempfile.TemporaryFile() as output:
        # No pipe: Wine's server would inherit it, and hold it open.
        done = subprocess.run([os.environ["WINE"], *map(str, arguments)], stdin=subprocess.DEVNULL, stdout=output,
                              stderr=subprocess.STDOUT, timeout=seconds, cwd=folder)
        output.seek(0)
        return done.returncode, output.read().decode("latin-1").replace("\r", "")


def makePackage(folder, *arguments):
    """Runs the maker; returns the folder. What it prints is shown when it fails."""
    command = [sys.executable, str(ROOT / "packaging" / "make_package.py"), "--output", str(folder), *map(str, arguments)]
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        raise Failure(f"the package cannot be made: {done.stdout}{done.stderr}")
    return Path(folder)


def msiOf(folder):
    return next(Path(folder).glob("*.msi"))


@contextlib.contextmanager
def packages():
    """The package of this build, and one of the version before: every file of it is another, and its program answers
    the probe's questions."""
    with tempfile.TemporaryDirectory(prefix="qxterm-package-") as scratch:
        before = Path(scratch) / "build-before"
        before.mkdir()
        for name in TAKEN:
            shutil.copyfile(BUILD / name, before / name)
        shutil.copyfile(BUILD / "qxterm-probe.exe", before / "qxterm.exe")
        for name in PROGRAMS:
            data = version_resource.with_version((before / name).read_bytes(), OLD_VERSION)
            (before / name).write_bytes(data + b"before")
        yield (makePackage(f"{scratch}/new", "--build", BUILD),
               makePackage(f"{scratch}/old", "--build", before, "--version", OLD_VERSION, "--only-msi"))


def msiexec(*arguments, status=SUCCESS):
    """Runs the installer silently, with a log, whose text it returns."""
    with tempfile.TemporaryDirectory(prefix="qxterm-msi-") as scratch:
        log = Path(scratch) / "log.txt"
        found, said = wine("msiexec", *arguments, "/qn", "/l*v", windowsPath(log), seconds=300)
        raw = log.read_bytes() if log.exists() else b""
        text = raw.decode("utf-16" if raw.startswith(b"\xff\xfe") else "latin-1", "replace")
        if found != status:
            raise Failure(f"msiexec {arguments} ends with {found}, not {status}: {said}\n{text[-3000:]}")
        return text


# --- what stands in the prefix -------------------------------------------------------------------------------------------

def registry(key):
    """The values below a key: {(key, name): value}; keys without values are there with the name None. Empty if there is
    no such key."""
    status, text = wine("reg", "query", key, "/s")
    found, current = {}, None
    if status != 0:
        return found
    for line in text.splitlines():
        if line.startswith("HKEY_"):
            current = line.split("\\", 1)[1]
            found.setdefault((current, None), "")
        elif line.startswith("    ") and current:
            name, kind, value = (line[4:].split("    ", 2) + ["", ""])[:3]
            found[(current, name)] = value
    return found


def userSettings():
    """What the user's own part of the registry holds: {section: {key: value}}."""
    sections = {}
    for (key, name), value in registry(USER).items():
        section = key.partition("Software\\qxterm")[2].lstrip("\\")
        if section and name is not None:
            sections.setdefault(section, {})[name] = value
    return sections


def files():
    """All files and folders of the prefix's drive: {path: content, or None for a folder}. Windows' own are known by
    name alone, and temporary files are nobody's."""
    found = {}
    for folder, folders, names in os.walk(DRIVE):
        here = Path(folder).relative_to(DRIVE).as_posix()
        if re.search(r"(^|/)[Tt]emp$", here):
            folders[:] = []
            continue
        found[here] = None
        for name in names:
            path = Path(folder) / name
            found[f"{here}/{name}"] = b"" if here.startswith("windows/") or path.is_symlink() else path.read_bytes()
    return found


def everything():
    """Files and registry."""
    return files(), {root: registry(root) for root in ("HKLM\\Software", "HKCU\\Software", "HKLM\\System")}


def expectedFiles(package):
    """What the package's own list says: {path: SHA-256}."""
    text = next(Path(package).glob("*-contents.txt")).read_text()
    rows = [line[2:].split(None, 2) for line in text.splitlines()[2:] if not line.startswith("+")]
    check(len(rows) > 10, "the list of contents names the files")
    return {path: digest for _, digest, path in rows}


def checkInstalled(package, folder=FOLDER):
    """Every file of the package stands in the folder, as the list says, and nothing else but what is set aside."""
    import hashlib
    found = {path.relative_to(folder).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest()
             for path in folder.rglob("*") if path.is_file() and ".in-use-" not in path.name}
    checkEqual(found, expectedFiles(package), "the installed files")


def setAside():
    return sorted(path.name for path in FOLDER.rglob("*.in-use-*"))


def productCode():
    """As the list of programs names it."""
    uninstall, = (entry["UninstallString"] for entry in programsListed())
    return re.search(r"\{.*\}", uninstall).group(0)


def startMenuLink():
    links = list(DRIVE.glob("**/Start Menu/Programs/qxterm.lnk"))
    checkEqual(len(links), 1, "entries of the start menu")
    return links[0]


def programsListed():
    """The entries of the list of installed programs that are ours: [{value's name: value}]."""
    entries = {}
    for (key, name), value in registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall").items():
        entries.setdefault(key, {})[name] = value
    return [entry for entry in entries.values() if entry.get("Publisher") == "qxterm developers"]
