#include "terminal/view/paint.h"

#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/input_busy.h"
#include "terminal/view/cell_size.h"
#include "terminal/view/cursor.h"
#include "terminal/view/drawing.h"
#include "terminal/view/screen_controls.h"

namespace qxterm {

std::int16_t scrollInProgress = 0;
bool (*paintLocalPrompt)() = nullptr;
void (*windowScrolled)(const PixelRect& area, std::int32_t dy) = nullptr;
void (*scrollSettled)() = nullptr;

namespace {

/// What the scroll in progress exposed.
PixelRect exposedBand;

}  // namespace

void picterm_Paint() {
    trapped("picterm_Paint", [] {
        const PixelRect clip = picterm.clipBox();
        if (scrollInProgress != 0 && clip.within(exposedBand)) return;
        if (modeSet(mode::drawingSuspended)) return;
        if (paintLocalPrompt != nullptr && paintLocalPrompt()) return;
        pendingScrolls = 0;
        const std::int32_t first = vscterm.value();
        for (std::int32_t row = 0; row < pageRows; ++row) paintWholeLine(virtualLine(first + row), row);
        paintWholeLine(lineOnRow(statusRow), statusRow);
        doAttr(curAttr, curFg, curBg);
        // While a block is interpreted the cursor is hidden; the end of the block shows it where it then
        // stands.
        if (!cursorBlinkOff && inputBusy == 0) toggleCursor(showCursor);
    });
}

void mbPaint() {
    trapped("mbPaint", [] {
        if (scrollInProgress == 0 && picterm.invalidAt(cursorPixelX(), cursorPixelY())) cursorShown = 0;
    });
}

void blinkTextStep() {
    textBlinkOff = !textBlinkOff;
    picterm.refresh();
}

void scrollWindow(const PixelRect& area, std::int32_t dy) {
    scrollInProgress = 1;
    exposedBand = area;
    if (dy < 0 && -dy < area.height()) exposedBand.top = area.bottom + dy;
    if (dy > 0 && dy < area.height()) exposedBand.bottom = area.top + dy;
    picterm.scroll(area, dy);
    if (windowScrolled != nullptr) windowScrolled(area, dy);
    picterm.update();
    scrollInProgress = 0;
    if (scrollSettled != nullptr) scrollSettled();
}

}  // namespace qxterm
