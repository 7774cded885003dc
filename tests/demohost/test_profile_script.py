"""The profile script for hosts: what it sets in an interactive shell, and that it leaves everything else alone.

tests/windows/host-setup.py tries it in a login, in the window.
"""

import fcntl
import os
import pty
import shutil
import struct
import subprocess
import termios
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "packaging" / "profile.d" / "qxterm.sh"
SHELLS = [["bash", "--norc", "--noprofile"], ["bash", "--posix", "--norc", "--noprofile"]]
SHELLS += [["dash"]] if shutil.which("dash") else []
SHOWN = "LANG", "LC_TIME", "LC_ALL", "COLORTERM"


def environment(**more):
    return {"PATH": os.environ["PATH"], "TERM": "qxterm", "LANG": "C.UTF-8", "PS1": "", **more}


class ProfileScript(unittest.TestCase):
    def interactive(self, shell, commands, size=(0, 0), **more):
        """What the commands print in a shell on a terminal, after the script."""
        child, terminal = pty.fork()
        if child == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", *size, 0, 0))
            os.execvpe(shell[0], [*shell, "-i", "-c", f". '{SCRIPT}'; echo begin; {commands}"], environment(**more))
        output = b""
        try:
            while block := os.read(terminal, 4096):
                output += block
        except OSError:
            pass  # the shell has ended
        os.close(terminal)
        self.assertEqual(os.waitpid(child, 0)[1], 0, output)
        before, _, after = output.decode().replace("\r\n", "\n").partition("begin\n")
        self.assertEqual(before, "", shell)
        return after.splitlines()

    def variables(self, shell, **more):
        echo = "; ".join(f'echo "${{{name}-unset}}"' for name in SHOWN)
        return dict(zip(SHOWN, self.interactive(shell, echo, **more)))

    def testItCanBeRead(self):
        for shell in (["sh"], *SHELLS):
            done = subprocess.run([*shell, "-n", SCRIPT], capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""), shell)

    def testTheLocaleHasOneByteACharacter(self):
        for shell in SHELLS:
            self.assertEqual(self.variables(shell, LC_TIME="C.UTF-8"),
                             {"LANG": "C", "LC_TIME": "C", "LC_ALL": "unset", "COLORTERM": "8"})
            self.assertEqual(self.variables(shell, LC_ALL="C.UTF-8", LANG="POSIX", COLORTERM="yes"),
                             {"LANG": "POSIX", "LC_TIME": "unset", "LC_ALL": "C", "COLORTERM": "yes"})

    def testSizeAndEraseCharacter(self):
        look = "stty size; stty -a | tr ';' '\\n' | grep -w erase"
        for shell in SHELLS:
            self.assertEqual(self.interactive(shell, look), ["24 80", " erase = ^H"])
            self.assertEqual(self.interactive(shell, look, size=(40, 100)), ["40 100", " erase = ^H"])

    def testColoursOfLs(self):
        for shell in SHELLS:
            colours = self.interactive(shell, 'echo "$LS_COLORS"')[0]
            # The last entry of a kind counts.
            self.assertEqual([one for one in colours.split(":") if one.startswith("di=")][-1], "di=01;33")
            self.assertIn("*.tar=", colours)
            self.assertEqual(self.interactive(shell, 'echo "$LS_COLORS"', LS_COLORS="di=01;35"), ["di=01;35"])

    def testNothingIsLeftBehind(self):
        for shell in SHELLS:
            self.assertEqual(self.interactive(shell, "set | grep -c '^qxterm_' || :"), ["0"])

    def testOtherTerminalsAndScriptsAreLeftAlone(self):
        show = "stty size; stty -a | tr ';' '\\n' | grep -w erase; echo $LANG ${COLORTERM-unset} ${LS_COLORS-unset}"
        untouched = ["0 0", " erase = ^?", "C.UTF-8 unset unset"]
        for shell in SHELLS:
            self.assertEqual(self.interactive(shell, show, TERM="vt100"), untouched)
            # A shell that is not interactive, strict, and on no terminal.
            done = subprocess.run([*shell, "-c", f"set -eu; . '{SCRIPT}'; echo $LANG ${{COLORTERM-unset}}"],
                                  env=environment(), capture_output=True, text=True, stdin=subprocess.DEVNULL)
            self.assertEqual((done.stdout, done.stderr), ("C.UTF-8 unset\n", ""), shell)


if __name__ == "__main__":
    unittest.main()
