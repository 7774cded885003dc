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

/// to = from, from = blank: a line leaves for the scrollback.
inline void moveLine(ScreenLine& to, ScreenLine& from, const ScreenLine& blank) {
    constexpr std::size_t piece = 128;
    auto* target = reinterpret_cast<std::byte*>(&to);
    auto* source = reinterpret_cast<std::byte*>(&from);
    const auto* empty = reinterpret_cast<const std::byte*>(&blank);
    for (std::size_t at = 0; at < sizeof(ScreenLine); at += piece) {
        std::memcpy(target + at, source + at, piece);
        std::memcpy(source + at, empty + at, piece);
    }
}

}  // namespace qxterm
