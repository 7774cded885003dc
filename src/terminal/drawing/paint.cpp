#include "terminal/drawing/paint.h"

#include <algorithm>
#include <cstdlib>

#include "diag/error_trap.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/model/input_busy.h"

namespace qxterm {

std::int16_t scrollInProgress = 0;
bool (*paintLocalPrompt)() = [] { return false; };
bool (*localPromptShown)() = [] { return false; };
void (*windowScrolled)() = [] {};

namespace {

/// What the scroll in progress exposed.
CellArea exposedBand;

/// False in a paint of other cells only: the cursor would count as shown without having been drawn.
bool cursorPaintable() {
    return cursorShown != 0 || picterm.drawsAt(curCol == screenColumns ? lastColumn : curCol, curRow);
}

}  // namespace

void picterm_Paint() {
    trapped("picterm_Paint", [] {
        if (scrollInProgress != 0 && picterm.clipBox().within(exposedBand)) return;
        if (modeSet(mode::drawingSuspended)) return;
        if (paintLocalPrompt()) return;
        dropPendingScrolls();
        const std::int32_t first = vscterm.value();
        for (std::int32_t row = 0; row < pageRows; ++row) paintWholeLine(virtualLine(first + row), row);
        paintWholeLine(lineOnRow(statusRow), statusRow);
        doAttr(curAttr, curFg, curBg);
        // While a block is interpreted the cursor is hidden; the end of the block shows it where it then
        // stands.
        if (!cursorBlinkOff && inputBusy == 0 && cursorPaintable()) toggleCursor(showCursor);
    });
}

void mbPaint() {
    trapped("mbPaint", [] {
        if (scrollInProgress != 0) return;
        // The window lags behind the records: a part of it alone cannot be drawn in place.
        if (pendingScrolls > 0) picterm.refresh();
        if (picterm.invalidAt(shownCursorColumn(), shownCursorRow())) forgetShownCursor();
    });
}

void blinkTextStep() {
    setTextBlinkOff(!textBlinkOff);
    picterm.refresh();
}

void resetPaint() {
    scrollInProgress = 0;
    setTextBlinkOff(false);
}

void scrollWindow(std::int32_t first, std::int32_t last, std::int32_t by) {
    scrollInProgress = 1;
    const std::int32_t exposed = std::min(std::abs(by), last - first + 1);
    exposedBand = {0, by < 0 ? last - exposed + 1 : first, screenColumns, exposed};
    picterm.scroll(first, last, by);
    picterm.update();
    scrollInProgress = 0;
    if (drawingWatched) windowScrolled();
}

void scrollRegion(std::int32_t by) {
    if (lineHeight <= 0) return;  // the window has no size yet
    scrollWindow(scrollRect.top / lineHeight, scrollRect.bottom / lineHeight - 1, by);
}

}  // namespace qxterm
