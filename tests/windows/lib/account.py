"""A user of this machine to log in as."""

import contextlib
import os
import secrets
import subprocess
import tempfile
from pathlib import Path

from program import ROOT, Skip


@contextlib.contextmanager
def testUser(furnish=lambda home: None):
    """A user who may log in, with the terminal's description; gone afterwards. Yields (name, password, home)."""
    if os.getuid() != 0:
        raise Skip("making a user to log in as needs root")
    name, word = f"qxt{os.getpid() % 100000}", secrets.token_hex(12)
    with tempfile.TemporaryDirectory(prefix="qxterm-home-") as folder:
        home = Path(folder)
        subprocess.run(["useradd", "-M", "-d", folder, "-s", "/bin/bash", name], check=True)
        try:
            subprocess.run(["chpasswd"], input=f"{name}:{word}\n", text=True, check=True)
            description = ROOT / "packaging" / "terminfo" / "qxterm.ti"
            subprocess.run(["tic", "-x", "-o", home / ".terminfo", description], check=True)
            (home / ".bash_profile").write_text("export PS1='ready> ' LC_ALL=C HISTFILE= LESSHISTFILE=-\n")
            (home / ".hushlogin").touch()
            furnish(home)
            subprocess.run(["chown", "-R", name, folder], check=True)
            yield name, word, home
        finally:
            # The shell may still be on its way out.
            subprocess.run(["userdel", "-f", name], check=True, stderr=subprocess.DEVNULL)
