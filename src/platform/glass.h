#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/picture.h"

namespace qxterm {

/// What a picture is shown on: calls that change pixels, each within the cells that it names.
class Surface {
public:
    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    virtual ~Surface() = default;

    /// Opaque text, one code a cell, with a line under it in the text's colour or not. Ends any inversion.
    virtual void text(int row, int column, std::string_view codes, const TextLook& look, bool underlined) = 0;
    /// Blanks of one colour. Ends any inversion.
    virtual void blank(int row, int column, int count, std::uint8_t colour) = 0;
    /// Inverts all pixels of the cells, or the bar of the underline cursor alone.
    virtual void invert(int row, int column, int count, bool bar) = 0;
    /// Moves the pixels of rows first..last by that many rows within themselves. Adds the cells to `lost`
    /// that it could not give the pixels of their origin; those that come free are lost anyway.
    virtual void scroll(int first, int last, int by, CellSet& lost) = 0;
};

/// What stands on the glass, as far as it is known: the second copy of a picture's cells. Showing a picture
/// draws what differs, by the run, and moves rows that were only scrolled.
class Glass {
public:
    Glass() { forget(); }

    /// Nobody knows what stands there; all of it is drawn with the next picture.
    void forget();
    void forget(const CellSet& cells);

    /// Brings the glass in line with the picture, whose frame ends. Cells that nothing was drawn on show the
    /// background. mayScroll: the pixels that stand there can be relied on for a scroll.
    void show(Picture& picture, std::uint8_t background, Surface& surface, bool mayScroll);

    /// How many cells were drawn by show, for tests of how little that is.
    [[nodiscard]] std::uint64_t cellsDrawn() const { return cellsDrawn_; }

private:
    using Row = Picture::Row;
    struct Move {
        int first;
        int last;
        int by;
    };

    /// Stands on the glass where nobody knows what does: equal to no cell of a picture.
    static constexpr PictureCell unknown{~std::uint32_t{0}};

    [[nodiscard]] bool stands(const Row& wanted, int row) const;
    [[nodiscard]] int rowsSavedBy(const Move& move) const;
    [[nodiscard]] bool findMove(const Picture& picture, Move& move) const;
    void moveRows(const Move& move, Surface& surface);
    [[nodiscard]] int drawRun(int row, int first, Surface& surface);
    void invertRow(int row, Surface& surface);
    [[nodiscard]] Row& rowAt(int row) { return rows_[static_cast<std::size_t>(row)]; }

    std::array<Row, pictureRows> rows_;
    std::array<Row, pictureRows> wanted_;  ///< the picture being shown, its background in place
    std::uint64_t cellsDrawn_ = 0;
};

}  // namespace qxterm
