#include "terminal/commands/scrolling.h"

#include <algorithm>

#include "diag/error_trap.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm {
namespace {

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
std::int16_t heldLength(const ScreenLine& line) {
    const bool drawn = (line.lineFlags & lineFlag::draw) == 0;
    return drawn ? line.usedLength : std::max(line.usedLength, line.dirtyLast);
}

/// True when scrollUp would move the whole page, of which nothing can fail.
bool scrollsWholePage() { return regionTop == 0 && regionBottom == pageRows - 1 && shortWaysOpen(); }

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

void feedLine(HostInput& input) {
    lineFeed();
    input.yields = true;
}

void index() {
    flushBuf();
    if (curRow == statusRow) return;
    if (curRow == regionBottom) {
        scrollUp(scrollImmediate);
    } else {
        curRow = std::min(curRow + 1, pageRows - 1);
    }
}

void nextLine() {
    putBuf();
    curCol = 0;
    lineFeed();
}

void reverseIndex() {
    flushBuf();
    if (curRow == statusRow) return;
    if (curRow == regionTop) {
        scrollDown();
    } else {
        curRow = std::max(curRow - 1, 0);
    }
}

void setRegion(const Parameters& parameters) {
    std::int16_t top = parameters.valueOr(1, 1);
    std::int16_t bottom = parameters.valueOr(2, 24);
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

}  // namespace qxterm
