#!/usr/bin/python3
"""Builds the terminal font QXTERM.ttf: Latin letters from a base font, line-drawing glyphs of our own.

    make_font.py [--base BASE.ttf] [--output QXTERM.ttf]

Needs python3-fonttools and fonts-liberation2. The same base and the same fontTools give the same bytes;
resources/font/README.md describes the result.
"""

import argparse
import hashlib
import pathlib
import sys

from fontTools import subset
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont, newTable
from fontTools.ttLib.tables._c_m_a_p import CmapSubtable
from fontTools.ttLib.tables._n_a_m_e import NameRecord
from fontTools.ttLib.tables.ttProgram import Program

FAMILY = "QXTERM"
VERSION = "1.001"
DEFAULT_BASE = "/usr/share/fonts/truetype/liberation2/LiberationMono-Regular.ttf"
BASE_SHA256 = "6b3809450cf6253b36d157198dc15004a5fbade9abad5543c377feb7bb29139c"
DEFAULT_OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "resources" / "font" / "QXTERM.ttf"
# Seconds since 1904-01-01 (the font file's epoch), 2024-01-01 00:00 UTC: a fixed date keeps the bytes fixed.
TIMESTAMP = 3786912000

COPYRIGHT = (
    "Digitized data copyright (c) 2010 Google Corporation with Reserved Font Arimo, Tinos and Cousine.\n"
    "Copyright (c) 2012 Red Hat, Inc. with Reserved Font Name Liberation.\n"
    "Line-drawing glyphs copyright (c) the qxterm authors."
)
LICENCE = "This Font Software is licensed under the SIL Open Font License, Version 1.1."
LICENCE_URL = "https://scripts.sil.org/OFL"

# All lengths below are font units, 2048 to the em; the baseline is y = 0.
ADVANCE = 1229
# Ascent and descent add up to the em exactly. The font mapper turns a cell height into a whole number of
# pixels to the em, and glyphs are cut off at the cell so found: only when cell and em are the same can every
# height be met and vertical lines reach the next row. The descent is the letters' own, so that both round
# alike; the rest leaves the accents of capitals a row of pixels even at 12 pixels.
ASCENT = 1623
DESCENT = 425
STROKE = 128  # 1/16 of the cell height
# Past the top and bottom edge: more than a pixel at common sizes, so that rounding leaves no faint last row.
OVERHANG_Y = 160
# Past the left and right edge: covers rounding where the glyphs are drawn without their instructions. Kept
# far below a pixel, since inside a run it reaches into the neighbour's cell.
OVERHANG_X = 24
# The outermost scan lines stay this far inside the cell so that rounding never moves them out of it.
SCAN_INSET = 60

# How far an upright stroke's own middle stands left of the cell's, in the instructions' unit. A stroke of one pixel then
# reaches from 3/4 of a pixel left of the cell's middle to 1/4 right of it. Stretched to between 0.67 and 1.33 of that it
# covers the centre of one pixel, whether the middle is a pixel boundary or a centre itself.
PIXEL = 64
LEFT_OF_MIDDLE = PIXEL // 4

MIDDLE_Y = (ASCENT - DESCENT) // 2
MIDDLE_X = ADVANCE // 2
SCAN_STEP = (ASCENT - SCAN_INSET - STROKE // 2 - MIDDLE_Y) // 2

LEFT, RIGHT, UP, DOWN = "LRUD"

# (character of the special graphics set, Unicode box-drawing code, arms from the centre, height of the
# horizontal stroke's middle above that of the cell's centre)
LINE_GLYPHS = [
    ("j", 0x2518, LEFT + UP, 0),
    ("k", 0x2510, LEFT + DOWN, 0),
    ("l", 0x250C, RIGHT + DOWN, 0),
    ("m", 0x2514, RIGHT + UP, 0),
    ("n", 0x253C, LEFT + RIGHT + UP + DOWN, 0),
    ("o", 0x23BA, LEFT + RIGHT, 2 * SCAN_STEP),
    ("p", 0x23BB, LEFT + RIGHT, SCAN_STEP),
    ("q", 0x2500, LEFT + RIGHT, 0),
    ("r", 0x23BC, LEFT + RIGHT, -SCAN_STEP),
    ("s", 0x23BD, LEFT + RIGHT, -2 * SCAN_STEP),
    ("t", 0x251C, RIGHT + UP + DOWN, 0),
    ("u", 0x2524, LEFT + UP + DOWN, 0),
    ("v", 0x2534, LEFT + RIGHT + UP, 0),
    ("w", 0x252C, LEFT + RIGHT + DOWN, 0),
    ("x", 0x2502, UP + DOWN, 0),
]
FIRST_LINE_CODE = 0x10


def latinCodes():
    """The printable characters of Windows-1252, as Unicode code points."""
    codes = set()
    for byte in list(range(0x20, 0x7F)) + list(range(0x80, 0x100)):
        try:
            codes.add(ord(bytes([byte]).decode("cp1252")))
        except UnicodeDecodeError:
            continue
    return codes


def outline(arms, rise):
    """The closed clockwise contour of a centre square with the given arms; a list of points."""
    x0 = MIDDLE_X - STROKE // 2
    x1 = x0 + STROKE
    y0 = MIDDLE_Y + rise - STROKE // 2
    y1 = y0 + STROKE
    left, right = -OVERHANG_X, ADVANCE + OVERHANG_X
    bottom, top = -DESCENT - OVERHANG_Y, ASCENT + OVERHANG_Y
    points = [(x0, y1)]
    if UP in arms:
        points += [(x0, top), (x1, top)]
    points.append((x1, y1))
    if RIGHT in arms:
        points += [(right, y1), (right, y0)]
    points.append((x1, y0))
    if DOWN in arms:
        points += [(x1, bottom), (x0, bottom)]
    points.append((x0, y0))
    if LEFT in arms:
        points += [(left, y0), (left, y1)]

    def isCorner(index):
        (xa, ya), (xb, yb) = points[index - 1], points[(index + 1) % len(points)]
        return xa != xb and ya != yb

    return [point for index, point in enumerate(points) if isCorner(index)]


def instructions(points):
    """Grid-fitting that puts equal strokes of different glyphs on equal pixels.

    Thicknesses go to whole pixels, one at least. A horizontal stroke's lower edge goes to the nearest pixel boundary.
    The outer ends of horizontal arms go to the cell's edges exactly: these are the two side-bearing points that follow
    the outline's own points.

    An upright stroke goes LEFT_OF_MIDDLE to the left of the cell's middle, wherever pixel boundaries are: some
    renderers run the instructions at the font's own width and then stretch the outline to the cell's. The middle is
    the one place that the stretch maps to a known one: to a pixel boundary or to a pixel's centre. A stroke of one
    pixel that lay between two centres after the stretch would be left to dropout control, which does nothing in the
    rows where an arm covers one of the two: the joint's pixel would be missing.
    """
    leftEdge, rightEdge = len(points), len(points) + 1
    # Native ClearType mode for this glyph: otherwise newer rasterizers ignore all movement along x. Then
    # dropout control that keeps the ends of strokes: a width given to CreateFont may make a stroke thinner
    # than a pixel, and with smoothing off, in black and white it must still reach the edge.
    code = ["PUSHB[ ] 4 3", "INSTCTRL[ ]", "PUSHB[ ] 4", "SCANTYPE[ ]"]

    def push(*values):
        code.append("PUSHB[ ] " + " ".join(str(value) for value in values))

    def align(indices):
        for index in indices:
            push(index)
            code.append("ALIGNRP[ ]")

    def fitThickness(lower, upper):
        """With the lower edge's first point as reference."""
        align(lower[1:])
        push(upper[0])
        code.append("MDRP[11101]")
        align(upper[1:])

    def fitHorizontal(lower, upper):
        push(lower[0])
        code.append("MDAP[1]")
        fitThickness(lower, upper)

    def pushTwiceMiddle(lower, upper):
        for point in (lower[0], upper[0]):
            push(point)
            code.append("GC[0]")
        code.append("ADD[ ]")

    def fitUpright(lower, upper):
        push(*lower, *upper)  # for the shift in the end
        push(lower[0], upper[0], rightEdge, leftEdge)
        code.extend(["SRP1[ ]", "SRP2[ ]", "IP[ ]", "IP[ ]"])
        pushTwiceMiddle(lower, upper)
        push(lower[0])
        code.append("SRP0[ ]")
        fitThickness(lower, upper)
        pushTwiceMiddle(lower, upper)
        code.append("SUB[ ]")
        push(2 * PIXEL)
        code.append("DIV[ ]")
        push(LEFT_OF_MIDDLE)
        code.append("SUB[ ]")
        push(len(lower) + len(upper))
        code.extend(["SLOOP[ ]", "SHPIX[ ]"])

    def at(axis, value):
        return [index for index, point in enumerate(points) if point[axis] == value]

    x0 = MIDDLE_X - STROKE // 2
    if at(0, x0):
        code.append("SVTCA[1]")
        fitUpright(at(0, x0), at(0, x0 + STROKE))
    for value, edge in ((-OVERHANG_X, leftEdge), (ADVANCE + OVERHANG_X, rightEdge)):
        if at(0, value):
            code.append("SVTCA[1]")
            push(edge)
            code.append("SRP0[ ]")
            align(at(0, value))
    ends = {-DESCENT - OVERHANG_Y, ASCENT + OVERHANG_Y}
    inner = sorted({y for _, y in points} - ends)
    if inner:
        lower, upper = inner
        code.append("SVTCA[0]")
        fitHorizontal(at(1, lower), at(1, upper))
    program = Program()
    program.fromAssembly(code)
    return program


def addLineGlyphs(font):
    """Draws the line-drawing glyphs; returns their code points and glyph names."""
    glyphSet = font.getGlyphSet()
    mapping = {}
    for index, (letter, code, arms, rise) in enumerate(LINE_GLYPHS):
        name = "line." + letter
        points = outline(arms, rise)
        pen = TTGlyphPen(glyphSet)
        pen.moveTo(points[0])
        for point in points[1:]:
            pen.lineTo(point)
        pen.closePath()
        glyph = pen.glyph()
        glyph.program = instructions(points)
        font["glyf"][name] = glyph
        font["hmtx"][name] = (ADVANCE, min(x for x, _ in points))
        mapping[FIRST_LINE_CODE + index] = name
        mapping[code] = name
    return mapping


def keepInstructionsWhenStretched(font):
    """The base's set-up program turns instructions off under rotation or stretching; leave only rotation.

    A width given to CreateFont stretches the font a little, and the lines need their grid-fitting then too.
    """
    program = font["prep"].program
    code = program.getAssembly()
    query = [i for i in range(len(code) - 1) if code[i] == "6" and code[i + 1].startswith("GETINFO")]
    if len(query) != 1:
        sys.exit("the base font's set-up program is not the expected one")
    code[query[0]] = "2"
    program.fromAssembly(code)


def setCharacterMap(font, mapping):
    table = newTable("cmap")
    table.tableVersion = 0
    table.tables = []
    for platform, encoding in ((0, 3), (3, 1)):
        sub = CmapSubtable.newSubtable(4)
        sub.platformID, sub.platEncID, sub.language = platform, encoding, 0
        sub.cmap = dict(sorted(mapping.items()))
        table.tables.append(sub)
    font["cmap"] = table


def setNames(font):
    texts = {
        0: COPYRIGHT,
        1: FAMILY,
        2: "Regular",
        3: f"{FAMILY} {VERSION}",
        4: FAMILY,
        5: f"Version {VERSION}",
        6: FAMILY,
        13: LICENCE,
        14: LICENCE_URL,
    }
    font["name"].names = []
    for nameId, text in texts.items():
        record = NameRecord()
        record.nameID, record.platformID, record.platEncID, record.langID = nameId, 3, 1, 0x409
        record.string = text
        font["name"].names.append(record)


def fitIntoCell(font, mapping):
    """Lowers the accents of capital letters, and what else is drawn too high, to the top of the cell."""
    glyphs = font["glyf"]
    for name in sorted(set(mapping.values())):
        glyph = glyphs[name]
        excess = getattr(glyph, "yMax", 0) - ASCENT
        if excess <= 0:
            continue
        if glyph.isComposite():
            # The base letter comes first; a glyph of one component is a mark by itself.
            for component in glyph.components[1:] or glyph.components:
                component.y -= excess
            # Its own program would put the accent back to the old height.
            if hasattr(glyph, "program"):
                del glyph.program
        else:
            glyph.coordinates.translate((0, -excess))
        glyph.recalcBounds(glyphs)


def setMetrics(font):
    hhea, os2, head, post = font["hhea"], font["OS/2"], font["head"], font["post"]
    hhea.ascent, hhea.descent, hhea.lineGap = ASCENT, -DESCENT, 0
    os2.sTypoAscender, os2.sTypoDescender, os2.sTypoLineGap = ASCENT, -DESCENT, 0
    os2.usWinAscent, os2.usWinDescent = ASCENT, DESCENT
    os2.xAvgCharWidth = ADVANCE
    os2.achVendID = "    "
    os2.usMaxContext = 0
    os2.ulCodePageRange1, os2.ulCodePageRange2 = 1, 0  # Windows-1252 alone
    os2.recalcUnicodeRanges(font)
    os2.panose.bFamilyType, os2.panose.bProportion = 2, 9  # Latin text, monospaced
    post.isFixedPitch = 1
    # Up to each em size in pixels: 1 is grid-fitting alone, 3 smoothing too. At the screen's sizes lines are crisp
    # in black and white; smoothed, uprights would spread over two pixels.
    font["gasp"].gaspRange = {128: 1, 0xFFFF: 3}
    head.fontRevision = float(VERSION)
    head.created = head.modified = TIMESTAMP
    if any(advance not in (0, ADVANCE) for advance, _ in font["hmtx"].metrics.values()):
        sys.exit("the base font is not monospaced")


def build(base, output):
    data = pathlib.Path(base).read_bytes()
    if hashlib.sha256(data).hexdigest() != BASE_SHA256:
        sys.exit(f"{base}: not the base font that {FAMILY} is made from (fonts-liberation2 2.1.5)")
    font = TTFont(base, recalcTimestamp=False)

    options = subset.Options()
    options.hinting = True
    options.layout_features = []
    options.notdef_outline = True
    options.glyph_names = False
    options.drop_tables += ["FFTM", "GDEF", "GPOS", "GSUB"]
    letters = latinCodes()
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=letters)
    subsetter.subset(font)

    mapping = {code: name for code, name in font.getBestCmap().items() if code in letters}
    missing = letters - mapping.keys()
    if missing:
        sys.exit("the base font lacks " + ", ".join(f"U+{code:04X}" for code in sorted(missing)))
    fitIntoCell(font, mapping)
    mapping.update(addLineGlyphs(font))
    keepInstructionsWhenStretched(font)
    setCharacterMap(font, mapping)
    setNames(font)
    setMetrics(font)
    font.save(output, reorderTables=True)


def main():
    parser = argparse.ArgumentParser(description="Builds the terminal font.")
    parser.add_argument("--base", default=DEFAULT_BASE)
    parser.add_argument("--output", default=str(DEFAULT_OUTPUT))
    arguments = parser.parse_args()
    build(arguments.base, arguments.output)


if __name__ == "__main__":
    main()
