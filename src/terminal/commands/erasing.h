#pragma once

#include <cstdint>

#include "terminal/commands/sequence.h"

/// Erasing, and filling the page.
namespace qxterm {

/// Erases a rectangle of cells, inclusive, on the window and in the store; the characters of column colTo
/// stay in the store. Cells that do not exist are left out. Reports as "scrErase".
void scrErase(std::int32_t colFrom, std::int32_t colTo, std::int32_t rowFrom, std::int32_t rowTo);

void eraseInDisplay(const Parameters& parameters);  ///< J
void eraseInLine(const Parameters& parameters);     ///< K
/// ESC # 8: the letter E in every cell of the page. ESC # 3 to 6, line sizes, do nothing; any other byte
/// behind "#" is left as ordinary data.
void fillOrLineSize(HostInput& input);

}  // namespace qxterm
