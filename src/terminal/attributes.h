#pragma once

#include <array>
#include <cstdint>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "platform/geometry.h"
#include "platform/picture.h"
#include "terminal/screen_store.h"

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

/// The eight colours at full intensity, in the order black, red, green, yellow, blue, magenta, cyan, white.
/// Filled at start-up.
extern std::array<Rgb, 8> colourTable;

/// True when the colours of such text are exchanged: reverse screen and reverse video cancel.
[[nodiscard]] inline bool reversed(std::int16_t flags) {
    return modeSet(mode::reverseScreen) != ((flags & attrFlag::reverse) != 0);
}

/// True for two indices into that table.
[[nodiscard]] constexpr bool coloursExist(std::int16_t fg, std::int16_t bg) {
    return static_cast<std::uint16_t>(fg | bg) < 8;
}

/// Colour and weight that text is drawn with, as doAttr last set them.
extern TextLook textLook;

/// Turns a triple into text colour and weight: textLook. Called before a run of cells is drawn and after each
/// change of the current attribute. Error 9, reported as "doAttr", for a colour index of 8 or more.
void doAttr(std::int16_t flags, std::int16_t foreground, std::int16_t background);

/// doAttr for the current triple after a command has changed it. Every run that is drawn sets its own look,
/// so that there is nothing to do for colours that exist.
inline void currentAttrChanged() {
    if (!coloursExist(curFg, curBg) || detail::faultPlanned) [[unlikely]]
        doAttr(curAttr, curFg, curBg);
}

/// Sets default colours, the blank line and the colour table. Called by main.
void initAttributes();

}  // namespace qxterm
