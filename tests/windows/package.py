"""The installer, silently: profiles brought along, the start menu, a session, an upgrade while it runs, repair, removal;
and the zip."""

import contextlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
import installer  # noqa: E402
import processes  # noqa: E402
from desk import Desk  # noqa: E402
from installer import FAILED, FOLDER, checkInstalled, msiexec, msiOf, windowsPath, wine  # noqa: E402
from neighbour import heldFile  # noqa: E402
from peers import DemonstrationHost, Peer  # noqa: E402
from program import TITLE, Failure, check, checkEqual, iniPath, readIni, run, saveScreen, waitFor, writeIni  # noqa: E402
from tcp_table import connectedTo  # noqa: E402

# What stood in the machine's file before the program was installed.
OLD_PROFILES = {"Settings": {"Profiles": "shop ", "timeout": "33"},
                "shop": {"connect": "net", "host": "shop.example", "netport": "2300"}}


class InPrefix:
    """The program of this name that runs in the prefix, whoever has started it."""

    def __init__(self, name, seconds=60):
        self._name = name.lower()
        self.pid = waitFor(self._find, f"{name} is running", seconds)
        self.returncode = None

    def _find(self):
        return next((process for process, words in processes.inPrefix().items()
                     if re.split(r"[\\/]", words[0].lower())[-1] == self._name), None)

    @staticmethod
    def end(name):
        """Ends the program of this name, if it runs."""
        with contextlib.suppress(Failure):
            process = InPrefix(name, seconds=0)
            process.kill()
            process.wait()

    def poll(self):
        if self.returncode is None and self._find() != self.pid:
            self.returncode = 0
        return self.returncode

    def kill(self):
        with contextlib.suppress(ProcessLookupError):
            os.kill(self.pid, 9)

    def wait(self):
        waitFor(lambda: self.poll() is not None, f"process {self.pid} ends")


class Started(Desk):
    """Started by the start menu's entry: that of the version before is the probe."""

    def command(self):
        entry = [os.environ["WINE"], "start", "/unix", str(installer.startMenuLink())]
        return entry + [self.profile] if self.profile else entry

    def waitStart(self):
        self.process.wait()
        self.process = InPrefix("qxterm.exe")
        super().waitStart()


@contextlib.contextmanager
def startedWithoutProbe(profile):
    """The program that is handed over, started by the start menu's entry. Yields the process."""
    status, said = wine("start", "/unix", installer.startMenuLink(), profile)
    checkEqual(status, 0, f"the start menu's entry starts: {said}")
    process = InPrefix("qxterm.exe")
    try:
        yield process
    finally:
        process.kill()
        process.wait()


def installed(version):
    entries = installer.programsListed()
    checkEqual([(entry["DisplayName"], entry["DisplayVersion"]) for entry in entries], [(TITLE, version)],
               "the list of programs")
    mapping = [value for (_, name), value in installer.registry(installer.MAPPING).items() if name]
    checkEqual(mapping, ["USR:Software\\qxterm"], "the mapping of qxterm.ini")


def broughtProfiles(old, port, scratch):
    """The machine's own profiles stay, others come along."""
    profiles = Path(scratch) / "rollout.ini"
    profiles.write_text("; all branches\r\n[Settings]\r\nProfiles=demo shop \r\ntimeout=20\r\n"
                        f"[demo]\r\nconnect=net\r\nhost=127.0.0.1\r\nnetport={port}\r\nFont=large\r\n"
                        "[shop]\r\nhost=wrong.example\r\n")
    msiexec("/i", windowsPath(msiOf(old)), f"PROFILES={windowsPath(profiles)}")
    installed(installer.OLD_VERSION)
    checkEqual(readIni(), {"Settings": {"Profiles": "shop demo ", "timeout": "33"}, "shop": OLD_PROFILES["shop"],
                           "demo": {"connect": "net", "host": "127.0.0.1", "netport": str(port), "Font": "large"}},
               "the machine's profiles")
    checkEqual(installer.userSettings(), {}, "the user's own settings before the first start")


def refused(old):
    """What cannot be done is refused with a reason, and leaves nothing behind."""
    with tempfile.TemporaryDirectory() as scratch:
        empty = Path(scratch) / "empty.ini"
        empty.write_text("[Settings]\r\ntimeout=3\r\n")
        for path, reason in ((empty, "No profiles are named in"), (empty.with_name("gone.ini"), "cannot be read"),
                             (None, "full path")):
            given = windowsPath(path) if path else "empty.ini"
            log = msiexec("/i", windowsPath(msiOf(old)), f"PROFILES={given}", status=FAILED)
            check(reason in log, f"the log says {reason!r}: {log[-1500:]}")
            check(not FOLDER.exists(), "nothing is installed")


def session(program, port):
    """To the demonstration host's menu; a profile saved under another name is the user's own."""
    program.waitText("Login:")
    program.focus()
    program.type("Anna")
    program.waitText("Anna")
    program.key("Return")
    program.waitText("Password:")
    program.type("secret")
    program.key("Return")
    program.waitText("Main menu", row=0)
    before = iniPath().read_bytes()
    program.menu("p", "a")
    program.dialog("frmprof")
    program.fill("mine")
    program.key("Return")
    program.waitCaption("mine")
    checkEqual(iniPath().read_bytes(), before, "qxterm.ini of the machine")
    settings = installer.userSettings()
    checkEqual(settings["Settings"]["Profiles"].split(), ["shop", "demo", "mine"], "the user's list of profiles")
    checkEqual((settings["mine"]["host"], settings["mine"]["netport"]), ("127.0.0.1", str(port)), "the user's profile")
    checkEqual(settings["shop"], OLD_PROFILES["shop"], "the machine's profile, which the user had none of")


def upgradeWhileItRuns(program, new):
    """All files are of the new version, and the session goes on."""
    msiexec("/i", windowsPath(msiOf(new)))
    checkInstalled(new)
    installed(installer.projectVersion())
    check("qxterm.exe.in-use-1" in installer.setAside(), f"what is set aside: {installer.setAside()}")
    program.focus()
    program.key("F2")
    program.waitText("Agents and queues", row=0)
    program.key("F6")
    program.waitText("Main menu", row=0)


def newVersionStarts(port):
    """With the user's own profile, to the host."""
    waitFor(lambda: not connectedTo(port), "the session before is gone")
    with startedWithoutProbe("mine"):
        def captions():
            found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE} - mine$"],
                                   capture_output=True, text=True)
            return found.stdout.split()
        waitFor(captions, "the new version's window stands", 60)
        waitFor(lambda: connectedTo(port), "the new version connects", 60)
        saveScreen("package-new-version")


def notTouchedWhenLocked(new, old):
    """A file that can neither be replaced nor set aside: everything stays as it is, and the log says why."""
    locked = FOLDER / "CHANGELOG.txt"
    with heldFile(windowsPath(locked)):
        before = {path: path.read_bytes() for path in FOLDER.rglob("*") if path.is_file()}
        log = msiexec("/i", windowsPath(msiOf(new)), status=FAILED)
        check("CHANGELOG.txt is in use" in log, f"the log names the file: {log[-3000:]}")
        after = {path: path.read_bytes() for path in FOLDER.rglob("*") if path.is_file()}
        checkEqual(sorted(path.name for path in after), sorted(path.name for path in before), "the files")
        check(after == before, "the files are those of the version before")
        installed(installer.OLD_VERSION)


def repair(new):
    """What is missing, damaged or left over is put right."""
    (FOLDER / "zpt_ssh.exe").unlink()
    (FOLDER / "manual" / "profiles.txt").write_bytes(b"damaged")
    wine("reg", "delete", installer.MAPPING, "/f")
    # As with /f, which Wine's msiexec has not.
    msiexec("/i", installer.productCode(), "REINSTALL=ALL", "REINSTALLMODE=omus")
    checkInstalled(new)
    installed(installer.projectVersion())
    checkEqual(installer.setAside(), [], "what is set aside when nobody uses it any more")


def olderIsRefused(old):
    log = msiexec("/i", windowsPath(msiOf(old)), status=FAILED)
    check("A newer version is installed" in log, f"the log says why: {log[-1500:]}")
    installed(installer.projectVersion())


def removed(new, before, changes=("windows/qxterm.ini",)):
    """Nothing is left but what is the users' or Windows' own."""
    settings = installer.userSettings()
    msiexec("/x", windowsPath(msiOf(new)))
    now = installer.everything()
    # The folder of Windows' own installer comes with the first package of all.
    left = sorted(path for path in now[0] if path not in before[0] and path != "windows/Installer")
    checkEqual(left, [], "files and folders that are left behind")
    gone = sorted(path for path in before[0] if path not in now[0])
    checkEqual(gone, [], "files and folders that are gone")
    changed = sorted(path for path in before[0] if before[0][path] != now[0][path])
    # The profiles that stood there have others beside them, and users may have come to need these.
    checkEqual(changed, list(changes), "files that have changed")
    entries = [entry for root in now[1] for entry in now[1][root].items() if entry not in before[1][root].items()]
    ours = [entry for entry in entries if "qxterm" in str(entry).lower() and "Software\\qxterm" not in entry[0][0]]
    # Windows' own list of what to delete at its next start may still name files that are gone.
    ours = [entry for entry in ours if entry[0][1] != "PendingFileRenameOperations"]
    checkEqual(ours, [], "entries of the registry that are left behind")
    checkEqual(installer.registry(r"HKLM\Software\qxterm"), {}, "the product's own key")
    checkEqual(installer.userSettings(), settings, "the user's settings")


def onAFreshMachine():
    """No settings of any kind before; profiles come along, reach a user at the first start, and go with the program."""
    iniPath().unlink(missing_ok=True)
    with installer.packages() as (new, _), Peer() as peer, tempfile.TemporaryDirectory() as scratch:
        before = installer.everything()
        profiles = Path(scratch) / "rollout.ini"
        for port, timeout in ((1, 20), (peer.port, 25)):
            # The second time as a repair that brings others: those of the first time are replaced.
            profiles.write_text(f"[Settings]\r\nProfiles=lab \r\ntimeout={timeout}\r\n"
                                f"[lab]\r\nconnect=net\r\nhost=127.0.0.1\r\nnetport={port}\r\n")
            more = ["REINSTALL=ALL", "REINSTALLMODE=omus"] if port != 1 else []
            msiexec("/i", windowsPath(msiOf(new)), f"PROFILES={windowsPath(profiles)}", *more)
        checkInstalled(new)
        checkEqual(readIni()["lab"]["netport"], str(peer.port), "the profile that came last")
        with startedWithoutProbe("lab") as process:
            waitFor(lambda: peer.connections, "the profile that came along is connected", 60)
            # Where the trace would go.
            checkEqual(Path(os.readlink(f"/proc/{process.pid}/cwd")).parent, installer.DRIVE / "users",
                       "the start menu's entry starts in the user's own folder; the folder above it")
        settings = installer.userSettings()
        checkEqual((settings["Settings"]["Profiles"], settings["Settings"]["timeout"], settings["lab"]["netport"]),
                   ("lab", "25", str(peer.port)), "the user's own settings")
        # What the user has changed stays, and what he took out of the list does not come again.
        wine("reg", "add", rf"{installer.USER}\Settings", "/v", "Profiles", "/d", "", "/f")
        wine("reg", "add", rf"{installer.USER}\lab", "/v", "netport", "/d", "7", "/f")
        with startedWithoutProbe("lab"):
            waitFor(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE} - "],
                                           capture_output=True).stdout, "the window stands", 60)
        settings = installer.userSettings()
        checkEqual((settings["Settings"]["Profiles"], settings["lab"]["netport"]), ("", "7"), "the user's own settings")
        removed(new, before, changes=[])
        check(not iniPath().exists(), "the profiles that came along are gone")
    wine("reg", "delete", installer.USER, "/f")


def fromAZip():
    """Unpacked anywhere; its script leads the settings to each user's own, and back."""
    folder = installer.DRIVE / "Any folder"
    iniPath().unlink(missing_ok=True)
    with tempfile.TemporaryDirectory() as scratch:
        package = installer.makePackage(scratch, "--build", installer.BUILD)
        with zipfile.ZipFile(next(package.glob("*.zip"))) as archive:
            archive.extractall(folder)
    inside = next(folder.iterdir())

    def says(wish, status, text, script="per-user-settings.cmd"):
        found, said = wine("cmd", "/c", script, *wish.split(), folder=inside)
        check((found, text in said) == (status, True), f"{wish!r} ends with {found} and says {said!r}")

    def started():
        """One start and end of the program: it writes a setting each time."""
        process = subprocess.Popen([os.environ["WINE"], str(inside / "qxterm.exe")], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            waitFor(lambda: installer.userSettings() or iniPath().exists(), "the program writes a setting", 60, 0.5)
        finally:
            process.kill()
            process.wait()
            InPrefix.end("qxterm.exe")

    says("", 2, "Usage")
    says("status", 0, "All users share")
    started()
    checkEqual((readIni(), installer.userSettings()), ({"Settings": {"PortForwardRangeStart": "3000"}}, {}),
               "settings without the mapping")
    iniPath().unlink()
    # Everybody is an administrator under Wine: the same with a key that nobody can write.
    refused = (inside / "per-user-settings.cmd").read_bytes().replace(b"HKLM\\", b"HKXX\\")
    (inside / "refused.cmd").write_bytes(refused)
    says("on", 1, "as an administrator", "refused.cmd")
    says("on", 0, "of his own")
    says("status", 0, "of his own")
    started()
    checkEqual((iniPath().exists(), installer.userSettings()), (False, {"Settings": {"PortForwardRangeStart": "3000"}}),
               "settings with the mapping")
    says("off", 0, "now share")
    says("off", 0, "All users share")
    checkEqual(installer.registry(installer.MAPPING), {}, "the mapping")
    wine("reg", "delete", installer.USER, "/f")
    shutil.rmtree(folder)


def removedWhileItRuns():
    """What is in use goes when Windows starts next; the session goes on till its end."""
    with tempfile.TemporaryDirectory() as scratch:
        package = installer.makePackage(scratch, "--build", installer.BUILD, "--only-msi")
        msiexec("/i", windowsPath(msiOf(package)))
        with startedWithoutProbe("none") as process:
            waitFor(lambda: "Settings" in installer.userSettings(), "the program has begun", 60, 0.5)
            msiexec("/x", installer.productCode())
            checkEqual(process.poll(), None, "the program's end")
            checkEqual(sorted(path.name for path in FOLDER.rglob("*") if ".in-use-" not in path.name), [],
                       "what is not in use")
            check("qxterm.exe.in-use-1" in installer.setAside(), f"what is set aside: {installer.setAside()}")
        checkEqual(installer.programsListed(), [], "the list of programs")
        wine("wineboot")
        waitFor(lambda: not FOLDER.exists(), "the folder is gone behind the next start of Windows", 30)
    wine("reg", "delete", installer.USER, "/f")


def throughVersions():
    writeIni(OLD_PROFILES)
    before = None
    with installer.packages() as (new, old), DemonstrationHost() as host, tempfile.TemporaryDirectory() as scratch:
        wine("cmd", "/c", "exit")
        before = installer.everything()
        refused(old)
        broughtProfiles(old, host.port, scratch)
        merged = iniPath().read_bytes()
        with Started("demo") as program:
            session(program, host.port)
            notTouchedWhenLocked(new, old)
            upgradeWhileItRuns(program, new)
        newVersionStarts(host.port)
        repair(new)
        olderIsRefused(old)
        checkEqual(iniPath().read_bytes(), merged, "qxterm.ini of the machine")
        removed(new, before)


run(fromAZip, onAFreshMachine, removedWhileItRuns, throughVersions)
