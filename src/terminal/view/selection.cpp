#include "terminal/view/selection.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "terminal/drawing/drawing.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection_drag.h"
#include "terminal/view/selection_marks.h"

namespace qxterm {

std::int32_t selStartCol = 0;
std::int32_t selStartRow = 0;
std::int32_t selEndCol = -1;
std::int32_t selEndRow = 0;
void (*enableEditItems)() = [] {};

void selFunc(std::int16_t operation, std::int16_t line, std::int32_t& first, std::int32_t& last,
             std::string& text) {
    trapped("selFunc", [&] {
        ScreenLine& record = virtualLine(line);
        if (operation == selOperation::setRange) {
            markSelected(record, toInt16(first), toInt16(last));
            return;
        }
        text.clear();
        first = -1;
        last = -1;
        if ((record.lineFlags & lineFlag::selected) == 0) return;
        if (operation == selOperation::clear) {
            clearSelected(record);
            return;
        }
        first = record.selFirst;
        last = record.selLast;
        if (operation != selOperation::getText) return;
        const std::int32_t begin = std::clamp(first, 0, screenColumns);
        const std::int32_t end = std::clamp(last + 1, begin, screenColumns);
        text.assign(record.text.begin() + begin, record.text.begin() + end);
        text.erase(text.find_last_not_of(' ') + 1);
    });
}

std::string getSel() {
    std::string result;
    trapped("getSel", [&] {
        std::int32_t lastColumnSeen = -1;
        for (std::int16_t line = scrollbackTop; line <= lastVirtualLine; ++line) {
            std::int32_t first = 0;
            std::int32_t last = 0;
            std::string text;
            selFunc(selOperation::getText, line, first, last, text);
            if (text.empty()) continue;
            if (!result.empty()) result += g_sCrLf;
            result += text;
            lastColumnSeen = last;
        }
        if (lastColumnSeen == lastColumn) result += g_sCrLf;
    });
    return result;
}

void orderSel(std::int32_t& firstCol, std::int32_t& firstRow, std::int32_t& lastCol, std::int32_t& lastRow) {
    auto start = std::pair{selStartRow, selStartCol};
    auto end = std::pair{selEndRow, selEndCol};
    if (end < start) std::swap(start, end);
    firstRow = std::clamp(start.first, 0, lastVirtualLine);
    firstCol = std::clamp(start.second, 0, screenColumns);
    lastRow = std::clamp(end.first, 0, lastVirtualLine);
    lastCol = std::clamp(end.second, 0, screenColumns);
}

void selectBetween(std::int32_t startCol, std::int32_t startRow, std::int32_t endCol, std::int32_t endRow) {
    selStartCol = startCol;
    selStartRow = startRow;
    selEndCol = endCol;
    selEndRow = endRow;
    markSelection();
}

bool hasSelection() { return selEndCol != -1 && !dragging(); }

void removeSelection() {
    stopDrag();
    clearMarks();
    selEndCol = -1;
    showSel();
}

void resetSelection() {
    selStartCol = 0;
    selStartRow = 0;
    selEndCol = -1;
    selEndRow = 0;
    resetDrag();
    watchDrawing(false);
}

}  // namespace qxterm
