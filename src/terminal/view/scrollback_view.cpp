#include "terminal/view/scrollback_view.h"

#include <algorithm>
#include <cstdlib>

#include "diag/error_trap.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"

namespace qxterm {
namespace {

/// Virtual line at the top of the view as it stands on the window.
std::int16_t shownTop = liveView;

void drawViewRows(std::int32_t first, std::int32_t last) {
    for (std::int32_t row = first; row <= last; ++row)
        paintWholeLine(virtualLine(vscterm.value() + row), row);
}

/// Moves the picture by so many rows and draws what comes into view.
void moveRows(std::int32_t down) {
    if (localPromptShown()) {
        picterm.refresh();  // its lines stay where they are, without the marks of those below
    } else if (pendingScrolls > 0) {
        // Output is half way: the window lags behind the records, so nothing on it can be moved into place.
        dropPendingScrolls();
        drawViewRows(0, pageRows - 1);
    } else if (std::abs(down) < pageRows) {
        scrollWindow(0, pageRows - 1, down);
        if (down > 0) {
            drawViewRows(0, down - 1);
        } else {
            drawViewRows(pageRows + down, pageRows - 1);
        }
    } else {
        drawViewRows(0, pageRows - 1);
    }
}

void moveView() {
    const std::int16_t top = vscterm.value();
    const std::int16_t before = shownTop;
    if (top == before) return;
    if (before == liveView) {
        toggleCursor(hideCursor);
        keepCursorAway(true);
    }
    shownTop = top;
    moveRows(before - top);
    if (top == liveView) {
        keepCursorAway(false);
        if (inputBusy == 0 && !localPromptShown()) toggleCursor(showCursor);
    }
}

}  // namespace

void vscterm_Change() { trapped("vscterm_Change", moveView); }

void vscterm_Scroll() { trapped("vscterm_Scroll", moveView); }

void wheelView(short lines) {
    const int wanted = std::clamp<int>(vscterm.value() + lines, vscterm.minimum(), vscterm.maximum());
    vscterm.setValue(static_cast<std::int16_t>(wanted));
}

void resetScrollbackView() { shownTop = liveView; }

}  // namespace qxterm
