#!/usr/bin/env python3
"""What ./package makes, without installing it: built twice, the zip, lists and checksums, the SBOM, signatures.

Usage: package_files.py BUILD-FOLDER [TEST ...]
"""

import filecmp
import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "packaging"))
import contents  # noqa: E402

BUILD = Path()
STEP = 2  # seconds, of the coarsest clock that an archive keeps: the zip's
VERSION = contents.project_version()


def run(*command, good=True, **more):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                          **more)
    if good and done.returncode != 0:
        raise AssertionError(f"{command} ends with {done.returncode}: {done.stdout}{done.stderr}")
    return done


def make(folder, *arguments, good=True, **more):
    return run(sys.executable, ROOT / "packaging" / "make_package.py", "--build", BUILD, "--output", folder, *arguments,
               good=good, **more)


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.made = cls.scratch / "made"
        make(cls.made)

    def one(self, ending):
        found = list(self.made.glob(f"*{ending}"))
        self.assertEqual(len(found), 1, f"files that end in {ending}")
        return found[0]

    def test_what_is_made(self):
        self.assertEqual(sorted(path.name for path in self.made.iterdir()), sorted(
            ["SHA256SUMS", *(f"qxterm-{VERSION}{end}" for end in
                             ("-x64.msi", "-x64.zip", "-contents.txt", ".spdx.json"))]))
        run("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=self.made)
        run(sys.executable, ROOT / "tools" / "checks" / "check-version.py", "--build", BUILD, "--package", self.made)

    def test_a_second_run_gives_the_same_bytes(self):
        """At another moment, in another place, under another name and time zone."""
        last = max(path.stat().st_mtime for path in self.made.iterdir())
        while time.time() // STEP == last // STEP:
            time.sleep(0.05)
        again = self.scratch / "elsewhere" / "again"
        make(again, cwd="/", env=dict(os.environ, TZ="Asia/Tokyo", LC_ALL="C", TMPDIR=str(self.scratch)))
        names = sorted(path.name for path in self.made.iterdir())
        self.assertEqual(filecmp.cmpfiles(self.made, again, names, shallow=False)[1:], ([], []))

    def test_another_content_is_another_product(self):
        """Two installers that differ never have the same codes, and never the same as the version before."""
        other = self.scratch / "build"
        shutil.copytree(BUILD, other, ignore=lambda folder, names: [
            name for name in names if name not in (*contents.PROGRAMS, *contents.BESIDE_PROGRAM, contents.ACTIONS)])
        with open(other / "tmspl16.dat", "ab") as file:
            file.write(b"x")
        run(sys.executable, ROOT / "packaging" / "make_package.py", "--build", other, "--output", self.scratch / "other",
            "--only-msi")

        def codes(folder):
            package = next(folder.glob("*.msi"))
            table = run("msiinfo", "export", package, "Property").stdout
            properties = dict(line.split("\t", 1) for line in table.splitlines() if "\t" in line)
            summary = [line for line in run("msiinfo", "suminfo", package).stdout.splitlines() if "UUID" in line]
            return properties["ProductCode"], properties["UpgradeCode"], summary[0]

        here, there = codes(self.made), codes(self.scratch / "other")
        self.assertNotEqual(here[0], there[0], "product codes")
        self.assertEqual(here[1], there[1], "upgrade codes")
        self.assertNotEqual(here[2], there[2], "package codes")

    def test_the_zip_is_what_the_list_says(self):
        listed = {}
        for line in self.one("-contents.txt").read_text().splitlines()[2:]:
            mark, (size, digest, path) = line[0], line[2:].split(None, 2)
            listed[f"qxterm-{VERSION}/{path}"] = (int(size), digest)
            self.assertEqual(mark, "+" if path in ("README.txt", "per-user-settings.cmd") else " ", path)
        with zipfile.ZipFile(self.one(".zip")) as archive:
            found = {name: (len(archive.read(name)), hashlib.sha256(archive.read(name)).hexdigest())
                     for name in archive.namelist()}
            self.assertEqual(found, listed)
            inside = archive.read(f"qxterm-{VERSION}/host/qxterm.ti")
            self.assertIn(b"\r\n", archive.read(f"qxterm-{VERSION}/per-user-settings.cmd"))
        self.assertEqual(inside, (ROOT / "packaging" / "terminfo" / "qxterm.ti").read_bytes())
        for path in ("qxterm.exe", "zpt_ssh.exe", "QXTERM.ttf", "enu_te.chm", "LICENSE.txt", "CHANGELOG.txt",
                     "licences/gcc.txt", "licences/mingw-w64.txt", "licences/font.txt", "manual/profiles.txt",
                     "manual/installing.txt"):
            self.assertIn(f"qxterm-{VERSION}/{path}", found)

    def test_pages_name_each_other_by_their_names_in_the_package(self):
        with zipfile.ZipFile(self.one(".zip")) as archive:
            texts = {name.partition("/")[2]: archive.read(name).decode("utf-8-sig") for name in archive.namelist()
                     if name.endswith("CHANGELOG.txt") or "/manual/" in name}
        links = 0
        for name, text in texts.items():
            folder = name.rpartition("/")[0]
            for link in re.findall(r"\]\(([^()]*)\)", text):
                if "://" not in link:
                    self.assertIn(f"{folder}/{link}".lstrip("/"), texts, f"a link of {name}")
                    links += 1
        self.assertGreater(links, 3)

    def test_the_sbom_tells_all_files_and_libraries(self):
        document = json.loads(self.one(".spdx.json").read_text())
        self.assertEqual(document["spdxVersion"], "SPDX-2.3")
        with zipfile.ZipFile(self.one(".zip")) as archive:
            sums = {name.partition("/")[2]: hashlib.sha1(archive.read(name)).hexdigest() for name in archive.namelist()}
        told = {entry["fileName"].removeprefix("./"): entry["checksums"][0]["checksumValue"]
                for entry in document["files"]}
        self.assertEqual(told, sums)
        # As the standard defines it: the sorted SHA-1 sums in a row, summed once more.
        code = hashlib.sha1("".join(sorted(sums.values())).encode()).hexdigest()
        product = document["packages"][0]
        self.assertEqual(product["packageVerificationCode"]["packageVerificationCodeValue"], code)
        self.assertEqual((product["versionInfo"], product["licenseDeclared"]), (VERSION, "MIT"))
        identifiers = [entry["SPDXID"] for kind in ("packages", "files") for entry in document[kind]]
        self.assertEqual(len(identifiers), len(set(identifiers)), "identifiers that occur twice")
        for relation in document["relationships"]:
            for end in (relation["spdxElementId"], relation["relatedSpdxElement"]):
                self.assertIn(end, [*identifiers, "SPDXRef-DOCUMENT"])
        for package in document["packages"][1:]:
            self.assertRegex(package["versionInfo"], r"^\d")

    # --- signatures ------------------------------------------------------------------------------------------------------

    def certificate(self):
        folder = self.scratch / "certificate"
        if not folder.exists():
            folder.mkdir()
            run("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "9000", "-subj", "/CN=qxterm test",
                "-addext", "extendedKeyUsage=codeSigning", "-keyout", "key.pem", "-out", "certificate.pem", cwd=folder)
            (folder / "password").write_text("open sesame\n")
            run("openssl", "pkcs12", "-export", "-in", "certificate.pem", "-inkey", "key.pem", "-out", "both.p12",
                "-passout", "file:password", cwd=folder)
        return folder

    def verified(self, path):
        done = run("osslsigncode", "verify", "-CAfile", self.certificate() / "certificate.pem", "-in", path, good=False)
        return done.returncode == 0 and "Succeeded" in done.stdout + done.stderr

    def signed(self, name, *arguments):
        folder = self.scratch / name
        make(folder, *arguments)
        with zipfile.ZipFile(next(folder.glob("*.zip"))) as archive:
            archive.extractall(folder / "files")
        inside = next((folder / "files").iterdir())
        for program in contents.PROGRAMS:
            self.assertTrue(self.verified(inside / program), f"{program} is signed")
        self.assertTrue(self.verified(next(folder.glob("*.msi"))), "the installer is signed")
        return folder, inside

    def test_signed_with_a_pem_certificate(self):
        where = self.certificate()
        folder, inside = self.signed("signed", "--sign", where / "certificate.pem", "--key", where / "key.pem")
        again, _ = self.signed("signed-again", "--sign", where / "certificate.pem", "--key", where / "key.pem")
        self.assertTrue(filecmp.cmp(next(folder.glob("*.msi")), next(again.glob("*.msi")), shallow=False))
        self.assertFalse(self.verified(next(self.made.glob("*.msi"))), "an unsigned installer is told from a signed one")
        program = inside / "qxterm.exe"
        data = bytearray(program.read_bytes())
        data[len(data) // 2] ^= 1
        program.write_bytes(data)
        self.assertFalse(self.verified(program), "a changed program is found")
        # What the installer installs is signed as well.
        unpacked = folder / "unpacked"
        unpacked.mkdir()
        run("msiextract", "-C", unpacked, next(folder.glob("*.msi")))
        self.assertTrue(self.verified(next(unpacked.rglob("zpt_ssh.exe"))), "programs in the installer are signed")

    def test_signed_with_pkcs12_and_a_password(self):
        where = self.certificate()
        self.signed("signed-12", "--sign", where / "both.p12", "--password-file", where / "password")

    def test_what_cannot_be_signed_is_told(self):
        where = self.certificate()
        (where / "wrong").write_text("let me in\n")
        for arguments, reason in ((("--sign", where / "gone.pem"), "there is no file"),
                                  (("--sign", where / "both.p12", "--password-file", where / "wrong"), "could not sign"),
                                  (("--key", where / "key.pem"), "goes with --sign")):
            done = make(self.scratch / "refused", *arguments, good=False)
            self.assertNotEqual(done.returncode, 0, arguments)
            self.assertIn(reason, done.stderr)
            self.assertEqual(list((self.scratch / "refused").glob("*.msi")), [], "no package is made")


class Command(unittest.TestCase):
    def test_help_and_wrong_arguments(self):
        self.assertIn("--sign CERTIFICATE", run(ROOT / "package", "--help").stdout)
        done = run(ROOT / "package", "--wrong", good=False)
        self.assertEqual((done.returncode, "unknown argument --wrong" in done.stderr), (2, True))


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    unittest.main()
