#pragma once

#include <cstdint>

#include "diag/checked.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

/// Flag bits of an attribute.
namespace attrFlag {
inline constexpr std::int16_t shiftOut = 1;  ///< line-drawing characters
inline constexpr std::int16_t bold = 2;
inline constexpr std::int16_t underline = 4;
inline constexpr std::int16_t blink = 8;
inline constexpr std::int16_t reverse = 16;
inline constexpr std::int16_t invisible = 32;
}  // namespace attrFlag

/// The cell word of a triple. Error 6 when it leaves 16 bits (a background of 8 or more).
[[nodiscard]] constexpr std::int16_t packAttr(std::int16_t attr, std::int16_t fg, std::int16_t bg) {
    return toInt16(attr + fg * 256 + bg * 4096);
}

/// Flags, foreground and background of a cell word.
[[nodiscard]] constexpr AttrTriple unpackAttr(std::int16_t word) {
    return {static_cast<std::int16_t>(word & 0xFF), static_cast<std::int16_t>((word >> 8) & 0x0F),
            static_cast<std::int16_t>((word >> 12) & 0x0F)};
}

/// Word of an erased or blank cell.
inline constexpr std::int16_t defaultAttr =
    packAttr(defaultAttrTriple.flags, defaultAttrTriple.fg, defaultAttrTriple.bg);

/// True when the colours of such text are exchanged: reverse screen and reverse video cancel.
[[nodiscard]] inline bool reversed(std::int16_t flags) {
    return modeSet(mode::reverseScreen) != ((flags & attrFlag::reverse) != 0);
}

/// True for two indices of the eight colours.
[[nodiscard]] constexpr bool coloursExist(std::int16_t fg, std::int16_t bg) {
    return static_cast<std::uint16_t>(fg | bg) < 8;
}

}  // namespace qxterm
