"""An SSH server on the loopback address, and the Windows SSH client that goes there."""

import contextlib
import os
import re
import select
import shutil
import socket
import subprocess
import tempfile
import time
from pathlib import Path

import processes
from listener import Listener, inBackground
from program import BUILD, PATIENCE, ROOT, Failure, waitFor

TELNET = 23  # the port behind every tunnel, on the server's own loopback
HOST = "127.0.0.1"


def sshClient():
    """The Windows SSH client; its path."""
    made = subprocess.run([ROOT / "tools" / "setup" / "plink.sh"], capture_output=True, text=True)
    if made.returncode != 0:
        raise Failure(f"there is no SSH client for Windows: {made.stderr.strip()}")
    return made.stdout.strip()


def programFolder(parent, client=None):
    """A copy of the program's folder with an SSH client in it, or what stands in for one; returns its path."""
    folder = Path(parent) / "program"
    folder.mkdir()
    for name in ("qxterm-probe.exe", "zpt_ssh.exe", "zpt_tnetd.exe", "QXTERM.ttf", "tmspl16.dat", "enu_te.chm"):
        shutil.copy(BUILD / name, folder)
    shutil.copy(client or sshClient(), folder / "plink.exe")
    return folder


def addressesOf(name):
    try:
        return {found[4][0] for found in socket.getaddrinfo(name, None)}
    except OSError:
        return set()


def freePort(address=HOST):
    family = socket.AF_INET6 if ":" in address else socket.AF_INET
    with socket.create_server((address, 0), family=family) as listener:
        return listener.getsockname()[1]


def loopbacks():
    """The loopback addresses that this machine has."""
    found = set()
    for address in (HOST, "::1"):
        with contextlib.suppress(OSError):
            freePort(address)
            found.add(address)
    return found


class SshServer:
    """sshd with a host key of its own. Only the user's key is let in."""

    def __init__(self, user, address=HOST):
        self._user, self._address = user, address
        if HOST not in addressesOf("localhost"):
            raise Failure(f"localhost, where tunnels begin and end, is not {HOST} here: see /etc/hosts")
        self._program = shutil.which("sshd", path="/usr/sbin:/usr/bin")
        if self._program is None:
            raise Failure("there is no sshd: tools/setup/install.sh peers")
        self._folder = tempfile.TemporaryDirectory(prefix="qxterm-sshd-")
        self.folder = Path(self._folder.name)
        self.folder.chmod(0o755)
        self.port = freePort(address)
        for name in ("host", "user"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.folder / name], check=True)
        (self.folder / "user.pub").chmod(0o644)
        subprocess.run(["puttygen", self.folder / "user", "-O", "private", "-o", self.folder / "user.ppk"], check=True)
        printed = subprocess.run(["ssh-keygen", "-l", "-f", self.folder / "host.pub"], check=True, capture_output=True,
                                 text=True).stdout
        self.fingerprint = printed.split()[1]
        (self.folder / "config").write_text(
            f"Port {self.port}\nListenAddress {address}\nHostKey {self.folder}/host\nPidFile none\n"
            f"AuthorizedKeysFile {self.folder}/user.pub\nStrictModes no\nUsePAM no\nPasswordAuthentication no\n"
            f"KbdInteractiveAuthentication no\nAllowUsers {user}\n")

    def __enter__(self):
        Path("/run/sshd").mkdir(mode=0o755, exist_ok=True)
        self._log = open(self.folder / "log", "wb")
        self._process = subprocess.Popen([self._program, "-D", "-e", "-f", self.folder / "config"], stderr=self._log)

        def listening():
            with contextlib.suppress(OSError), socket.create_connection((self._address, self.port), 1):
                return True
            return False

        waitFor(listening, "sshd listens")
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(PATIENCE)
        self._log.close()

    def log(self):
        """The lines that the server has written."""
        return (self.folder / "log").read_text(errors="replace").splitlines()

    def introduce(self, knownKey=True, user="user"):
        """Tells the client about this server, as its saved session does: the user's key, and the host's."""
        key = "Z:" + str(self.folder / f"{user}.ppk").replace("/", r"\\")
        lines = ["REGEDIT4", "", r"[HKEY_CURRENT_USER\Software\SimonTatham\PuTTY\Sessions" + f"\\{self._address}]",
                 f'"HostName"="{self._address}"', '"Protocol"="ssh"', f'"PublicKeyFile"="{key}"',
                 f'"SSHManualHostKeys"="{self.fingerprint if knownKey else ""}"', ""]
        file = self.folder / "session.reg"
        file.write_text("\r\n".join(lines))
        subprocess.run([os.environ["WINE"], "regedit", "/S", "Z:" + str(file)], check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)


class SlowWay:
    """A way to the server on which nothing moves for some seconds; then it leads there, or ends."""

    def __init__(self, server, seconds, arrives=True):
        self._server, self._seconds, self._arrives = server, seconds, arrives

    def __enter__(self):
        self._listener = Listener(inBackground(self._lead))
        self.port = self._listener.port
        return self

    def _lead(self, connection):
        time.sleep(self._seconds)
        if not self._arrives:
            return
        with socket.create_connection((HOST, self._server.port)) as there:
            ends = {connection: there, there: connection}
            while True:
                for end in select.select(list(ends), [], [])[0]:
                    block = end.recv(65536)
                    if not block:
                        return
                    ends[end].sendall(block)

    def __exit__(self, *_):
        self._listener.close()


def helpers():
    """Command lines of the helper programs and SSH clients that run in this Wine prefix, by process number."""
    commands = {process: " ".join(words) for process, words in processes.inPrefix().items()}
    return {process: command for process, command in commands.items()
            if any(name in command for name in ("zpt_ssh", "zpt_tnetd", "plink"))}


def startingClient():
    """Process number and forwarded port of the client program that is being started; None while there is none."""
    for process, command in helpers().items():
        match = re.search(r"zpt_ssh -no-antispoof.* -L (\d+):", command)
        if match:
            return process, int(match.group(1))
    return None


def noHelpers(what):
    waitFor(lambda: not helpers(), lambda: f"{what}: helpers still run: {helpers()}")
