#pragma once

#include <cstdint>

namespace qxterm {

/// Marks the lines between two ordered end points, the last column inclusive (80 for the end of a line).
void markLines(std::int32_t firstCol, std::int32_t firstRow, std::int32_t lastCol, std::int32_t lastRow);
/// Clears the mark of every line.
void clearMarks();
/// Nothing is inverted on the window.
void initMarks();

}  // namespace qxterm
