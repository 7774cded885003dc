#include "terminal/scrolling.h"

#include <algorithm>

#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/screen_operations.h"
#include "terminal/view/cell_size.h"
#include "terminal/view/drawing.h"
#include "terminal/view/paint.h"
#include "terminal/view/screen_controls.h"

namespace qxterm {
namespace {

/// The ordinary flush: one run waits for a line that is drawn up to date, and there is nothing else to do.
bool onlyRunWaits(const ScreenLine& line) {
    return pendingScrolls == 0 && recordsToDraw == 0 && line.dirtyLast == -1 &&
           (line.lineFlags & lineFlag::whole) == 0 && !modeSet(mode::drawingSuspended);
}

/// putBuf and lineOut in one.
void storeAndDraw(ScreenLine& line) {
    const std::int32_t first = curCol;
    const std::int32_t count = pendingCount;
    storeOrdinaryRun(line);
    line.dirtyFirst = 0;
    line.usedLength = std::max(line.usedLength, static_cast<std::int16_t>(curCol - 1));
    drawRun(line, first, count, curRow);
}

}  // namespace

void lineFeed() {
    trapped("lineFeed", [] {
        putBuf();
        if (curRow == statusRow) return;
        if (curRow == regionBottom) {
            scrollUp(scrollDeferred);
        } else {
            curRow = std::min(curRow + 1, pageRows - 1);
        }
    });
}

void scrollUp(std::int16_t immediate) {
    trapped("scrollUp", [&] {
        const std::int32_t record = rowMap[subscript(regionTop, 0, screenRows - 1)];
        if (regionTop == 0) insBuf(static_cast<std::int16_t>(record));
        std::copy(rowMap.begin() + regionTop + 1, rowMap.begin() + regionBottom + 1,
                  rowMap.begin() + regionTop);
        rowMap[subscript(regionBottom, 0, screenRows - 1)] = record;
        blankRecord(record);
        if (immediate == scrollImmediate) {
            scrollWindow(scrollRect, -lineHeight);
        } else if (++pendingScrolls > scrollFlushLimit) {
            flushBuf();
        }
    });
}

void scrollDown() {
    trapped("scrollDown", [] {
        const std::int32_t record = rowMap[subscript(regionBottom, 0, screenRows - 1)];
        std::copy_backward(rowMap.begin() + regionTop, rowMap.begin() + regionBottom,
                           rowMap.begin() + regionBottom + 1);
        rowMap[subscript(regionTop, 0, screenRows - 1)] = record;
        blankRecord(record);
        scrollWindow(scrollRect, lineHeight);
    });
}

void insBuf(std::int16_t record) {
    trapped("insBuf", [&] {
        if (scrollbackTop > 1) {
            --scrollbackTop;
            vscterm.setMinimum(scrollbackTop);
        } else {
            const std::int32_t turns = scrollbackTurns + 1;
            scrollbackTurns = static_cast<std::int16_t>(turns == scrollbackLines ? 0 : turns);
        }
        const ScreenLine& line = screenLines[subscript(record, 0, screenRows - 1)];
        ScreenLine& stored = scrollback[static_cast<std::size_t>(scrollbackMap(scrollbackLines))];
        copyLine(stored, line);
        // A line that was not drawn yet still shows all that it held.
        stored.usedLength = std::max(line.usedLength, line.dirtyLast);
    });
}

void flushBuf() {
    trapped("flushBuf", [] {
        ScreenLine* ordinary = lineOfOrdinaryRun();
        if (ordinary != nullptr && onlyRunWaits(*ordinary)) {
            storeAndDraw(*ordinary);
            return;
        }
        putBuf();
        if (pendingScrolls > 0) {
            const std::int32_t lines = pendingScrolls;
            scrollWindow(scrollRect, -lineHeight * lines);
            pendingScrolls = 0;
        }
        if (recordsToDraw == 0) return;
        const bool single = (recordsToDraw & (recordsToDraw - 1)) == 0;
        if (single && curRow >= 0 && curRow < screenRows) {
            // the ordinary case: only the cursor's line was written
            const std::int32_t record = rowMap[static_cast<std::size_t>(curRow)];
            if ((recordsToDraw & (1U << static_cast<std::uint32_t>(record))) != 0) {
                lineOut(screenLines[static_cast<std::size_t>(record)], curRow);
                return;
            }
        }
        for (std::int32_t row = 0; row < screenRows; ++row) {
            ScreenLine& line = lineOnRow(row);
            if ((line.lineFlags & lineFlag::draw) != 0) lineOut(line, row);
        }
    });
}

void lineOut(ScreenLine& line, std::int32_t row) {
    trapped("lineOut", [&] {
        const std::int32_t first = line.dirtyFirst;
        const std::int32_t last = line.dirtyLast;
        line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~lineFlag::draw);
        if (const auto record = &line - screenLines.data(); record >= 0 && record < screenRows) {
            recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
        }
        line.dirtyFirst = 0;
        line.usedLength = std::max(line.usedLength, line.dirtyLast);
        line.dirtyLast = -1;
        if (modeSet(mode::drawingSuspended)) return;
        drawCells(line, first, last, row);
        if ((line.lineFlags & lineFlag::whole) != 0) {
            paintLine(line, 0, curRow);  // on the cursor's row, whatever row the line stands on
            doAttr(curAttr, curFg, curBg);
            line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~lineFlag::whole);
        }
    });
}

}  // namespace qxterm
