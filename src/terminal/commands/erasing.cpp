#include "terminal/commands/erasing.h"

#include <algorithm>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/attributes.h"

namespace qxterm {
namespace {

void fillWithE() {
    putBuf();
    for (std::int32_t row = 0; row < pageRows; ++row) {
        blankRecord(rowMap[static_cast<std::size_t>(row)]);
        ScreenLine& line = lineOnRow(row);
        line.text.fill('E');
        line.extent = screenColumns;
        line.dirtyLast = lastColumn;
        line.usedLength = lastColumn;
    }
    picterm_Paint();
}

}  // namespace

void scrErase(std::int32_t colFrom, std::int32_t colTo, std::int32_t rowFrom, std::int32_t rowTo) {
    trapped("scrErase", [&] {
        if (colTo < colFrom || rowTo < rowFrom) return;
        blankArea(colFrom, rowFrom, colTo - colFrom + 1, rowTo - rowFrom + 1);
        const std::int32_t first = std::clamp(colFrom, 0, screenColumns);
        const std::int32_t blanked =
            std::clamp(colTo, first, screenColumns);  // one cell fewer than the words below
        const std::int32_t words = std::clamp(colTo + 1, first, screenColumns);
        for (std::int32_t row = rowFrom; row <= rowTo; ++row) {
            ScreenLine& line = lineOnRow(row);
            std::fill(line.text.begin() + first, line.text.begin() + blanked, ' ');
            if (line.usedLength > colFrom) line.usedLength = toInt16(colFrom);
            std::fill(line.attrs.begin() + first + 1, line.attrs.begin() + words + 1, defaultAttr);
        }
    });
}

void eraseInDisplay(const Parameters& parameters) {
    flushBuf();
    const std::int16_t what = parameters.valueOr(1, 0);
    if (what == 1) scrErase(0, lastColumn, 0, curRow);
    if (what == 0 || what == 1) scrErase(curCol, lastColumn, curRow, curRow);
    if (what == 0) scrErase(0, lastColumn, curRow + 1, pageRows - 1);
    if (what == 2) scrErase(0, lastColumn, 0, pageRows - 1);
}

void eraseInLine(const Parameters& parameters) {
    flushBuf();
    switch (parameters.valueOr(1, 0)) {
        case 0: scrErase(curCol, lastColumn, curRow, curRow); break;
        case 1: scrErase(0, curCol, curRow, curRow); break;
        case 2: scrErase(0, lastColumn, curRow, curRow); break;
        default: break;
    }
}

void fillOrLineSize(HostInput& input) {
    if (input.atEnd()) {
        input.waitForMore();
        return;
    }
    const unsigned char which = input.next();
    if (which == '8') fillWithE();
    if (which == '8' || (which >= '3' && which <= '6')) ++input.position;
}

}  // namespace qxterm
