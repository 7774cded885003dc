#include "terminal/drawing/drawing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "diag/error_trap.h"
#include "terminal/drawing/line_drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"

namespace qxterm {

bool textBlinkOff = false;
bool drawingWatched = false;
void (*lineDrawn)(std::int32_t row, std::int32_t first, std::int32_t last) = [](std::int32_t, std::int32_t,
                                                                                std::int32_t) {};

namespace {

Raster eraseRaster() { return modeSet(mode::reverseScreen) ? Raster::whiteness : Raster::blackness; }

/// The cells of any run.
[[gnu::noinline]] void drawAnyRun(const ScreenLine& line, std::int32_t first, std::int32_t count,
                                  std::int32_t row) {
    const AttrTriple attr = unpackAttr(line.attrs[static_cast<std::size_t>(first + 1)]);
    if ((attr.flags & attrFlag::blink) != 0 && textBlinkOff) {
        picterm.fill({first, row, count, 1}, eraseRaster());
        return;
    }
    doAttr(attr.flags, attr.fg, attr.bg);
    setTextBackground(reversed(attr.flags) ? attr.fg : attr.bg);
    if ((attr.flags & attrFlag::shiftOut) != 0) {
        lineDraw(line, first, count, row);
    } else {
        picterm.drawText(row, first, {line.text.data() + first, static_cast<std::size_t>(count)}, textLook);
    }
    if ((attr.flags & attrFlag::underline) != 0) picterm.underline(row, first, count);
}

/// The cells of a run, with the short way.
void drawCellsOfRun(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row) {
    if (!drawOrdinaryRun(line, first, count, row)) drawAnyRun(line, first, count, row);
}

/// True when all words of a span are equal: each equals the one behind it.
bool oneWord(const ScreenLine& line, std::int32_t first, std::int32_t last) {
    const std::int16_t* words = line.attrs.data() + first + 1;
    const auto bytes = static_cast<std::size_t>(last - first) * sizeof(std::int16_t);
    return std::memcmp(words, words + 1, bytes) == 0;
}

void drawRuns(const ScreenLine& line, std::int32_t first, std::int32_t last, std::int32_t row) {
    const auto end = line.attrs.begin() + last + 2;
    for (std::int32_t at = first; at <= last;) {
        const auto begin = line.attrs.begin() + at + 1;
        const auto stop =
            std::find_if(begin, end, [word = *begin](std::int16_t other) { return other != word; });
        const auto count = static_cast<std::int32_t>(stop - begin);
        drawCellsOfRun(line, at, count, row);
        at += count;
    }
}

/// Columns within the line, more than one.
[[gnu::noinline]] void drawSpan(const ScreenLine& line, std::int32_t first, std::int32_t last,
                                std::int32_t row) {
    if (oneWord(line, first, last)) {
        drawRun(line, first, last - first + 1, row);
        return;
    }
    drawRuns(line, first, last, row);
    if (drawingWatched) lineDrawn(row, first, last);
}

}  // namespace

void setTextBlinkOff(bool off) { textBlinkOff = off; }

void watchDrawing(bool watched) { drawingWatched = watched; }

[[gnu::noinline]] void lineDraw(const ScreenLine& line, std::int32_t first, std::int32_t count,
                                std::int32_t row) {
    trapped("lineDraw", [&] {
        std::array<char, screenColumns> glyphs;
        const std::int32_t end = first + count;
        for (std::int32_t at = first; at < end;) {
            const bool lines = isLineDrawing(line.text[static_cast<std::size_t>(at)]);
            std::size_t length = 0;
            std::int32_t next = at;
            for (; next < end; ++next) {
                const char c = line.text[static_cast<std::size_t>(next)];
                if (isLineDrawing(c) != lines) break;
                glyphs[length++] = lines ? lineDrawingGlyph(c) : c;
            }
            TextLook look = textLook;
            look.font = lines ? TextFont::terminal : TextFont::normal;
            picterm.drawText(row, at, {glyphs.data(), length}, look);
            at = next;
        }
    });
}

void drawRunAndTell(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row) {
    drawCellsOfRun(line, first, count, row);
    if (drawingWatched) lineDrawn(row, first, first + count - 1);
}

void drawCells(const ScreenLine& line, std::int32_t first, std::int32_t last, std::int32_t row) {
    first = std::max(first, 0);
    last = std::min(last, lastColumn);
    if (first > last) return;
    if (first == last) {
        drawRun(line, first, 1, row);
    } else {
        drawSpan(line, first, last, row);
    }
}

void paintLine(const ScreenLine& line, std::int16_t start, std::int32_t row) {
    trapped("paintLine", [&] { drawCells(line, start, line.usedLength, row); });
}

void paintWholeLine(const ScreenLine& line, std::int32_t row) {
    paintLine(line, 0, row);
    const std::int32_t behind = std::clamp(line.usedLength + 1, 0, screenColumns);
    if (behind == screenColumns) return;
    picterm.clear({behind, row, screenColumns - behind, 1});
    if (drawingWatched) lineDrawn(row, behind, lastColumn);
}

void blankArea(std::int32_t column, std::int32_t row, std::int32_t columns, std::int32_t rows) {
    picterm.fill({column, row, columns, rows}, eraseRaster());
    if (!drawingWatched) return;
    for (std::int32_t at = row; at < row + rows; ++at) {
        lineDrawn(at, std::max(column, 0), std::min(column + columns, screenColumns) - 1);
    }
}

}  // namespace qxterm
