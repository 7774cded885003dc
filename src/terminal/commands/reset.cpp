#include "terminal/commands/reset.h"

#include "diag/error_trap.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"

namespace qxterm {

void (*endSelection)() = [] {};

namespace {

// What a full reset leaves of the mode word: wrap disabled, underline cursor, key bar, cursor blinking.
constexpr std::int16_t keptModes = static_cast<std::int16_t>(0xFFA8 - 0x10000);

void resetBackground() {
    screenBackIndex = 0;
    picterm.setBackground(0);
}

void resetRegion() {
    regionTop = 0;
    regionBottom = pageRows - 1;
    setScrollRect();
}

void resetSavedCursor() {
    savedCol = 0;
    savedRow = 0;
    savedAttr = defaultAttrTriple;
    savedMode = 0;
}

}  // namespace

void resetScreen() {
    trapped("resetScreen", [] {
        for (std::int32_t row = 0; row < screenRows; ++row) {
            rowMap[static_cast<std::size_t>(row)] = row;
            blankRecord(row);
        }
        pendingScrolls = 0;
        setCurrentAttr(defaultAttrTriple);
        screenMode = 0;
        keepCursorAway(false);
        scrollFlushLimit = 22;
        dropPending();
        curCol = 0;
        curRow = 0;
        resetSavedCursor();
        resetRegion();
        scrollbackTop = liveView;
        scrollbackTurns = 0;
        resetBackground();
        endSelection();
    });
}

void resetTerminal() {
    trapped("resetTerminal", [] {
        flushBuf();
        screenMode = static_cast<std::int16_t>(screenMode & keptModes);
        resetBackground();
        scrErase(0, lastColumn, 0, statusRow);
        resetFunctionKeys();
        if (modeSet(mode::keyBarShown)) showKeyBar();
        curCol = 0;
        curRow = 0;
        resetRegion();
        setCurrentAttr(defaultAttrTriple);
        resetSavedCursor();
        carryOver.clear();
        endSelection();
    });
}

void startTerminal() {
    makeBlankLine();  // a short line that is stored over one of these leaves its rest
    for (ScreenLine& line : scrollback) line = blankLine;
    recordsToDraw = 0;
    inputBusy = 0;
    carryOver.clear();
    lastChar.clear();
    resetPaint();
    resetCursorView();
    initFunctionKeys();
}

}  // namespace qxterm
