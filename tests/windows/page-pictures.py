"""Takes the picture of docs/host-screens.md anew, from the example below it:

    QXTERM_BUILD=$PWD/build/windows tools/setup/with-display.sh tools/setup/with-prefix.sh \\
        python3 tests/windows/page-pictures.py
"""

import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from peers import Peer  # noqa: E402
from program import ROOT, Program, netProfile, writeProfiles  # noqa: E402

PAGE, HEADING, PICTURE = ROOT / "docs/host-screens.md", "## All of it together", ROOT / "docs/images/form.png"
LAST = "3 calls waiting"  # what the example writes last
ESCAPES = {"e": "\x1b", "r": "\r", "n": "\n", "b": "\b", "\\": "\\", '"': '"'}


def plain(text):
    """The bytes of what stands between quotation marks in a scenario."""
    return re.sub(r"\\(?:x([0-9a-f]{2})|(.))", lambda m: chr(int(m[1], 16)) if m[1] else ESCAPES[m[2]], text)


def example():
    block = PAGE.read_text().split(HEADING, 1)[1].split("```scenario\n", 1)[1].split("```", 1)[0]
    lines = [line for line in block.splitlines() if line.startswith("host ")]
    return "".join(plain(text) for line in lines for text in re.findall(r'"((?:[^"\\]|\\.)*)"', line)).encode("latin-1")


def main():
    with Peer(lambda connection: connection.sendall(example())) as peer:
        writeProfiles({"demo": netProfile(peer.port)})
        with Program("demo") as program:
            program.waitText(LAST)
            program.waitForm("frmConn", loaded=False)
            program.focus()
            taken = program.picture("form")
    # Few colours: a palette makes the file a third as large.
    subprocess.run(["convert", str(taken), "-trim", "+repage", "-strip", "-type", "Palette", str(PICTURE)], check=True)
    print(PICTURE)


main()
