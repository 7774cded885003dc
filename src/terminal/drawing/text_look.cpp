#include "terminal/drawing/text_look.h"

#include "diag/error_trap.h"
#include "terminal/drawing/screen_controls.h"

namespace qxterm {

std::array<Rgb, 8> colourTable{};
TextLook textLook;

void doAttr(std::int16_t flags, std::int16_t foreground, std::int16_t background) {
    trapped("doAttr", [&] {
        const std::int16_t index = reversed(flags) ? background : foreground;
        textLook.fg = static_cast<std::uint8_t>(subscript(index, 0, 7));
        textLook.bold = (flags & attrFlag::bold) != 0;
    });
}

void setTextBackground(std::int16_t colour) {
    textLook.bg = static_cast<std::uint8_t>(subscript(colour, 0, 7));
}

void initAttributes() {
    setCurrentAttr(defaultAttrTriple);
    textLook = TextLook{};
    makeBlankLine();
    constexpr std::uint8_t full = 255;
    for (std::size_t index = 0; index < colourTable.size(); ++index) {
        // bit 0 is red, bit 1 green, bit 2 blue
        colourTable[index] = {(index & 1U) != 0 ? full : std::uint8_t{0},
                              (index & 2U) != 0 ? full : std::uint8_t{0},
                              (index & 4U) != 0 ? full : std::uint8_t{0}};
    }
    picterm.setColourTable(colourTable);
}

}  // namespace qxterm
