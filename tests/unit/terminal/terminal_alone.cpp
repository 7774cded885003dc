#include "terminal/terminal_alone.h"

#include "config/profile_record.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/report_error.h"
#include "platform/headless/reset.h"
#include "platform/main_form.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/screen_events.h"
#include "terminal/view/scrollback_view.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_marks.h"
#include "terminal/view/view_keys.h"
#include "timers/timer_registry.h"

namespace qxterm::test {
namespace {

constexpr std::int16_t tickPeriod = 250;  // ms

/// Hooks, events and timers of the terminal alone.
void connectTerminal() {
    lineDrawn = invertRedrawnCells;
    windowScrolled = keepDragInPlace;
    endSelection = removeSelection;
    timerActions[timerAction::blinkCursor] = [] {
        if (inputBusy == 0) blinkCursorStep();
    };
    timerActions[timerAction::blinkText] = [] {
        if (inputBusy == 0) blinkTextStep();
    };
    tmrGen.onTimer.connect("tmrGen_Timer", tmrGen_Timer);
    connectScreenEvents();
}

}  // namespace

void resetTerminalAlone() {
    headless::reset();
    connectTerminal();
    resetSelection();
    resetViewKeys();
    clearPlannedFaults();
    resetErrorReports();
    setVerboseErrors(true);
    setCrLf("\r\n");
    clearTimers();
    resetCellSize();
    dropWaitingBlocks();
    initAttributes();
    startTerminal();
    resetScreen();
    resetScrollbackView();
}

void startTerminalAlone() {
    resetTerminalAlone();
    initFunctionKeys();
    initDefaults();  // the font size that goes with the display
    frmterm.load();
    picterm.setFontName("Courier New");
    calcSize(picterm, vscterm);
    vscterm.setChanges(pageRows, 1);
    vscterm.setMinimum(scrollbackTop);
    vscterm.setMaximum(liveView);
    vscterm.setValue(liveView);
    picterm_Paint();
    frmterm.attachMessageHook(true);
    picterm.attachMessageHook(true);
    frmterm.show();
    picterm.setOpaque(true);
    tmrGen.setInterval(tickPeriod);
    tmrGen.setEnabled(true);
}

}  // namespace qxterm::test
