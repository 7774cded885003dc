#include "terminal/escape_sequences.h"

#include <algorithm>

#include "diag/error_trap.h"
#include "terminal/reset.h"
#include "terminal/screen_operations.h"
#include "terminal/screen_store.h"
#include "terminal/scrolling.h"
#include "terminal/view/paint.h"

namespace qxterm {
namespace {

void saveCursor() {
    if (curRow == statusRow) return;
    savedCol = curCol + pendingCount;  // pending text is counted, not stored
    savedRow = curRow;
    savedAttr = {curAttr, curFg, curBg};
    savedMode = screenMode;
}

void restoreCursor() {
    flushBuf();
    curCol = savedCol;
    curRow = savedRow;
    setCurrentAttr(savedAttr);  // the modes stay as they are
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

void fillWithE() {
    putBuf();
    for (std::int32_t row = 0; row < pageRows; ++row) {
        blankRecord(rowMap[static_cast<std::size_t>(row)]);
        ScreenLine& line = lineOnRow(row);
        line.text.fill('E');
        line.dirtyLast = lastColumn;
        line.usedLength = lastColumn;
    }
    picterm_Paint();
}

/// Sequences of one more byte: true when the byte belongs to it, else it is left as ordinary data.
bool designates(char byte) { return byte == 'A' || byte == 'B' || byte == '0' || byte == '1' || byte == '}'; }

bool lineSize(char byte) {
    if (byte == '8') fillWithE();
    return byte == '8' || (byte >= '3' && byte <= '6');
}

/// Returns true when the text so far must be carried.
bool dispatch(Interpretation& input) {
    const auto next = [&]() -> const char* {
        ++input.position;
        return input.position > input.length() ? nullptr
                                               : &input.data[static_cast<std::size_t>(input.position - 1)];
    };
    const char* byte = next();
    if (byte == nullptr) return true;
    switch (*byte) {
        case '7': saveCursor(); break;
        case '8': restoreCursor(); break;
        case 'D': index(); break;
        case 'E': nextLine(); break;
        case 'M': reverseIndex(); break;
        case 'c': resetTerminal(); break;
        case '(':
        case ')':
        case '#': {
            const bool set = *byte != '#';
            byte = next();
            if (byte == nullptr) return true;
            if (!(set ? designates(*byte) : lineSize(*byte))) --input.position;
            break;
        }
        case '[': return doEscBracket(input);
        case 'Q':
        case 'R':
        case '=':
        case '>': break;
        default: --input.position; break;
    }
    return false;
}

}  // namespace

bool doEsc(Interpretation& input) {
    bool carried = false;
    trapped("doEsc", [&] { carried = dispatch(input); });
    return carried;
}

}  // namespace qxterm
