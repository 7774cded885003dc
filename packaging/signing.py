"""Signs programs and installer, with osslsigncode."""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

import contents


def add_arguments(parser):
    parser.add_argument("--sign", metavar="CERTIFICATE", type=Path,
                        help="sign programs and installer with this certificate: PEM, with the chain behind it if there "
                             "is one, or PKCS #12 (.p12, .pfx)")
    parser.add_argument("--key", metavar="FILE", type=Path,
                        help="the private key of a PEM certificate; without it the key stands in the certificate's file")
    parser.add_argument("--password-file", metavar="FILE", type=Path, help="the first line of this file opens the key")
    parser.add_argument("--timestamp", metavar="URL",
                        help="ask this time-stamp server (RFC 3161) to witness the moment: the signature then outlives the "
                             "certificate. It needs the network")


class Signer:
    def __init__(self, wanted, epoch):
        self.certificate, self.key, self.password, self.timestamp = (wanted.sign, wanted.key, wanted.password_file,
                                                                     wanted.timestamp)
        self.epoch = epoch
        for path in (self.certificate, self.key, self.password):
            if path is not None and not path.is_file():
                raise SystemExit(f"package: there is no file {path}")
        if shutil.which("osslsigncode") is None:
            raise SystemExit("package: osslsigncode is missing: tools/setup/install.sh package")

    @classmethod
    def of(cls, wanted, epoch):
        if wanted.sign is None:
            for name, value in (("--key", wanted.key), ("--password-file", wanted.password_file),
                                ("--timestamp", wanted.timestamp)):
                if value is not None:
                    raise SystemExit(f"package: {name} goes with --sign")
            return None
        return cls(wanted, epoch)

    def sign(self, path, title):
        """Signs the file in its place."""
        command = ["osslsigncode", "sign"]
        if self.certificate.suffix.lower() in (".p12", ".pfx"):
            command += ["-pkcs12", self.certificate]
        else:
            command += ["-certs", self.certificate, "-key", self.key or self.certificate]
        if self.password is not None:
            # Never in the command line, which others can read.
            command += ["-readpass", self.password]
        if self.timestamp is not None:
            command += ["-ts", self.timestamp]
        else:
            # The moment of the commit: so signing twice gives the same bytes, too.
            command += ["-time", str(self.epoch)]
        made = path.with_name(path.name + ".signed")
        made.unlink(missing_ok=True)
        command += ["-h", "sha256", "-n", title, "-in", path, "-out", made]
        done = subprocess.run([str(part) for part in command], capture_output=True, text=True, stdin=subprocess.DEVNULL)
        if done.returncode != 0 or not made.is_file():
            made.unlink(missing_ok=True)
            raise SystemExit(f"package: osslsigncode could not sign {path.name}: {(done.stdout + done.stderr).strip()}")
        os.replace(made, path)

    def signed_programs(self, build):
        """A folder with what the package takes from the build, signed; the build stays as it is."""
        folder = Path(tempfile.mkdtemp(prefix="qxterm-signed-"))
        for name in (*contents.PROGRAMS, contents.ACTIONS, *contents.BESIDE_PROGRAM):
            shutil.copyfile(build / name, folder / name)
        for name in (*contents.PROGRAMS, contents.ACTIONS):
            self.sign(folder / name, contents.title())
        return folder
