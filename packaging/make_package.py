#!/usr/bin/env python3
"""Makes what is handed over from a build for Windows: installer, zip, checksums, list of contents, SBOM.

`./package` calls it; see ./package --help. Two runs over the same build give the same bytes.
"""

import argparse
import hashlib
import os
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
import contents  # noqa: E402
import msi  # noqa: E402
import sbom  # noqa: E402
import signing  # noqa: E402

# Where there is no history to take a moment from: 2020-01-01.
NO_HISTORY = 1577836800


def moment():
    """Seconds since 1970 that all time stamps have: those of the last commit."""
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    try:
        done = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=contents.ROOT, capture_output=True, text=True)
    except FileNotFoundError:
        return NO_HISTORY
    return int(done.stdout) if done.returncode == 0 and done.stdout.strip() else NO_HISTORY


def make_zip(path, items, folder, epoch):
    import time
    stamp = time.gmtime(epoch)[:6]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for item in items:
            entry = zipfile.ZipInfo(f"{folder}/{item.path}", stamp)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0
            archive.writestr(entry, item.data)


def contents_list(name, installed, zipped):
    lines = [f"Contents of {name}: bytes, SHA-256, file. \"+\" stands before what only the zip has.", ""]
    inside = {item.path for item in installed}
    for item in zipped:
        mark = " " if item.path in inside else "+"
        lines.append(f"{mark} {len(item.data):>9}  {hashlib.sha256(item.data).hexdigest()}  {item.path}")
    return "\r\n".join(lines) + "\r\n"


def arguments():
    parser = argparse.ArgumentParser(prog="package", description=__doc__)
    parser.add_argument("--build", type=Path, default=contents.ROOT / "build" / "windows")
    parser.add_argument("--output", type=Path, default=contents.ROOT / "build" / "package")
    parser.add_argument("--version", help="another version than the project's, for tests of upgrades")
    parser.add_argument("--only-msi", action="store_true", help="for tests of upgrades")
    signing.add_arguments(parser)
    return parser.parse_args()


def main():
    wanted = arguments()
    version = wanted.version or contents.project_version()
    title = contents.title()
    epoch = moment()
    signer = signing.Signer.of(wanted, epoch)
    build = wanted.build
    wanted.output.mkdir(parents=True, exist_ok=True)
    names = {kind: wanted.output / f"qxterm-{version}{end}" for kind, end in
             (("msi", "-x64.msi"), ("zip", "-x64.zip"), ("contents", "-contents.txt"), ("sbom", ".spdx.json"))}
    # Nothing of an earlier version stands beside the new files' checksums.
    for old in wanted.output.iterdir():
        if old.name.startswith("qxterm-") or old.name == "SHA256SUMS":
            old.unlink()

    signed = signer.signed_programs(build) if signer else None
    source = signed or build
    try:
        installed = contents.installed(source)
        zipped = contents.zipped(source)
        actions = (source / contents.ACTIONS).read_bytes()
    finally:
        if signed:
            shutil.rmtree(signed)
    icon = (contents.ROOT / "resources" / "qxterm.ico").read_bytes()
    msi.make(names["msi"], installed, actions, icon, version, title, epoch)
    if signer:
        signer.sign(names["msi"], title)
    if wanted.only_msi:
        return
    make_zip(names["zip"], zipped, f"qxterm-{version}", epoch)
    names["contents"].write_text(contents_list(f"qxterm {version}", installed, zipped), newline="")
    names["sbom"].write_text(sbom.document(zipped, version, title, epoch))
    sums = [f"{hashlib.sha256(path.read_bytes()).hexdigest()}  {path.name}\n" for path in sorted(names.values())]
    (wanted.output / "SHA256SUMS").write_text("".join(sums))
    for path in (*sorted(names.values()), wanted.output / "SHA256SUMS"):
        print(f"{path.stat().st_size:>9}  {path}")


if __name__ == "__main__":
    main()
