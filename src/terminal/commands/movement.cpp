#include "terminal/commands/movement.h"

#include <algorithm>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/pending_run.h"
#include "terminal/model/screen_store.h"

namespace qxterm {
namespace {

/// Column rounded down to a multiple of 8, towards minus infinity.
constexpr std::int32_t tabFloor(std::int32_t column) { return column & ~7; }

/// How often, or how far.
std::int16_t count(const Parameters& parameters) { return parameters.valueOr(1, 1); }

}  // namespace

void cursorLeft() {
    trapped("cursorLeft", [] {
        flushBuf();
        curCol = std::max(curCol - 1, 0);
    });
}

void horizontalTab() {
    flushBuf();
    if (curCol % 8 == 0) ++curCol;
    curCol = std::min(tabFloor(curCol) + 8, screenColumns);
}

void returnCarriage() {
    putBuf();
    curCol = 0;
}

void cursorPosition(const Parameters& parameters) {
    flushBuf();
    const std::int32_t row = parameters.valueOr(1, 1) - 1;
    const std::int32_t column = parameters.valueOr(2, 1) - 1;
    curCol = column > screenColumns ? lastColumn : std::max(column, 0);
    if (modeSet(mode::origin)) {
        curRow = std::clamp(row + regionTop, regionTop, regionBottom);
    } else {
        curRow = std::clamp(row, 0, pageRows - 1);
    }
}

void cursorUp(const Parameters& parameters) {
    flushBuf();
    if (curRow != statusRow) curRow = std::max(curRow - count(parameters), regionTop);
}

void cursorDown(const Parameters& parameters) {
    flushBuf();
    if (curRow != statusRow) curRow = std::min(curRow + count(parameters), regionBottom);
}

void cursorForward(const Parameters& parameters) {
    flushBuf();
    curCol += count(parameters);
    if (curCol >= screenColumns) curCol = lastColumn;
}

void cursorBack(const Parameters& parameters) {
    flushBuf();
    curCol = std::max(curCol - count(parameters), 0);
}

void backTab(const Parameters& parameters) {
    flushBuf();
    if (curCol % 8 == 0) --curCol;
    curCol = tabFloor(curCol);
    curCol = std::max(curCol - toInt16(std::int64_t{8} * (count(parameters) - 1)), 0);
}

}  // namespace qxterm
