#pragma once

#include <cstdint>

namespace qxterm {

/// Marks the lines between two ordered end points, the last column inclusive (80 for the end of a line).
void markLines(std::int32_t firstCol, std::int32_t firstRow, std::int32_t lastCol, std::int32_t lastRow);
/// Marks what lies between the end points, which are not the same, and enables Copy.
void markSelection();
/// Clears the mark of every line.
void clearMarks();

/// Columns of a row were drawn afresh, without inversion: inverts those that are selected.
void invertRedrawnCells(std::int32_t row, std::int32_t first, std::int32_t last);
/// A drag selects places of the view, not lines: what it covers stays where it is while the lines move.
void keepDragInPlace();

}  // namespace qxterm
