#include "terminal/view/selection_marks.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string>

#include "diag/error_trap.h"
#include "terminal/screen_store.h"
#include "terminal/scrolling.h"
#include "terminal/view/cell_size.h"
#include "terminal/view/drawing.h"
#include "terminal/view/paint.h"
#include "terminal/view/screen_controls.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"

namespace qxterm {
namespace {

using RowCells = std::bitset<screenColumns>;

/// The cells that stand inverted on the window's page rows. Selection marks belong to lines, which scroll,
/// are overwritten and repainted; this is what the window shows of them at the moment.
std::array<RowCells, pageRows> inverted;

RowCells cells(std::int32_t first, std::int32_t last) {
    RowCells set;
    for (std::int32_t column = std::max(first, 0); column <= std::min(last, lastColumn); ++column) {
        set.set(static_cast<std::size_t>(column));
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
        if (end > column) picterm.invert(cellRect(column, row, end - column), Inversion::selection);
        column = end + 1;
    }
}

/// Columns of a row were drawn afresh, without inversion.
void redrawn(std::int32_t row, std::int32_t first, std::int32_t last) {
    if (row < 0 || row >= pageRows) return;
    RowCells& shown = inverted[static_cast<std::size_t>(row)];
    const RowCells drawn = cells(first, last);
    const RowCells again = wanted(row) & drawn;
    invertCells(row, again);
    shown = (shown & ~drawn) | again;
}

/// The window's pixels, and with them the inverted cells, moved.
void moved(const PixelRect& area, std::int32_t dy) {
    const std::int32_t top = area.top / lineHeight;
    const std::int32_t bottom = std::min(area.bottom / lineHeight, pageRows);
    const std::int32_t rows = dy / lineHeight;
    const auto before = inverted;
    for (std::int32_t row = top; row < bottom; ++row) {
        const std::int32_t from = row - rows;
        inverted[static_cast<std::size_t>(row)] =
            from >= top && from < bottom ? before[static_cast<std::size_t>(from)] : RowCells{};
    }
}

/// Inverts what is inverted and should not be, and the other way round. True when anything is inverted now.
bool bringInLine() {
    bool any = false;
    for (std::int32_t row = 0; row < pageRows; ++row) {
        RowCells& shown = inverted[static_cast<std::size_t>(row)];
        const RowCells now = wanted(row);
        invertCells(row, shown ^ now);
        shown = now;
        any = any || now.any();
    }
    return any;
}

/// A drag selects places of the view, not lines: what it covers stays where it is while the lines move.
void settled() {
    if (dragging()) (void)bringInLine();
}

}  // namespace

void showSel() {
    trapped("showSel", [] {
        // In the middle of output the window lags behind the records: inverted cells would be scrolled away
        // from the lines that they belong to.
        if (pendingScrolls > 0) flushBuf();
        const bool watch = bringInLine() || dragging() || selEndCol != -1;
        lineDrawn = watch ? redrawn : nullptr;
        windowScrolled = watch ? moved : nullptr;
        scrollSettled = watch ? settled : nullptr;
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

void clearMarks() {
    std::string unused;
    for (std::int16_t line = scrollbackTop; line <= lastVirtualLine; ++line) {
        std::int32_t first = 0;
        std::int32_t last = 0;
        selFunc(selOperation::clear, line, first, last, unused);
    }
}

void initMarks() {
    inverted.fill({});
    lineDrawn = nullptr;
    windowScrolled = nullptr;
    scrollSettled = nullptr;
}

}  // namespace qxterm
