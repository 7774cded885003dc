#include "platform/picture.h"

#include <algorithm>
#include <cstring>

namespace qxterm {
namespace {

constexpr char firstGlyph = 0x10;
constexpr char lastGlyph = 0x1E;

[[nodiscard]] std::size_t placeOf(std::int32_t value) { return static_cast<std::size_t>(value); }

[[nodiscard]] bool inPicture(std::int32_t column, std::int32_t row) {
    return column >= 0 && column < pictureColumns && row >= 0 && row < pictureRows;
}

/// Columns of an area as a mask of a row.
[[nodiscard]] std::bitset<pictureColumns> columnMask(const CellArea& area) {
    std::bitset<pictureColumns> mask;
    mask.set();
    mask >>= placeOf(pictureColumns - area.columns);
    return mask << placeOf(area.column);
}

}  // namespace

char storedCharacter(char glyph) {
    return glyph >= firstGlyph && glyph <= lastGlyph ? static_cast<char>('j' + (glyph - firstGlyph)) : glyph;
}

CellArea CellArea::visible() const {
    if (empty()) return {};
    const std::int32_t left = std::max(column, 0);
    const std::int32_t top = std::max(row, 0);
    const CellArea part{left, top, std::min(column + columns, pictureColumns) - left,
                        std::min(row + rows, pictureRows) - top};
    return part.empty() ? CellArea{} : part;
}

void CellSet::widen(const CellArea& area) {
    if (bounds_.empty()) {
        bounds_ = area;
        return;
    }
    const std::int32_t right = std::max(bounds_.column + bounds_.columns, area.column + area.columns);
    const std::int32_t bottom = std::max(bounds_.row + bounds_.rows, area.row + area.rows);
    bounds_.column = std::min(bounds_.column, area.column);
    bounds_.row = std::min(bounds_.row, area.row);
    bounds_.columns = right - bounds_.column;
    bounds_.rows = bottom - bounds_.row;
}

void CellSet::add(const CellArea& area) {
    const CellArea part = area.visible();
    if (part.empty()) return;
    widen(part);
    const auto mask = columnMask(part);
    for (std::int32_t row = part.row; row < part.row + part.rows; ++row) rows_[placeOf(row)] |= mask;
}

void CellSet::clear() {
    if (empty()) return;
    rows_.fill({});
    bounds_ = {};
}

bool CellSet::contains(std::int32_t column, std::int32_t row) const {
    return inPicture(column, row) && rows_[placeOf(row)].test(placeOf(column));
}

void CellSet::follow(std::int32_t first, std::int32_t last, std::int32_t by) {
    if (empty()) return;
    const CellSet before = *this;
    for (std::int32_t row = std::max(first, 0); row <= std::min(last, pictureRows - 1); ++row) {
        const std::int32_t from = row - by;
        if (from < first || from > last) continue;
        for (std::int32_t column = 0; column < pictureColumns; ++column) {
            if (before.contains(column, from)) add({column, row, 1, 1});
        }
    }
}

char PictureCell::text() const { return terminalFont() ? storedCharacter(code()) : code(); }

/// Nothing drawn on so many rows; frequent, and the fastest way to fill them.
void Picture::blankRows(std::int32_t first, std::int32_t count) {
    static const Row blank{};
    for (std::int32_t row = first; row < first + count; ++row)
        std::memcpy(rowAt(row).data(), blank.data(), sizeof blank);
}

void Picture::reset() {
    blankRows(0, pictureRows);
    clip_ = nullptr;
    beginFrame();
}

template <class Change>
void Picture::change(const CellArea& area, Change&& change) {
    const CellArea part = area.visible();
    for (std::int32_t row = part.row; row < part.row + part.rows; ++row) {
        PictureCell* const cells = rowAt(row).data();
        for (std::int32_t column = part.column; column < part.column + part.columns; ++column) {
            if (clip_ == nullptr || clip_->contains(column, row)) change(cells[column]);
        }
    }
}

void Picture::drawText(std::int32_t row, std::int32_t column, std::string_view text, const TextLook& look) {
    PictureCell cell{0, look};
    const bool inside = inPicture(column, row) && text.size() <= placeOf(pictureColumns - column);
    if (inside && clip_ == nullptr) [[likely]] {
        PictureCell* const cells = rowAt(row).data() + column;
        for (std::size_t n = 0; n < text.size(); ++n)
            cells[n] = PictureCell{cell.bits_ | static_cast<unsigned char>(text[n])};
        return;
    }
    for (const char code : text) {
        if (inPicture(column, row) && (clip_ == nullptr || clip_->contains(column, row)))
            rowAt(row)[placeOf(column)] = PictureCell{cell.bits_ | static_cast<unsigned char>(code)};
        ++column;
    }
}

void Picture::underline(std::int32_t row, std::int32_t column, std::int32_t count) {
    change({column, row, count, 1}, [](PictureCell& cell) { cell.bits_ |= PictureCell::underlinedBit; });
}

void Picture::fill(const CellArea& area, std::uint8_t colour) {
    const PictureCell filled{' ', {.fg = 7, .bg = colour}};
    if (clip_ != nullptr) {
        change(area, [&](PictureCell& cell) { cell = filled; });
        return;
    }
    const CellArea part = area.visible();
    for (std::int32_t row = part.row; row < part.row + part.rows; ++row)
        std::fill_n(rowAt(row).begin() + part.column, part.columns, filled);
}

void Picture::invert(const CellArea& area, Inversion of) {
    const std::uint32_t bit = of == Inversion::cursor            ? PictureCell::blockCursorBit
                              : of == Inversion::underlineCursor ? PictureCell::barCursorBit
                                                                 : PictureCell::selectedBit;
    change(area, [bit](PictureCell& cell) { cell.bits_ ^= bit; });
}

void Picture::scroll(std::int32_t first, std::int32_t last, std::int32_t by) {
    first = std::max(first, 0);
    last = std::min(last, pictureRows - 1);
    if (first > last || by == 0) return;
    const std::int32_t distance = std::min(std::abs(by), last - first + 1);
    const auto rows = rows_.begin();
    const auto origins = origins_.begin();
    if (by < 0) {
        std::copy(rows + first + distance, rows + last + 1, rows + first);
        std::copy(origins + first + distance, origins + last + 1, origins + first);
        first = last - distance + 1;
    } else {
        std::copy_backward(rows + first, rows + last + 1 - distance, rows + last + 1);
        std::copy_backward(origins + first, origins + last + 1 - distance, origins + last + 1);
    }
    blankRows(first, distance);
    std::fill_n(origins + first, distance, noOrigin);
}

void Picture::erase(const CellSet& cells) {
    if (cells.empty()) return;
    for (std::int32_t row = 0; row < pictureRows; ++row) {
        const auto& waiting = cells.rows_[placeOf(row)];
        if (waiting.none()) continue;
        if (waiting.all()) {
            blankRows(row, 1);
            continue;
        }
        for (std::size_t column = 0; column < waiting.size(); ++column) {
            if (waiting.test(column)) rowAt(row)[column] = {};
        }
    }
}

std::optional<std::pair<int, int>> Picture::cursor() const {
    for (int row = 0; row < pictureRows; ++row) {
        for (int column = 0; column < pictureColumns; ++column) {
            if (at(column, row).cursor()) return std::pair{column, row};
        }
    }
    return std::nullopt;
}

void Picture::beginFrame() { origins_ = inPlace(); }

}  // namespace qxterm
