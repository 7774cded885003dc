#include "platform/headless/cell_grid.h"

#include <algorithm>

namespace qxterm::headless {
namespace {

constexpr char firstGlyph = 0x10;
constexpr char lastGlyph = 0x1E;

/// Division that rounds towards minus infinity, so that areas beyond the left or top edge stay beyond it.
std::int32_t floorDivided(std::int32_t value, std::int32_t by) {
    const std::int32_t quotient = value / by;
    return value % by < 0 ? quotient - 1 : quotient;
}

}  // namespace

char storedCharacter(char glyph) {
    return glyph >= firstGlyph && glyph <= lastGlyph ? static_cast<char>('j' + (glyph - firstGlyph)) : glyph;
}

void CellGrid::setMeasures(std::int32_t width, std::int32_t height) {
    if (width == width_ && height == height_) return;
    width_ = width;
    height_ = height;
    cells_.fill(CellLook{});
}

/// The cells of which the area touches at least a pixel.
CellGrid::Span CellGrid::touched(const PixelRect& area) const {
    if (area.empty()) return {0, -1, 0, -1};
    return {std::max(floorDivided(area.left, width_), 0),
            std::min(floorDivided(area.right - 1, width_), columns - 1),
            std::max(floorDivided(area.top, height_), 0),
            std::min(floorDivided(area.bottom - 1, height_), rows - 1)};
}

/// The cells whose middle lies in the area.
CellGrid::Span CellGrid::covered(const PixelRect& area) const {
    if (area.empty()) return {0, -1, 0, -1};
    const auto first = [](std::int32_t edge, std::int32_t size) {
        return std::max(floorDivided(edge - size / 2 + size - 1, size), 0);
    };
    const auto last = [](std::int32_t edge, std::int32_t size, int count) {
        return std::min(floorDivided(edge - 1 - size / 2, size), count - 1);
    };
    return {first(area.left, width_), last(area.right, width_, columns), first(area.top, height_),
            last(area.bottom, height_, rows)};
}

bool CellGrid::clipped(int column, int row) const {
    if (clip_ == nullptr) return false;
    const std::int32_t x = column * width_ + width_ / 2;
    const std::int32_t y = row * height_ + height_ / 2;
    return std::none_of(clip_->begin(), clip_->end(), [&](const PixelRect& area) {
        return x >= area.left && x < area.right && y >= area.top && y < area.bottom;
    });
}

template <class Change>
void CellGrid::change(const Span& span, Change&& change) {
    for (int row = span.firstRow; row <= span.lastRow; ++row) {
        for (int column = span.firstColumn; column <= span.lastColumn; ++column) {
            if (!clipped(column, row)) change(cells_[index(column, row)]);
        }
    }
}

void CellGrid::drawText(const PixelRect& area, std::string_view text, const std::int32_t* advances,
                        const TextStyle& style) {
    const Span span = covered(area);
    fill(area, style.bg);
    if (span.lastRow < span.firstRow) return;
    const int row = span.firstRow;
    std::int32_t x = area.left;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::int32_t advance = advances != nullptr ? advances[i] : width_;
        const int column = floorDivided(x + advance / 2, width_);
        x += advance;
        if (column < span.firstColumn || column > span.lastColumn || clipped(column, row)) continue;
        CellLook& cell = cells_[index(column, row)];
        const bool terminal = style.font == TextFont::terminal;
        cell.text = terminal ? storedCharacter(text[i]) : text[i];
        cell.fg = style.fg;
        cell.style = static_cast<std::uint8_t>((terminal ? cellStyle::terminalFont : 0) |
                                               (style.bold ? cellStyle::bold : 0));
    }
}

void CellGrid::fill(const PixelRect& area, std::uint8_t colour) {
    const CellLook filled{.text = ' ', .fg = 7, .bg = colour, .style = 0, .drawn = true, .cursor = false};
    change(covered(area), [&](CellLook& cell) { cell = filled; });
}

void CellGrid::erase(const PixelRect& area) {
    change(covered(area), [](CellLook& cell) { cell = CellLook{}; });
}

void CellGrid::invert(const PixelRect& area, Inversion of) {
    change(touched(area), [&](CellLook& cell) {
        if (of == Inversion::cursor) {
            cell.cursor = !cell.cursor;
        } else {
            cell.style ^= cellStyle::inverted;
        }
    });
}

void CellGrid::drawLine(std::int32_t x, std::int32_t y, std::int32_t width) {
    change(touched({x, y, x + width, y + 1}), [](CellLook& cell) { cell.style |= cellStyle::underlined; });
}

void CellGrid::scroll(const PixelRect& area, std::int32_t dy) {
    const Span span = covered(area);
    const int by = floorDivided(dy + height_ / 2, height_);  // to the nearest row
    if (by == 0) return;
    const auto move = [&](int row) {
        const int from = row - by;
        for (int column = span.firstColumn; column <= span.lastColumn; ++column) {
            const bool exposed = from < span.firstRow || from > span.lastRow;
            cells_[index(column, row)] = exposed ? CellLook{} : cells_[index(column, from)];
        }
    };
    if (by < 0) {
        for (int row = span.firstRow; row <= span.lastRow; ++row) move(row);
    } else {
        for (int row = span.lastRow; row >= span.firstRow; --row) move(row);
    }
}

std::optional<std::pair<int, int>> CellGrid::cursor() const {
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (at(column, row).cursor) return std::pair{column, row};
        }
    }
    return std::nullopt;
}

}  // namespace qxterm::headless
