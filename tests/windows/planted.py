"""Libraries with the names of Windows' own stand beside the program and its helpers, in the current folder and in the path:
none is loaded at the start, in a session, by Help, About or Options."""

import contextlib
import os
import shutil
import socket
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from program import BUILD, TITLE, check, checkEqual, focusTitle, netProfile, run, waitFor, writeProfiles, xdotool  # noqa: E402
from ssh_server import freePort  # noqa: E402

PLANTED = BUILD / "planted.dll"
# Windows takes these from memory, wherever a file of their name stands: its list KnownDLLs, what those need themselves,
# and what every process begins with. Wine has no such list, and looks for some of them.
KNOWN = set("""advapi32 bcrypt bcryptprimitives cfgmgr32 clbcatq combase comdlg32 coml2 crypt32 gdi32 gdi32full gdiplus imagehlp
            imm32 kernel32 kernelbase msctf msvcp_win msvcrt normaliz nsi ntdll ole32 oleaut32 psapi rpcrt4 sechost setupapi
            shcore shell32 shlwapi ucrtbase user32 win32u wldap32 ws2_32""".split())


def plant(folder):
    """The library under the name of each of the system's, as far as Windows would look for it."""
    system = Path(os.environ["WINEPREFIX"]) / "drive_c" / "windows" / "system32"
    names = [file.name for file in system.iterdir()
             if file.suffix in (".dll", ".ocx", ".drv") and file.stem.lower() not in KNOWN]
    check({"version.dll", "comctl32.dll", "uxtheme.dll", "iphlpapi.dll", "hhctrl.ocx", "oleacc.dll"} <= set(names),
          f"{len(names)} libraries of the system")
    source = folder / "planted.dll"
    shutil.copy(PLANTED, source)
    for name in names:
        os.link(source, folder / name)


class Trap:
    """A program's folder, a current folder and one in the path, with libraries planted in all three."""

    def __init__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="qxterm-planted-")
        root = Path(self._scratch.name)
        self.folder, self.current, path = (root / name for name in ("program", "current", "path"))
        for folder in (self.folder, self.current, path):
            folder.mkdir()
            plant(folder)
        for name in ("qxterm.exe", "qxterm-start.exe", "zpt_ssh.exe", "zpt_tnetd.exe", "QXTERM.ttf", "tmspl16.dat",
                     "enu_te.chm"):
            shutil.copy(BUILD / name, self.folder)
        self._sprung = root / "sprung"
        # As Windows does, Wine is to take whatever file it finds first, not its own library of that name.
        names = [file.stem for file in path.glob("*.dll")]
        order = ";".join([os.environ.get("WINEDLLOVERRIDES", ""), ",".join(names + [f"*{one}" for one in names]) + "=n,b"])
        self._environment = dict(os.environ, WINEPATH=str(path), WINEDLLOVERRIDES=order,
                                 QXTERM_PLANTED="Z:" + str(self._sprung).replace("/", "\\"))

    @contextlib.contextmanager
    def started(self, name, *words):
        self._sprung.unlink(missing_ok=True)
        with open(self.current / "said", "wb") as said:
            process = subprocess.Popen([os.environ["WINE"], str(self.folder / name), *map(str, words)], cwd=self.current,
                                       env=self._environment, stdin=subprocess.DEVNULL, stdout=said, stderr=said)
        try:
            yield process
        finally:
            if process.poll() is None:
                process.kill()
            process.wait()

    def said(self):
        return (self.current / "said").read_text(errors="replace")

    def sprung(self):
        """What was loaded, a line each."""
        return self._sprung.read_text() if self._sprung.exists() else ""


trap = Trap()


def focus(title):
    waitFor(lambda: focusTitle() == title, lambda: f"{title!r} has the keyboard: {focusTitle()!r}")


def session():
    main = f"{TITLE} - net"
    with Peer() as peer:
        writeProfiles({"net": netProfile(peer.port)})
        with trap.started("qxterm-start.exe", "net"):
            waitFor(lambda: peer.connections, lambda: f"the program connects: {trap.said()} {trap.sprung()}", 60)
            peer.send(b"\x1b[1mhost")
            focus(main)
            for menu, entry, dialog in (("c", "o", "Options for profile: net"), ("h", "a", "")):
                xdotool("key", "--delay", "100", "alt+" + menu, entry)
                focus(dialog)
                xdotool("key", "Escape")
                focus(main)
            xdotool("key", "--delay", "100", "alt+h", "c")
            focus(f"{TITLE} Help")
            xdotool("key", "alt+F4")
            focus(main)
            xdotool("type", "typed")
            peer.expect(b"typed", "what is typed after all of it")
            xdotool("key", "alt+F4")
            focus(TITLE)
            xdotool("key", "y")
            waitFor(lambda: peer.ended == 1, "the program ends")
    checkEqual(trap.sprung(), "", "libraries that were loaded")


def relay():
    with Peer() as peer:
        port = freePort()
        with trap.started("zpt_tnetd.exe", 2, port, peer.port, 4) as process:

            def connected():
                check(process.poll() is None, f"the relay has ended: {trap.said()} {trap.sprung()}")
                with contextlib.suppress(OSError):
                    return socket.create_connection(("127.0.0.1", port))
                return None

            with waitFor(connected, "the relay listens") as end:
                end.sendall(b"relayed")
                peer.expect(b"relayed", "what is relayed")
    checkEqual(trap.sprung(), "", "libraries that were loaded")


def tunnel():
    """Its client is a program that ends at once."""
    shutil.copy(BUILD / "zpt_tnetd.exe", trap.folder / "plink.exe")
    with trap.started("zpt_ssh.exe", "-no-antispoof", "-P", 22, "-ssh", "-L", f"{freePort()}:localhost:23", "127.0.0.1") as process:
        waitFor(lambda: process.poll() is not None, "the helper ends")
    check("the SSH client ended with code 2" in trap.said(), f"the helper said {trap.said()!r}")
    checkEqual(trap.sprung(), "", "libraries that were loaded")


def ordinaryProgram():
    """The trap works: a program that names a library in its table of imports loads the one that stands beside it."""
    own = Trap()
    shutil.copy(BUILD / "qxterm-probe.exe", own.folder)
    for file in own.folder.glob("*.dll"):
        if file.name != "iphlpapi.dll":
            file.unlink()
    with own.started("qxterm-probe.exe"):
        waitFor(lambda: "iphlpapi.dll in " in own.sprung().lower(), lambda: f"the library is loaded: {own.said()}")


# Wine's server stays from one program to the next: one that goes may do so just when the next one begins.
subprocess.run(["wineserver", "--persistent"], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
run(session, tunnel, ordinaryProgram, relay)
