"""Codes that Windows Installer knows things by. They follow from names and contents: two builds give the same ones."""

import hashlib
import uuid

# What makes two packages versions of one product. It never changes.
UPGRADE_CODE = "{7C6F3A5E-2D0B-5E5C-9A43-5B1D8E0C7F21}"
SPACE = uuid.UUID("0f5b7a52-6d3c-5f0e-8f6b-2f1a4c9d7e10")


def code(text):
    return "{" + str(uuid.uuid5(SPACE, text)).upper() + "}"


def component(path):
    """The same in every version: so files stay where they are counted for several versions and products."""
    return code(f"component {path.lower()}")


def digest(parts):
    """A digest of texts and bytes, each with its length."""
    total = hashlib.sha256()
    for part in parts:
        data = part if isinstance(part, bytes) else str(part).encode()
        total.update(str(len(data)).encode() + b":" + data)
    return total.hexdigest()
