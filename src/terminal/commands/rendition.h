#pragma once

#include "terminal/commands/sequence.h"

/// How what is written next looks.
namespace qxterm {

/// m: changes the current attribute by each parameter in turn; none is 0.
void selectGraphicRendition(const Parameters& parameters);
void shiftOut();  ///< SO: line-drawing characters
void shiftIn();   ///< SI

}  // namespace qxterm
