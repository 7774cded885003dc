#include "terminal/drawing/cursor.h"

#include "diag/error_trap.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm {

std::int16_t cursorShown = 0;
bool cursorBlinkOff = false;
std::int16_t cursorHiddenWord = 0;

namespace {

constexpr std::int16_t blinkPeriod = 250;  // ms

// Where the cursor was drawn last.
std::int32_t shownCol = 0;
std::int32_t shownRow = 0;

/// Column 80 stands behind the last cell and is drawn on it.
std::int32_t drawnColumn(std::int32_t column) { return column == screenColumns ? lastColumn : column; }

void invertCursor(std::int32_t column, std::int32_t row) {
    picterm.invert({drawnColumn(column), row, 1, 1},
                   modeSet(mode::underlineCursor) ? Inversion::underlineCursor : Inversion::cursor);
}

}  // namespace

std::int32_t shownCursorColumn() { return drawnColumn(shownCol); }
std::int32_t shownCursorRow() { return shownRow; }

void toggleCursor(std::int16_t show) {
    trapped("toggleCursor", [&] {
        if (modeSet(mode::drawingSuspended | mode::cursorHidden) || cursorHiddenWord != 0) return;
        if (show != 0 && cursorShown == 0) {
            invertCursor(curCol, curRow);
            cursorShown = -1;
        } else if (show == 0 && cursorShown != 0) {
            invertCursor(shownCol, shownRow);
            cursorShown = 0;
        }
        shownCol = curCol;
        shownRow = curRow;
    });
}

void forgetShownCursor() { cursorShown = 0; }

void keepCursorAway(bool away) { cursorHiddenWord = away ? std::int16_t{-1} : std::int16_t{0}; }

void startCursorBlink() { addTimer(timerRepeated, timerAction::blinkCursor, blinkPeriod); }

void stopCursorBlink() {
    delTimer(timerRepeated, timerAction::blinkCursor, blinkPeriod);
    cursorBlinkOff = false;
}

void blinkCursorStep() {
    cursorBlinkOff = !cursorBlinkOff;
    toggleCursor(cursorBlinkOff ? hideCursor : showCursor);
}

void mbResize(std::int16_t activation) {
    trapped("mbResize", [&] {
        if (activation == 0) {
            stopCursorBlink();
        } else if (modeSet(mode::cursorBlinking)) {
            startCursorBlink();
        }
    });
}

void resetCursorView() {
    cursorShown = 0;
    cursorBlinkOff = false;
    cursorHiddenWord = 0;
    shownCol = 0;
    shownRow = 0;
}

}  // namespace qxterm
