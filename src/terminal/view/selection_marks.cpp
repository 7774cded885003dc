#include "terminal/view/selection_marks.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string>

#include "diag/error_trap.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"

namespace qxterm {
namespace {

using RowCells = std::bitset<screenColumns>;

RowCells cells(std::int32_t first, std::int32_t last) {
    RowCells set;
    for (std::int32_t column = std::max(first, 0); column <= std::min(last, lastColumn); ++column) {
        set.set(static_cast<std::size_t>(column));
    }
    return set;
}

/// What a page row shows as selected.
RowCells shown(std::int32_t row) {
    RowCells set;
    const Picture::Row& cellsOfRow = picterm.picture().row(row);
    for (std::size_t column = 0; column < set.size(); ++column) {
        if (cellsOfRow[column].selected()) set.set(column);
    }
    return set;
}

/// What a page row should show: the drag in progress, else the line's mark.
RowCells wanted(std::int32_t row) {
    const std::int32_t number = vscterm.value() + row;
    if (dragging()) {
        if (selEndCol == -1) return {};
        std::int32_t firstCol = 0;
        std::int32_t firstRow = 0;
        std::int32_t lastCol = 0;
        std::int32_t lastRow = 0;
        orderSel(firstCol, firstRow, lastCol, lastRow);
        if (number < firstRow || number > lastRow) return {};
        return cells(number == firstRow ? firstCol : 0, number == lastRow ? lastCol - 1 : lastColumn);
    }
    const ScreenLine& line = virtualLine(number);
    return (line.lineFlags & lineFlag::selected) != 0 ? cells(line.selFirst, line.selLast) : RowCells{};
}

void invertCells(std::int32_t row, const RowCells& change) {
    for (std::int32_t column = 0; column < screenColumns;) {
        std::int32_t end = column;
        while (end < screenColumns && change.test(static_cast<std::size_t>(end))) ++end;
        if (end > column) picterm.invert({column, row, end - column, 1}, Inversion::selection);
        column = end + 1;
    }
}

/// Inverts what is inverted and should not be, and the other way round. True when anything is inverted now.
bool bringInLine() {
    bool any = false;
    for (std::int32_t row = 0; row < pageRows; ++row) {
        const RowCells now = wanted(row);
        invertCells(row, shown(row) ^ now);
        any = any || now.any();
    }
    return any;
}

}  // namespace

void invertRedrawnCells(std::int32_t row, std::int32_t first, std::int32_t last) {
    if (row < 0 || row >= pageRows) return;
    invertCells(row, (shown(row) ^ wanted(row)) & cells(first, last));
}

void keepDragInPlace() {
    if (dragging()) (void)bringInLine();
}

void showSel() {
    trapped("showSel", [] {
        // In the middle of output the window lags behind the records: inverted cells would be scrolled away
        // from the lines that they belong to.
        if (pendingScrolls > 0) flushBuf();
        watchDrawing(bringInLine() || dragging() || selEndCol != -1);
    });
}

void markLines(std::int32_t firstCol, std::int32_t firstRow, std::int32_t lastCol, std::int32_t lastRow) {
    std::string unused;
    for (std::int32_t row = firstRow; row <= lastRow; ++row) {
        std::int32_t first = row == firstRow ? firstCol : 0;
        std::int32_t last = row == lastRow ? lastCol : screenColumns;
        selFunc(selOperation::setRange, static_cast<std::int16_t>(row), first, last, unused);
    }
}

void markSelection() {
    std::int32_t firstCol = 0;
    std::int32_t firstRow = 0;
    std::int32_t lastCol = 0;
    std::int32_t lastRow = 0;
    orderSel(firstCol, firstRow, lastCol, lastRow);
    if (--lastCol < 0) {
        lastCol = screenColumns;
        --lastRow;
    }
    markLines(firstCol, firstRow, lastCol, lastRow);
    enableEditItems();
}

void clearMarks() {
    std::string unused;
    for (std::int16_t line = scrollbackTop; line <= lastVirtualLine; ++line) {
        std::int32_t first = 0;
        std::int32_t last = 0;
        selFunc(selOperation::clear, line, first, last, unused);
    }
}

}  // namespace qxterm
