#!/usr/bin/env python3
"""The version stands in one place, project(qxterm VERSION ...) in CMakeLists.txt, and whatever else names it agrees.

- resources/ take it from the build: no resource script or manifest has a version of its own, and the manifest has the
  program's title;
- the help's first page names it;
- the change log's newest release is this version, or an older one below a heading "Unreleased" that has entries;
- About shows a text of its own; where that text is quoted it is the same.

With folders: the built programs' version resources and manifest, and the installer's, too.

Usage: check-version.py [--build FOLDER] [--package FOLDER] [PROJECT]
"""

import argparse
import os
import re
import subprocess
import sys
from pathlib import Path

import house

sys.path.insert(0, str(Path(house.ROOT) / "packaging"))
import version_resource  # noqa: E402

PROGRAMS = ("qxterm.exe", "qxterm-start.exe", "zpt_ssh.exe", "zpt_tnetd.exe", "setup-actions.dll")
ABOUT = "src/app/dialogs/splash.cpp"
QUOTES_ABOUT = ("CHANGELOG.md", "resources/help/welcome.htm")


def text_of(root, path):
    full = os.path.join(root, path)
    return "\n".join(house.read_lines(path, root) or []) if os.path.isfile(full) else ""


def numbers(version):
    return tuple(int(part) for part in version.split("."))


def project_version(root):
    found = re.search(r"^project\(qxterm VERSION (\d+\.\d+\.\d+)\b", text_of(root, "CMakeLists.txt"), re.MULTILINE)
    return found.group(1) if found else None


def check_resources(root):
    for path in house.project_files(root):
        if not re.match(r"resources/[^/]+\.(rc|manifest(\.in)?)$", path):
            continue
        for n, line in enumerate(house.read_lines(path, root), 1):
            own = re.search(r'(?:FILEVERSION|PRODUCTVERSION|"FileVersion",|"ProductVersion",)\s*"?\d', line)
            if "Zentora.qxterm" in line and "@QXTERM_VERSION_TEXT@" not in line:
                own = True
            if own:
                yield f"{path}:{n}: has a version of its own; the build puts it in"
            if "<description>" in line and "@QXTERM_TITLE@" not in line:
                yield f"{path}:{n}: has a title of its own; the build puts it in"


def check_help(root, version):
    path = "resources/help/welcome.htm"
    named = re.findall(r"\bqxterm (\d+\.\d+\.\d+)\b", text_of(root, path))
    if named != [version]:
        yield f"{path}:1: names the versions {named}; it is to say qxterm {version}, once"


def check_change_log(root, version):
    path = "CHANGELOG.md"
    headings = re.findall(r"^## +(.*?) *$", text_of(root, path), re.MULTILINE)
    releases = [re.match(r"\d+\.\d+\.\d+", heading) for heading in headings]
    newest = next((release.group(0) for release in releases if release), None)
    if newest is None:
        yield f"{path}:1: has no heading with a version"
    elif headings[0] == "Unreleased" and re.search(r"^## +Unreleased\s+(?!##? )\S", text_of(root, path), re.MULTILINE):
        if numbers(newest) >= numbers(version):
            yield (f"{path}:1: {newest} is released, and more has changed since: the version {version} in CMakeLists.txt has "
                   "to be a later one")
    elif newest != version:
        yield f"{path}:1: the newest release is {newest}, the version in CMakeLists.txt {version}"


def check_about(root):
    found = re.search(r'formatMsg\("(Version [^"]+)", ([^)]+)\)', text_of(root, ABOUT))
    if not found:
        yield f"{ABOUT}:1: the text of About is not found"
        return
    label = found.group(1)
    for number, part in enumerate(re.findall(r'"([^"]*)"', found.group(2)), 1):
        label = label.replace(f"%{number}", part)
    for path in QUOTES_ABOUT:
        for quoted in re.findall(r"Version \d+\.\d+\.[A-Z]+\.\d+", text_of(root, path)):
            if quoted != label:
                yield f"{path}:1: quotes About as {quoted}; it says {label}"


def check_build(folder, version, title):
    for name in PROGRAMS:
        data = (Path(folder) / name).read_bytes()
        found = version_resource.file_version(data)
        if found != f"{version}.0":
            yield f"{folder}/{name}: its version resource says {found}, not {version}.0"
        # The resource's texts are in UTF-16.
        if f"{version}.0".encode("utf-16-le") not in data:
            yield f"{folder}/{name}: its version resource has no text {version}.0"
    program = (Path(folder) / "qxterm.exe").read_bytes()
    for wanted in (f'name="Zentora.qxterm" version="{version}.0"', f"<description>{title}</description>"):
        if wanted.encode() not in program:
            yield f"{folder}/qxterm.exe: its manifest lacks {wanted}"


def check_package(folder, version, title):
    for package in Path(folder).glob("*.msi"):
        done = subprocess.run(["msiinfo", "export", str(package), "Property"], capture_output=True, text=True)
        properties = dict(line.split("\t", 1) for line in done.stdout.splitlines() if "\t" in line)
        for name, wanted in (("ProductVersion", version), ("ProductName", title)):
            if properties.get(name) != wanted:
                yield f"{package}: {name} is {properties.get(name)}, not {wanted}"
        if package.name != f"qxterm-{version}-x64.msi":
            yield f"{package}: is to be named qxterm-{version}-x64.msi"
        return
    yield f"{folder}: there is no installer"


def check(root, build=None, package=None):
    version = project_version(root)
    if version is None:
        return ["CMakeLists.txt:1: project(qxterm VERSION ...) is not found"], 1
    problems = [*check_resources(root), *check_help(root, version), *check_change_log(root, version), *check_about(root)]
    title = re.search(r'#define QXTERM_PROGRAM_TITLE "(.*)"', text_of(root, "src/platform/program_title.h"))
    if build:
        problems += check_build(build, version, title.group(1))
    if package:
        problems += check_package(package, version, title.group(1))
    return problems, 5 + bool(build) * len(PROGRAMS) + bool(package)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build")
    parser.add_argument("--package")
    parser.add_argument("project", nargs="?", default=house.ROOT)
    wanted = parser.parse_args()
    sys.exit(house.report(*check(os.path.abspath(wanted.project), wanted.build, wanted.package)))


if __name__ == "__main__":
    main()
