#pragma once

#include <cstdint>

#include "terminal/commands/sequence.h"

/// Line feeds, scrolling, and the region that scrolls.
namespace qxterm {

/// Arguments of scrollUp.
inline constexpr std::int16_t scrollDeferred = 0;
inline constexpr std::int16_t scrollImmediate = 1;

/// Stores the pending run and moves the cursor down one row, scrolling the region when at its bottom; nothing
/// on row 24. Reports as "lineFeed".
void lineFeed();
/// Scrolls the region up one line; a region that starts at row 0 feeds the scrollback. Reports as "scrollUp".
void scrollUp(std::int16_t immediate);
/// Scrolls the region down one line, at once on the window. Reports as "scrollDown".
void scrollDown();
/// Appends a copy of a screen record (0..24) to the scrollback. Reports as "insBuf".
void insBuf(std::int16_t record);

void feedLine(HostInput& input);               ///< LF; the interpreter yields behind it
void index();                                  ///< ESC D
void nextLine();                               ///< ESC E
void reverseIndex();                           ///< ESC M
void setRegion(const Parameters& parameters);  ///< r

}  // namespace qxterm
