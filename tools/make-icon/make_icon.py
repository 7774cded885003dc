#!/usr/bin/env python3
"""Draws resources/qxterm.ico: a screen with a prompt and a cursor, in the sizes that Windows asks for.

Usage: make_icon.py [FILE]     (default: resources/qxterm.ico)

Each size is drawn for itself from the same shapes, so that the small ones keep whole strokes. Two runs give the
same bytes.
"""

import struct
import sys
import zlib
from pathlib import Path

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
SAMPLES = 4  # per pixel and axis

FRAME = (70, 84, 104)
FRAME_LIGHT = (120, 136, 158)
SCREEN_TOP = (22, 38, 62)
SCREEN_BOTTOM = (8, 16, 32)
PROMPT = (96, 230, 150)
CURSOR = (240, 246, 250)
STAND = (88, 102, 122)


def in_round_rect(x, y, box, radius):
    left, top, right, bottom = box
    if not (left <= x < right and top <= y < bottom):
        return False
    dx = max(left + radius - x, x - (right - radius), 0)
    dy = max(top + radius - y, y - (bottom - radius), 0)
    return dx * dx + dy * dy <= radius * radius


def near_segment(x, y, a, b, half_width):
    (ax, ay), (bx, by) = a, b
    length = (bx - ax) ** 2 + (by - ay) ** 2
    t = max(0.0, min(1.0, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / length))
    dx, dy = x - (ax + t * (bx - ax)), y - (ay + t * (by - ay))
    return dx * dx + dy * dy <= half_width * half_width


def mix(a, b, share):
    return tuple(round(p + (q - p) * share) for p, q in zip(a, b))


def colour_at(x, y, stroke):
    """Colour of a point of the unit square, or None outside of the drawing; stroke: half the prompt's width."""
    if near_segment(x, y, (0.27, 0.34), (0.44, 0.485), stroke) or near_segment(x, y, (0.44, 0.485), (0.27, 0.63), stroke):
        return PROMPT
    if 0.52 <= x < 0.74 and abs(y - 0.63) <= stroke:
        return CURSOR
    if in_round_rect(x, y, (0.12, 0.17, 0.88, 0.75), 0.05):
        return mix(SCREEN_TOP, SCREEN_BOTTOM, (y - 0.17) / 0.58)
    if in_round_rect(x, y, (0.03, 0.08, 0.97, 0.84), 0.11):
        return mix(FRAME_LIGHT, FRAME, (y - 0.08) / 0.76)
    if in_round_rect(x, y, (0.26, 0.87, 0.74, 0.95), 0.03):
        return STAND
    return None


def draw(size):
    """Rows of (red, green, blue, alpha), from the top."""
    stroke = max(0.045, 0.85 / size)
    rows = []
    for row in range(size):
        line = []
        for column in range(size):
            points = [colour_at((column + (i + 0.5) / SAMPLES) / size, (row + (j + 0.5) / SAMPLES) / size, stroke)
                      for j in range(SAMPLES) for i in range(SAMPLES)]
            seen = [p for p in points if p is not None]
            if not seen:
                line.append((0, 0, 0, 0))
                continue
            mean = tuple(round(sum(p[k] for p in seen) / len(seen)) for k in range(3))
            line.append(mean + (round(255 * len(seen) / len(points)),))
        rows.append(line)
    return rows


def as_bitmap(rows):
    """A device-independent bitmap with its transparency mask, as icons hold it."""
    size = len(rows)
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = b"".join(bytes((b, g, r, a)) for line in reversed(rows) for r, g, b, a in line)
    mask_stride = (size + 31) // 32 * 4
    mask = b""
    for line in reversed(rows):
        bits = 0
        for r, g, b, a in line:
            bits = bits << 1 | (a == 0)
        mask += (bits << (mask_stride * 8 - size)).to_bytes(mask_stride, "big")
    return header + pixels + mask


def as_png(rows):
    size = len(rows)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    raw = b"".join(b"\0" + b"".join(bytes(pixel) for pixel in line) for line in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def main():
    default = Path(__file__).resolve().parents[2] / "resources" / "qxterm.ico"
    target = Path(sys.argv[1]) if len(sys.argv) > 1 else default
    images = [as_png(draw(size)) if size == 256 else as_bitmap(draw(size)) for size in SIZES]
    offset = 6 + 16 * len(SIZES)
    entries = b""
    for size, image in zip(SIZES, images):
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    target.write_bytes(struct.pack("<HHH", 0, 1, len(SIZES)) + entries + b"".join(images))


if __name__ == "__main__":
    main()
