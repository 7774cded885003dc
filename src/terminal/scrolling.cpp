#include "terminal/scrolling.h"

#include <algorithm>

#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/ordinary_run.h"
#include "terminal/screen_operations.h"
#include "terminal/view/drawing.h"
#include "terminal/view/paint.h"
#include "terminal/view/screen_controls.h"

namespace qxterm {
namespace {

/// The ordinary flush: one ordinary run waits for a line that is drawn up to date, and there is nothing else
/// to do. The line, else null.
ScreenLine* lineOfOnlyRun() {
    constexpr auto otherModes = static_cast<std::int16_t>(mode::insert | mode::drawingSuspended);
    const bool othersWait = (static_cast<std::uint32_t>(pendingScrolls) | recordsToDraw) != 0;
    if (pendingCount <= 0 || othersWait) return nullptr;
    ScreenLine* line = lineOfOrdinaryRun(pendingCount, otherModes);
    const bool upToDate =
        line != nullptr && line->dirtyLast == -1 && (line->lineFlags & lineFlag::whole) == 0;
    return upToDate ? line : nullptr;
}

/// putBuf and lineOut in one, for an ordinary run of that many characters.
inline void storeAndDraw(ScreenLine& line, std::int32_t count) {
    const std::int32_t first = curCol;
    storeOrdinaryRun(line, pendingText.data(), count);
    dropPending();
    line.dirtyFirst = 0;
    line.usedLength = std::max(line.usedLength, static_cast<std::int16_t>(first + count - 1));
    drawRun(line, first, count, curRow);
}

/// The same out of the way of the characters that come with a command between any two.
[[gnu::noinline]] void storeAndDrawMany(ScreenLine& line) { storeAndDraw(line, pendingCount); }

/// Whatever waits: the pending run, scrolls of the window, lines to be drawn.
[[gnu::noinline]] void flushAll() {
    putBuf();
    if (pendingScrolls > 0) {
        const std::int32_t lines = pendingScrolls;
        scrollRegion(-lines);
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
}

/// Makes room for one more line in the scrollback: the slot that it goes to.
ScreenLine& oldestSlot() {
    if (scrollbackTop > 1) {
        --scrollbackTop;
        vscterm.setMinimum(scrollbackTop);
    } else {
        const std::int32_t turns = scrollbackTurns + 1;
        scrollbackTurns = static_cast<std::int16_t>(turns == scrollbackLines ? 0 : turns);
    }
    return scrollback[newestSlot()];
}

/// The used length that a line has in the scrollback: one that was not drawn yet still shows all that it
/// held.
std::int16_t heldLength(const ScreenLine& line) { return std::max(line.usedLength, line.dirtyLast); }

/// True when scrollUp would move the whole page, of which nothing can fail.
bool scrollsWholePage() { return regionTop == 0 && regionBottom == pageRows - 1 && !detail::faultPlanned; }

/// scrollUp's part on the records then: insBuf and blankRecord go over the record together.
void scrollPage() {
    const std::int32_t record = rowMap[0];
    ScreenLine& line = *(screenLines.data() + record);
    ScreenLine& stored = oldestSlot();
    const std::int16_t held = heldLength(line);
    moveLine(stored, line, blankLine);
    stored.usedLength = held;
    recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
    std::copy(rowMap.begin() + 1, rowMap.begin() + pageRows, rowMap.begin());
    rowMap[pageRows - 1] = record;
}

/// Draws a line again from its beginning: on the cursor's row, whatever row the line stands on.
[[gnu::noinline]] void redrawWhole(ScreenLine& line) {
    paintLine(line, 0, curRow);
    doAttr(curAttr, curFg, curBg);
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~lineFlag::whole);
}

}  // namespace

void lineFeed() {
    trapped("lineFeed", [] {
        putBuf();
        if (curRow == statusRow) return;
        if (curRow != regionBottom) {
            curRow = std::min(curRow + 1, pageRows - 1);
        } else if (scrollsWholePage()) {
            scrollPage();
            if (++pendingScrolls > scrollFlushLimit) flushBuf();
        } else {
            scrollUp(scrollDeferred);
        }
    });
}

void scrollUp(std::int16_t immediate) {
    trapped("scrollUp", [immediate] {
        const std::int32_t record = rowMap[subscript(regionTop, 0, screenRows - 1)];
        if (regionTop == 0) insBuf(static_cast<std::int16_t>(record));
        std::copy(rowMap.begin() + regionTop + 1, rowMap.begin() + regionBottom + 1,
                  rowMap.begin() + regionTop);
        rowMap[subscript(regionBottom, 0, screenRows - 1)] = record;
        blankRecord(record);
        if (immediate == scrollImmediate) {
            scrollRegion(-1);
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
        scrollRegion(1);
    });
}

void insBuf(std::int16_t record) {
    trapped("insBuf", [record] {
        ScreenLine& stored = oldestSlot();
        const ScreenLine& line = screenLines[subscript(record, 0, screenRows - 1)];
        const std::int16_t held = heldLength(line);
        copyLine(stored, line);
        stored.usedLength = held;
    });
}

void flushBuf() {
    trapped("flushBuf", [] {
        if (ScreenLine* line = lineOfOnlyRun()) [[likely]] {
            pendingCount == 1 ? storeAndDraw(*line, 1) : storeAndDrawMany(*line);
        } else if (pendingCount != 0 || pendingScrolls != 0 || recordsToDraw != 0) {
            flushAll();
        }
    });
}

void lineOut(ScreenLine& line, std::int32_t row) {
    trapped("lineOut", [&line, row] {
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
        if ((line.lineFlags & lineFlag::whole) != 0) [[unlikely]]
            redrawWhole(line);
    });
}

}  // namespace qxterm
