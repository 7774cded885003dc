#include "terminal/line_commands.h"

#include <algorithm>
#include <array>

#include "terminal/screen_store.h"
#include "terminal/scrolling.h"
#include "terminal/view/drawing.h"
#include "terminal/view/paint.h"

namespace qxterm {
namespace {

bool cursorInRegion() { return curRow >= regionTop && curRow <= regionBottom; }

/// Moves the records of rows from `row` on by one for each step of the walk, `count` rows back, and puts the
/// first `count` records that the walk overwrites, blanked, at the other end: at `freed`, `freed` + step and
/// so on.
void walkRows(std::int32_t row, std::int32_t steps, std::int32_t step, std::int32_t count,
              std::int32_t freed) {
    std::array<std::int32_t, screenRows> aside{};
    std::int32_t kept = 0;
    for (std::int32_t k = 0; k < steps; ++k, row += step) {
        auto& entry = rowMap[static_cast<std::size_t>(row)];
        if (kept < count) aside[static_cast<std::size_t>(kept++)] = entry;
        entry = rowMap[static_cast<std::size_t>(row + step * count)];
    }
    for (std::int32_t k = 0; k < kept; ++k, freed -= step) {
        rowMap[static_cast<std::size_t>(freed)] = aside[static_cast<std::size_t>(k)];
        blankRecord(aside[static_cast<std::size_t>(k)]);
    }
}

void redrawRegionRest() {
    blankArea(0, curRow, screenColumns, regionBottom - curRow + 1);
    picterm_Paint();
}

}  // namespace

void insertLines(std::int16_t count) {
    if (!cursorInRegion()) return;
    flushBuf();
    curCol = 0;
    const std::int32_t rows = std::min<std::int32_t>(count, regionBottom - curRow + 1);
    walkRows(regionBottom, regionBottom - curRow - rows + 1, -1, rows, curRow);
    redrawRegionRest();
}

void deleteLines(std::int16_t count) {
    if (!cursorInRegion()) return;
    flushBuf();
    curCol = 0;
    const std::int32_t rows = std::min<std::int32_t>(count, regionBottom - curRow);
    walkRows(curRow, regionBottom - curRow - rows + 1, 1, rows, regionBottom);
    redrawRegionRest();
}

}  // namespace qxterm
