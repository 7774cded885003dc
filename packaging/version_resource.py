"""The version that a program for Windows carries in its resources."""

import struct

SIGNATURE = struct.pack("<I", 0xFEEF04BD)
# Behind the signature and the version of the structure: the file's version and the product's, two numbers in each word.
PLACE = len(SIGNATURE) + 4


def find(data):
    at = data.find(SIGNATURE)
    return at + PLACE if at >= 0 else None


def file_version(data):
    """ "1.2.3.0", or None for a file without the resource."""
    at = find(data)
    if at is None:
        return None
    high, low = struct.unpack_from("<II", data, at)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"


def with_version(data, version):
    """The same program with another version, for tests of upgrades."""
    parts = [int(part) for part in version.split(".")] + [0] * 4
    words = struct.pack("<II", parts[0] << 16 | parts[1], parts[2] << 16 | parts[3])
    at = find(data)
    return data[:at] + words + words + data[at + 16:]
