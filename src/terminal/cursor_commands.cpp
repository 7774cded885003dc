#include "terminal/cursor_commands.h"

#include <algorithm>

#include "diag/checked.h"
#include "terminal/screen_store.h"
#include "terminal/scrolling.h"
#include "terminal/sequence_parser.h"
#include "terminal/view/cell_size.h"

namespace qxterm {
namespace {

std::int16_t count() { return escParams.empty() ? std::int16_t{1} : escParams[0]; }

}  // namespace

void cursorPosition(std::span<const std::int16_t> parameters) {
    flushBuf();
    const std::int32_t row = !parameters.empty() ? parameters[0] - 1 : 0;
    const std::int32_t column = parameters.size() >= 2 ? parameters[1] - 1 : 0;
    curCol = column > screenColumns ? lastColumn : std::max(column, 0);
    if (modeSet(mode::origin)) {
        curRow = std::clamp(row + regionTop, regionTop, regionBottom);
    } else {
        curRow = std::clamp(row, 0, pageRows - 1);
    }
}

void setRegion() {
    std::int16_t top = escParams.empty() ? std::int16_t{1} : escParams[0];
    std::int16_t bottom = escParams.size() < 2 ? std::int16_t{24} : escParams[1];
    if (top < 1 || top > 23) top = 1;
    if (bottom < 1 || bottom > 24) bottom = 24;
    if (top < bottom) {
        flushBuf();
        curCol = 0;
        curRow = 0;
        regionTop = top - 1;
        regionBottom = bottom - 1;
    }
    setScrollRect();
}

void cursorUp() {
    flushBuf();
    if (curRow != statusRow) curRow = std::max(curRow - count(), regionTop);
}

void cursorDown() {
    flushBuf();
    if (curRow != statusRow) curRow = std::min(curRow + count(), regionBottom);
}

void cursorForward() {
    flushBuf();
    curCol += count();
    if (curCol >= screenColumns) curCol = lastColumn;
}

void cursorBack() {
    flushBuf();
    curCol = std::max(curCol - count(), 0);
}

void toStatusRow() {
    flushBuf();
    curRow = statusRow;
    if (escParams.size() >= 2) curCol = escParams[1] - 1;
}

void backTab() {
    flushBuf();
    if (curCol % 8 == 0) --curCol;
    curCol = tabFloor(curCol);
    curCol = std::max(curCol - toInt16(std::int64_t{8} * (count() - 1)), 0);
}

}  // namespace qxterm
