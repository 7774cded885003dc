#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qxterm {

inline constexpr std::int32_t screenColumns = 80;
inline constexpr std::int32_t screenRows = 25;
inline constexpr std::int32_t pageRows = 24;   ///< rows 0..23 are the page
inline constexpr std::int32_t statusRow = 24;  ///< never scrolls
inline constexpr std::int32_t lastColumn = screenColumns - 1;

/// Bits of ScreenLine::lineFlags.
namespace lineFlag {
inline constexpr std::int16_t draw = 1;   ///< the dirty span waits to be drawn
inline constexpr std::int16_t whole = 2;  ///< the whole line must be redrawn cell by cell
inline constexpr std::int16_t selected = 4;
}  // namespace lineFlag

/// One line of the screen, of the scrollback, or the blank template. Lines are copied for every line that
/// scrolls, hence the alignment: each fills four cache lines exactly.
struct alignas(64) ScreenLine {
    std::array<char, screenColumns> text;               ///< one byte a cell
    std::array<std::int16_t, screenColumns + 1> attrs;  ///< word of column c at c + 1; entry 0 is never used
    std::int16_t dirtyFirst;                            ///< leftmost column written since the line was drawn
    std::int16_t dirtyLast;                             ///< last such column, -1 when nothing is pending
    std::int16_t selFirst;                              ///< selected columns, valid with lineFlag::selected
    std::int16_t selLast;
    /// Rightmost column that held text since the line was blanked; -1 for a blank line.
    std::int16_t usedLength;
    std::int16_t lineFlags;
    /// Every cell from this column on is as in the blank template: 0 for a blank line, 80 at the most.
    std::int16_t extent;
};

/// to = from. Compilers copy a record of this length with a string instruction, which takes several times as
/// long as these fixed pieces.
inline void copyLine(ScreenLine& to, const ScreenLine& from) {
    constexpr std::size_t piece = 64;
    static_assert(sizeof(ScreenLine) % piece == 0);
    auto* target = reinterpret_cast<std::byte*>(&to);
    const auto* source = reinterpret_cast<const std::byte*>(&from);
    for (std::size_t at = 0; at < sizeof(ScreenLine); at += piece)
        std::memcpy(target + at, source + at, piece);
}

/// to = from, from = blank: a line leaves for the scrollback. Only cells are touched that may differ from the
/// template; most lines are short.
inline void moveLine(ScreenLine& to, ScreenLine& from, const ScreenLine& blank) {
    constexpr std::size_t cells = 16;  // a piece of so many characters, and of so many words
    constexpr std::size_t pieces = screenColumns / cells;
    constexpr std::size_t rest = sizeof(ScreenLine) - cells;  // the last word, and all that follows
    const auto copyPiece = [](ScreenLine& target, const ScreenLine& source, std::size_t piece) {
        std::memcpy(target.text.data() + piece * cells, source.text.data() + piece * cells, cells);
        std::memcpy(target.attrs.data() + piece * cells, source.attrs.data() + piece * cells,
                    cells * sizeof(std::int16_t));
    };
    const auto copyRest = [](ScreenLine& target, const ScreenLine& source) {
        std::memcpy(reinterpret_cast<std::byte*>(&target) + rest,
                    reinterpret_cast<const std::byte*>(&source) + rest, sizeof(ScreenLine) - rest);
    };
    // A word stands one place further on than its character.
    const auto touched = static_cast<std::size_t>(from.extent > to.extent ? from.extent : to.extent);
    std::size_t piece = 0;
    do {
        copyPiece(to, from, piece);
        copyPiece(from, blank, piece);
        ++piece;
    } while (piece < pieces && piece * cells <= touched);
    copyRest(to, from);
    copyRest(from, blank);
}

}  // namespace qxterm
