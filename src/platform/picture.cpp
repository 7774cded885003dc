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

/// The cell is handed over by value: the compiler then knows that filling does not change it.
void fillCells(PictureCell* cells, std::int32_t count, PictureCell cell) {
    for (std::int32_t n = 0; n < count; ++n) cells[n] = cell;
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

/// Nothing drawn on so many rows; frequent.
void Picture::blankRows(std::int32_t first, std::int32_t count) {
    constexpr std::int32_t piece = 16;  // cells
    static_assert(pictureColumns % piece == 0);
    static const Row blank{};
    for (std::int32_t row = first; row < first + count; ++row) {
        std::int32_t& touched = touched_[placeOf(row)];
        for (std::int32_t column = 0; column < touched; column += piece)
            std::memcpy(rowAt(row).data() + column, blank.data(), piece * sizeof(PictureCell));
        touched = 0;
    }
}

void Picture::reset() {
    rows_.fill({});
    touched_.fill(0);
    clip_ = nullptr;
    beginFrame();
}

template <class Change>
void Picture::change(const CellArea& area, Change&& change) {
    const CellArea part = area.visible();
    for (std::int32_t row = part.row; row < part.row + part.rows; ++row) {
        PictureCell* const cells = rowAt(row).data();
        touch(row, part.column + part.columns);
        for (std::int32_t column = part.column; column < part.column + part.columns; ++column) {
            if (clip_ == nullptr || clip_->contains(column, row)) change(cells[column]);
        }
    }
}

void Picture::putCells(PictureCell* cells, std::string_view text, const PictureCell& look) {
    for (std::size_t n = 0; n < text.size(); ++n) cells[n] = look.with(text[n]);
}

void Picture::drawTextWithin(std::int32_t row, std::int32_t column, std::string_view text,
                             const PictureCell& look) {
    const std::int32_t first = std::max(column, 0);
    const std::int64_t end =
        std::min<std::int64_t>(column + static_cast<std::int64_t>(text.size()), pictureColumns);
    if (first < end && inPicture(first, row)) touch(row, static_cast<std::int32_t>(end));
    for (std::int32_t at = first; at < end; ++at) {
        if (inPicture(at, row) && (clip_ == nullptr || clip_->contains(at, row)))
            rowAt(row)[placeOf(at)] = look.with(text[placeOf(at - column)]);
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
    for (std::int32_t row = part.row; row < part.row + part.rows; ++row) {
        touch(row, part.column + part.columns);
        fillCells(rowAt(row).data() + part.column, part.columns, filled);
    }
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
    const auto touched = touched_.begin();
    if (by < 0) {
        std::copy(rows + first + distance, rows + last + 1, rows + first);
        std::copy(origins + first + distance, origins + last + 1, origins + first);
        std::copy(touched + first + distance, touched + last + 1, touched + first);
        first = last - distance + 1;
    } else {
        std::copy_backward(rows + first, rows + last + 1 - distance, rows + last + 1);
        std::copy_backward(origins + first, origins + last + 1 - distance, origins + last + 1);
        std::copy_backward(touched + first, touched + last + 1 - distance, touched + last + 1);
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
