#!/usr/bin/python3
"""Draws the splash picture resources/tmspl16.dat, an uncompressed 24-bit Windows bitmap.

    make_splash.py [--output FILE] [--png FILE]

Needs python3-pil and fonts-liberation2. The same versions of both give the same bytes. --png writes the picture
once more, as PNG, to look at.
"""

import argparse
import math
import pathlib

from PIL import Image, ImageDraw, ImageFont

DEFAULT_OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "resources" / "tmspl16.dat"
FONTS = pathlib.Path("/usr/share/fonts/truetype/liberation2")

# All lengths are pixels of the finished picture. Drawn SCALE times as large and averaged down: smooth edges.
WIDTH, HEIGHT = 480, 320
SCALE = 8

# On the band below this line the program writes version and notice, in (0, 64, 128) from (55, 283) and (55, 301),
# and puts an OK button at (390, 275): the band stays light and empty there.
BAND_TOP = 264

NIGHT = (9, 24, 54)
DUSK = (22, 62, 112)
RING = (120, 190, 255)
WHITE = (255, 255, 255)
SOFT_BLUE = (164, 205, 242)
BAND_LIGHT = (246, 250, 254)
BAND_SHADE = (222, 234, 246)
ACCENT = (0, 176, 214)

CASE = (214, 226, 240)
CASE_EDGE = (148, 170, 198)
SCREEN = (4, 10, 24)
LINE = (92, 140, 190)
GREEN, YELLOW, RED, CYAN = (72, 214, 120), (240, 206, 84), (236, 96, 92), (84, 208, 232)
GREY = (150, 172, 198)

HEADSET = (228, 238, 248)
HEADSET_SHADE = (168, 190, 214)
CUSHION = (38, 84, 140)


def scaled(*lengths):
    return tuple(round(length * SCALE) for length in lengths)


def mix(a, b, share):
    return tuple(round(x + (y - x) * share) for x, y in zip(a, b))


class Canvas:
    """Drawing in pixels of the finished picture on the large one."""

    def __init__(self, width, height):
        self.image = Image.new("RGB", scaled(width, height))
        self.width, self.height = width, height
        self.draw = ImageDraw.Draw(self.image)

    def box(self, left, top, right, bottom, colour, radius=0.0):
        # Pillow counts the last pixel in.
        corners = scaled(left, top) + tuple(edge - 1 for edge in scaled(right, bottom))
        self.draw.rounded_rectangle(corners, round(radius * SCALE), fill=colour)

    def disc(self, x, y, radius, colour):
        self.draw.ellipse(scaled(x - radius, y - radius, x + radius, y + radius), fill=colour)

    def stroke(self, points, thickness, colour):
        """A line through the points with round ends and joints."""
        self.draw.line([scaled(*point) for point in points], fill=colour, width=round(thickness * SCALE))
        for x, y in points:
            self.disc(x, y, thickness / 2, colour)

    def text(self, x, baseline, text, face, size, colour):
        font = ImageFont.truetype(str(FONTS / face), size * SCALE)
        self.draw.text(scaled(x, baseline), text, font=font, fill=colour, anchor="ls")
        return font.getlength(text) / SCALE

    def blend(self, colour, strength, paint):
        """Lets `paint` draw a mask in white, and mixes the colour in where it did."""
        mask = Image.new("L", self.image.size)
        paint(ImageDraw.Draw(mask))
        mask = mask.point(lambda value: round(value * strength))
        self.image.paste(Image.new("RGB", self.image.size, colour), mask=mask)

    def finished(self):
        return self.image.resize((self.width, self.height), Image.Resampling.BOX)


def arc(x, y, radiusX, radiusY, fromDegrees, toDegrees, steps=90):
    """Points of an arc; 0 degrees point right, 90 down."""
    angles = (math.radians(fromDegrees + (toDegrees - fromDegrees) * n / steps) for n in range(steps + 1))
    return [(x + radiusX * math.cos(angle), y + radiusY * math.sin(angle)) for angle in angles]


def curve(start, control, end, steps=60):
    """Points of a quadratic curve."""
    points = []
    for n in range(steps + 1):
        t = n / steps
        weights = ((1 - t) ** 2, 2 * t * (1 - t), t**2)
        points.append(tuple(sum(w * p[i] for w, p in zip(weights, (start, control, end))) for i in (0, 1)))
    return points


def ground(canvas):
    rows = BAND_TOP * SCALE
    for row in range(rows):
        canvas.draw.line([(0, row), (WIDTH * SCALE, row)], fill=mix(NIGHT, DUSK, (row / rows) ** 1.4))

    def rings(mask):
        for radius in range(120, 520, 44):
            box = scaled(358 - radius, 142 - radius, 358 + radius, 142 + radius)
            mask.ellipse(box, outline=255, width=round(1.2 * SCALE))

    canvas.blend(RING, 0.085, rings)


def band(canvas):
    top, bottom = BAND_TOP * SCALE, HEIGHT * SCALE
    for row in range(top, bottom):
        shade = mix(BAND_LIGHT, BAND_SHADE, (row - top) / (bottom - top))
        canvas.draw.line([(0, row), (WIDTH * SCALE, row)], fill=shade)
    canvas.box(0, BAND_TOP, WIDTH, BAND_TOP + 2, ACCENT)


def headband(canvas, x, y, radiusX, radiusY, size):
    """The part of the headset that stands behind the terminal; `size` 1 suits a terminal 180 wide."""
    canvas.stroke(arc(x, y, radiusX, radiusY, 180, 360), 11 * size, HEADSET_SHADE)
    canvas.stroke(arc(x, y, radiusX - 1 * size, radiusY - 1.5 * size, 180, 360), 7 * size, HEADSET)


def earCup(canvas, x, y, side, size):
    """side: -1 for the left one, 1 for the right one. x is the edge of the terminal that it sits on."""
    inner, outer = sorted((x - 3 * side * size, x + 8 * side * size))
    canvas.box(inner, y - 25 * size, outer, y + 25 * size, CUSHION, 5 * size)
    inner, outer = sorted((x + 5 * side * size, x + 19 * side * size))
    canvas.box(inner, y - 20 * size, outer, y + 20 * size, HEADSET_SHADE, 6 * size)
    inner, outer = sorted((x + 5 * side * size, x + 17 * side * size))
    canvas.box(inner, y - 19 * size, outer, y + 17 * size, HEADSET, 5.5 * size)


def microphone(canvas, start, control, end, size):
    canvas.stroke(curve(start, control, end), 4 * size, HEADSET_SHADE)
    canvas.stroke(curve(start, control, end), 2.4 * size, HEADSET)
    x, y = end
    canvas.box(x - 11 * size, y - 5.5 * size, x + 11 * size, y + 5.5 * size, HEADSET_SHADE, 5.5 * size)
    canvas.box(x - 11 * size, y - 5.5 * size, x + 10 * size, y + 3.5 * size, HEADSET, 4.5 * size)


def agentRow(canvas, left, y, state, widths):
    canvas.disc(left + 3, y + 2.5, 2.6, state)
    x = left + 13
    for width, colour in zip(widths, (WHITE, GREY, CYAN)):
        canvas.box(x, y, x + width, y + 5, colour, 1)
        x += 42


def terminal(canvas, left, top, right, bottom):
    canvas.box(left, top, right, bottom, CASE_EDGE, 9)
    canvas.box(left + 1, top + 1, right - 1, bottom - 1, CASE, 8)
    canvas.box(left + 10, top + 8, left + 58, top + 12, CASE_EDGE, 2)
    for n in range(3):
        canvas.box(right - 16 - 11 * n, top + 7, right - 10 - 11 * n, top + 13, CASE_EDGE, 1.5)
    left, top, right, bottom = left + 6, top + 20, right - 6, bottom - 6
    canvas.box(left, top, right, bottom, SCREEN, 3)

    # The frame, with a rule that meets it in two tees, as the line-drawing characters do.
    left, top, right, bottom = left + 9, top + 9, right - 9, bottom - 9
    rule = top + 19
    foot = bottom - 19
    corners = [(left, top), (right, top), (right, bottom), (left, bottom), (left, top)]
    canvas.stroke(corners, 1.4, LINE)
    for y in (rule, foot):
        canvas.stroke([(left, y), (right, y)], 1.4, LINE)

    canvas.box(left + 8, top + 7, left + 66, top + 12, YELLOW, 1)
    canvas.box(right - 34, top + 7, right - 8, top + 12, GREY, 1)
    rows = (
        (GREEN, (28, 35, 24)),
        (GREEN, (33, 28, 29)),
        (YELLOW, (24, 33, 15)),
        (GREEN, (31, 24, 27)),
        (RED, (26, 31, 20)),
    )
    for n, (state, widths) in enumerate(rows):
        agentRow(canvas, left + 8, rule + 10 + 13 * n, state, widths)
    canvas.box(left + 8, foot + 7, left + 40, foot + 12, GREEN, 1)
    canvas.box(left + 46, foot + 5, left + 53, foot + 14, WHITE)


def words(canvas):
    end = 30 + canvas.text(30, 142, "Zentora", "LiberationSans-Bold.ttf", 45, WHITE)
    canvas.box(end + 7, 109, end + 26, 142, ACCENT)
    canvas.text(32, 170, "Terminal Emulator", "LiberationSans-Regular.ttf", 21, SOFT_BLUE)


def badge(canvas):
    """A prompt beside the lines that the program writes on the band."""
    canvas.box(16, 284, 44, 312, CUSHION, 6)
    canvas.stroke([(23, 292), (29, 298), (23, 304)], 2.6, WHITE)
    canvas.box(31, 302.7, 38, 305.3, ACCENT, 1)


def picture():
    canvas = Canvas(WIDTH, HEIGHT)
    ground(canvas)
    left, top, right, bottom = 272, 70, 444, 226
    middle, ears = (left + right) / 2, 146
    headband(canvas, middle, ears - 12, (right - left) / 2 + 8, 106, 1)
    terminal(canvas, left, top, right, bottom)
    earCup(canvas, left, ears, -1, 1)
    earCup(canvas, right, ears, 1, 1)
    microphone(canvas, (left - 11, ears + 17), (left - 10, 240), (left + 52, 238), 1)
    words(canvas)
    band(canvas)
    badge(canvas)
    return canvas.finished()


def main():
    parser = argparse.ArgumentParser(description="Draws the splash picture.")
    parser.add_argument("--output", type=pathlib.Path, default=DEFAULT_OUTPUT)
    parser.add_argument("--png", type=pathlib.Path)
    options = parser.parse_args()
    image = picture()
    image.save(options.output, format="BMP")
    if options.png:
        image.save(options.png, format="PNG")


if __name__ == "__main__":
    main()
