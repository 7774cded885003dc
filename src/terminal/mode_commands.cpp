#include "terminal/mode_commands.h"

#include "terminal/attributes.h"
#include "terminal/function_keys.h"
#include "terminal/scrolling.h"
#include "terminal/sequence_parser.h"
#include "terminal/view/cell_size.h"
#include "terminal/view/cursor.h"
#include "terminal/view/drawing.h"
#include "terminal/view/paint.h"

namespace qxterm {
namespace {

constexpr std::int16_t reverseBackground = 7;

void reverseScreen(bool set) {
    setMode(mode::reverseScreen, set);
    flushBuf();
    doAttr(curAttr, curFg, curBg);
    screenBackIndex = set ? reverseBackground : std::int16_t{0};
    picterm.setBackground(static_cast<std::uint8_t>(screenBackIndex));
    picterm_Paint();
}

void originMode(bool set) {
    setMode(mode::origin, set);
    flushBuf();
    curCol = 0;
    curRow = set ? regionTop : 0;
}

void suspendDrawing(bool set) {
    setMode(mode::drawingSuspended, set);
    if (set) {
        blankArea(0, 0, screenColumns, screenRows - 1);
    } else {
        picterm_Paint();
    }
}

void underlineCursor(bool set) {
    toggleCursor(hideCursor);
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

void hiddenCursor(bool hidden) {
    setMode(mode::cursorHidden, hidden);
    if (hidden) toggleCursor(hideCursor);
}

void changePrivateMode(std::int16_t parameter, bool set) {
    switch (parameter) {
        case 5: reverseScreen(set); break;
        case 6: originMode(set); break;
        case 7: setMode(mode::wrapDisabled, !set); break;
        case 10: suspendDrawing(set); break;
        case 11: underlineCursor(set); break;
        case 12: blinkingCursor(set); break;
        case 13: set ? hideKeyBar() : showKeyBar(); break;  // the other way round than the rest
        case 25: hiddenCursor(!set); break;
        default: break;
    }
}

}  // namespace

void changeModes(bool set) {
    constexpr std::int16_t insertMode = 4;
    for (const std::int16_t parameter : escParams) {
        if (privateMarker) {
            changePrivateMode(parameter, set);
        } else if (parameter == insertMode) {
            flushBuf();
            setMode(mode::insert, set);
        }
    }
}

}  // namespace qxterm
