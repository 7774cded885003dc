#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/geometry.h"
#include "platform/picture_box.h"

namespace qxterm::headless {

/// Bits of CellLook::style.
namespace cellStyle {
inline constexpr std::uint8_t terminalFont = 1;
inline constexpr std::uint8_t bold = 2;
inline constexpr std::uint8_t underlined = 4;
inline constexpr std::uint8_t inverted = 16;  ///< by the selection, an odd number of times
}  // namespace cellStyle

/// What a character cell of the window looks like. A cell that nothing was drawn on has the picture box's
/// background.
struct CellLook {
    char text = ' ';  ///< the stored character, also where a glyph of the terminal font stands for it
    std::uint8_t fg = 7;
    std::uint8_t bg = 0;
    std::uint8_t style = 0;
    bool drawn = false;
    bool cursor = false;  ///< inverted by the cursor, an odd number of times
};

/// The window as character cells, kept up to date from the drawing calls alone: pixels are taken to cells by
/// the cell's measures, and nothing of the screen records is known here.
class CellGrid {
public:
    static constexpr int columns = 80;
    static constexpr int rows = 25;

    /// Measures of a cell in pixels. Other measures than before leave no cell drawn.
    void setMeasures(std::int32_t width, std::int32_t height);
    /// Draws only on cells whose middle lies in one of the areas; null draws everywhere.
    void setClip(const std::vector<PixelRect>* areas) { clip_ = areas; }

    struct TextStyle {
        TextFont font;
        bool bold;
        std::uint8_t fg;
        std::uint8_t bg;
    };
    /// The opaque area first, then a character each `advances` pixels (null: the cell's width), cut off at
    /// its right edge.
    void drawText(const PixelRect& area, std::string_view text, const std::int32_t* advances,
                  const TextStyle& style);
    void fill(const PixelRect& area, std::uint8_t colour);
    void invert(const PixelRect& area, Inversion of);
    void drawLine(std::int32_t x, std::int32_t y, std::int32_t width);
    /// Moves cells by dy pixels within the area; what comes free counts as not drawn on.
    void scroll(const PixelRect& area, std::int32_t dy);
    /// Nothing is drawn on the area any more.
    void erase(const PixelRect& area);

    [[nodiscard]] const CellLook& at(int column, int row) const { return cells_[index(column, row)]; }
    /// Column and row of the cell that the cursor has inverted.
    [[nodiscard]] std::optional<std::pair<int, int>> cursor() const;

private:
    /// Cells, first and last inclusive; none when last is smaller.
    struct Span {
        int firstColumn, lastColumn, firstRow, lastRow;
    };
    [[nodiscard]] Span touched(const PixelRect& area) const;
    [[nodiscard]] Span covered(const PixelRect& area) const;
    [[nodiscard]] bool clipped(int column, int row) const;
    [[nodiscard]] static std::size_t index(int column, int row) {
        return static_cast<std::size_t>(row * columns + column);
    }
    template <class Change>
    void change(const Span& span, Change&& change);

    std::array<CellLook, static_cast<std::size_t>(columns* rows)> cells_{};
    const std::vector<PixelRect>* clip_ = nullptr;
    std::int32_t width_ = 8;
    std::int32_t height_ = 16;
};

/// The terminal font's glyph codes 16 to 30 stand for the characters "j" to "x"; others stand for themselves.
[[nodiscard]] char storedCharacter(char glyph);

}  // namespace qxterm::headless
