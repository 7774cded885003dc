#pragma once

#include <array>
#include <cstdint>

#include "diag/error_trap.h"
#include "platform/geometry.h"
#include "platform/picture.h"
#include "terminal/model/attributes.h"

namespace qxterm {

/// The eight colours at full intensity, in the order black, red, green, yellow, blue, magenta, cyan, white.
/// Filled at start-up.
extern std::array<Rgb, 8> colourTable;

/// Colours and weight that text is drawn with, as doAttr and setTextBackground last set them.
extern TextLook textLook;

/// Turns a triple into text colour and weight: textLook. Called before a run of cells is drawn and after each
/// change of the current attribute. Error 9, reported as "doAttr", for a colour index of 8 or more.
void doAttr(std::int16_t flags, std::int16_t foreground, std::int16_t background);

/// The colour behind the run that is drawn next. Error 9 for an index of 8 or more.
void setTextBackground(std::int16_t colour);

/// doAttr for the current triple after a command has changed it. Every run that is drawn sets its own look,
/// so that there is nothing to do for colours that exist.
inline void currentAttrChanged() {
    if (!coloursExist(curFg, curBg) || !shortWaysOpen()) [[unlikely]]
        doAttr(curAttr, curFg, curBg);
}

/// Sets default colours, the blank line and the colour table. Called by main.
void initAttributes();

}  // namespace qxterm
