#include "terminal/commands/modes.h"

#include "terminal/commands/function_keys.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/text_look.h"

namespace qxterm {
namespace {

constexpr std::int16_t reverseBackground = 7;

/// The repaint that the parameters of one sequence ask for. A sequence may ask a hundred thousand times; it
/// is carried out once, before something else is drawn or at the end.
class Repaint {
public:
    void ask() { due_ = true; }
    void carryOut() {
        if (due_) picterm_Paint();
        due_ = false;
    }

private:
    bool due_ = false;
};

void reverseScreen(bool set, Repaint& repaint) {
    setMode(mode::reverseScreen, set);
    flushBuf();
    doAttr(curAttr, curFg, curBg);
    screenBackIndex = set ? reverseBackground : std::int16_t{0};
    picterm.setBackground(static_cast<std::uint8_t>(screenBackIndex));
    repaint.ask();
}

void originMode(bool set) {
    setMode(mode::origin, set);
    flushBuf();
    curCol = 0;
    curRow = set ? regionTop : 0;
}

void suspendDrawing(bool set, Repaint& repaint) {
    if (set) repaint.carryOut();
    setMode(mode::drawingSuspended, set);
    if (set) {
        blankArea(0, 0, screenColumns, screenRows - 1);
    } else {
        repaint.ask();
    }
}

void removeCursor(Repaint& repaint) {
    if (cursorShown != 0) repaint.carryOut();
    toggleCursor(hideCursor);
}

void underlineCursor(bool set, Repaint& repaint) {
    removeCursor(repaint);
    setMode(mode::underlineCursor, set);
}

void blinkingCursor(bool set) {
    setMode(mode::cursorBlinking, set);
    if (set) {
        startCursorBlink();
    } else {
        stopCursorBlink();
    }
}

void hiddenCursor(bool hidden, Repaint& repaint) {
    setMode(mode::cursorHidden, hidden);
    if (hidden) removeCursor(repaint);
}

void changePrivateMode(std::int16_t parameter, bool set, Repaint& repaint) {
    switch (parameter) {
        case 5: reverseScreen(set, repaint); break;
        case 6: originMode(set); break;
        case 7: setMode(mode::wrapDisabled, !set); break;
        case 10: suspendDrawing(set, repaint); break;
        case 11: underlineCursor(set, repaint); break;
        case 12: blinkingCursor(set); break;
        case 13: set ? hideKeyBar() : showKeyBar(); break;  // the other way round than the rest
        case 25: hiddenCursor(!set, repaint); break;
        default: break;
    }
}

void changeModes(const Parameters& parameters, bool set) {
    constexpr std::int16_t insertMode = 4;
    Repaint repaint;
    for (const std::int16_t parameter : parameters.values()) {
        if (parameters.privateMarker()) {
            changePrivateMode(parameter, set, repaint);
        } else if (parameter == insertMode) {
            flushBuf();
            setMode(mode::insert, set);
        }
    }
    repaint.carryOut();
}

}  // namespace

void setModes(const Parameters& parameters) { changeModes(parameters, true); }

void resetModes(const Parameters& parameters) { changeModes(parameters, false); }

}  // namespace qxterm
