"""What the checks share: where the project stands, which files belong to it, and patterns for their names."""

import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SOURCE = (".cpp", ".h")


def project_files(root=ROOT):
    """Paths of the project's files, relative to `root`: what git knows or would add, without git all of them."""
    try:
        listed = subprocess.run(
            ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
            cwd=root, capture_output=True, check=True).stdout.decode().split("\0")
        paths = [p for p in listed if p]
    except (OSError, subprocess.CalledProcessError):
        paths = []
        for folder, folders, names in os.walk(root):
            folders[:] = [f for f in folders if f not in (".git", "build", "__pycache__")]
            paths += [os.path.relpath(os.path.join(folder, n), root) for n in names]
    return sorted(p for p in paths if os.path.isfile(os.path.join(root, p)))


def source_files(root=ROOT, folder=""):
    return [p for p in project_files(root) if p.endswith(SOURCE) and p.startswith(folder)]


def read_lines(path, root=ROOT):
    """The lines of a text file, or None for a binary one."""
    with open(os.path.join(root, path), "rb") as file:
        data = file.read()
    if b"\0" in data:
        return None
    return data.decode("utf-8", "replace").splitlines()


def compile_pattern(pattern):
    """A path pattern as a regular expression: `**` is any text, `*` any text without "/", {a,b} either."""
    out = ""
    for piece in re.findall(r"\*\*|\*|\{[^}]*\}|.", pattern):
        if piece == "**":
            out += ".*"
        elif piece == "*":
            out += "[^/]*"
        elif piece.startswith("{"):
            out += "(?:" + "|".join(re.escape(p) for p in piece[1:-1].split(",")) + ")"
        else:
            out += re.escape(piece)
    return re.compile(out + r"\Z")


def without_comments(lines):
    """The lines with comments blanked out, so that a check does not trip over what is only talked about."""
    inside = False
    for line in lines:
        kept = ""
        n = 0
        while n < len(line):
            if inside:
                end = line.find("*/", n)
                inside = end < 0
                n = len(line) if inside else end + 2
            elif line.startswith("//", n):
                break
            elif line.startswith("/*", n):
                inside = True
                n += 2
            else:
                kept += line[n]
                n += 1
        yield kept


def report(problems, checked, what="files"):
    """Prints the problems and returns the exit status. A check that has looked at nothing has found nothing out."""
    if checked == 0 and not problems:
        problems = [f"there are no {what} to look at"]
    for problem in problems:
        print(problem)
    if problems:
        print(f"{len(problems)} found in {checked} {what}")
    else:
        print(f"{checked} {what} in order")
    return 1 if problems else 0


def main(check):
    """Runs `check(root)`, which returns (problems, number of files), on the project or the folder named."""
    root = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else ROOT
    sys.exit(report(*check(root)))
