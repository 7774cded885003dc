#include "terminal/screen_operations.h"

#include <algorithm>
#include <cstring>

#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/ordinary_run.h"
#include "terminal/scrolling.h"
#include "terminal/view/drawing.h"

namespace qxterm {

bool pendingFailed = false;

namespace {

void setFlags(std::int32_t record, std::int16_t flags) {
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags | flags);
    recordsToDraw |= 1U << static_cast<std::uint32_t>(record);
}

std::int32_t recordOnCursorRow() { return rowMap[subscript(curRow, 0, screenRows - 1)]; }

/// Words of the cells behind the cursor; a cell outside the line is the subscript error.
void setWords(ScreenLine& line, std::int32_t column, std::int32_t count, std::int16_t word) {
    if (count <= 0) return;
    const std::int32_t inside = std::clamp(screenColumns - column, 0, count);
    std::fill_n(line.attrs.begin() + std::min(column, screenColumns) + 1, inside, word);
    if (inside < count) throw RunTimeError{errors::subscriptOutOfRange};
}

/// A host may insert into one line for ever; what counts ends with column 79 anyway.
std::int16_t grown(std::int16_t length, std::int16_t count) {
    return toInt16(std::min<std::int32_t>(length + count, INT16_MAX));
}

void overwrite(std::int32_t record, std::int16_t word) {
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    if (curCol < 0) throw RunTimeError{errors::invalidProcedureCall};
    const std::int32_t room = std::clamp<std::int32_t>(screenColumns - curCol, 0, pendingCount);
    if (room > 0) std::memcpy(line.text.data() + curCol, pendingText.data(), static_cast<std::size_t>(room));
    markForDrawing(record, curCol);
    setWords(line, curCol, pendingCount, word);
}

void storePending() {
    const std::int32_t record = recordOnCursorRow();
    const std::int16_t word = packAttr(curAttr, curFg, curBg);
    if ((curAttr & attrFlag::invisible) != 0) std::fill_n(pendingText.begin(), pendingCount, ' ');
    if (modeSet(mode::insert)) {
        insChars({pendingText.data(), static_cast<std::size_t>(pendingCount)}, pendingCount, word);
    } else {
        overwrite(record, word);
    }
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    curCol += pendingCount;
    line.dirtyLast = std::max(line.dirtyLast, toInt16(curCol - 1));
    dropPending();
}

/// The general way: stores a run that fails once more at most.
[[gnu::noinline]] void storeAnyRun() {
    const bool lastTry = pendingFailed;
    pendingFailed = true;
    try {
        storePending();
    } catch (const RunTimeError&) {
        if (lastTry) dropPending();
        throw;
    }
}

}  // namespace

void putPending() {
    trapped("putBuf", [] {
        if (ScreenLine* line = lineOfOrdinaryRun(pendingCount)) [[likely]] {
            markOrdinaryRun(*line, pendingCount);
            storeOrdinaryRun(*line, pendingText.data(), pendingCount);
            dropPending();
        } else {
            storeAnyRun();
        }
    });
}

void insChars(std::string_view text, std::int16_t count, std::int16_t word) {
    trapped("insChars", [&] {
        const std::int32_t record = recordOnCursorRow();
        ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
        if (curCol < 0) throw RunTimeError{errors::invalidProcedureCall};
        const std::int32_t column = std::min(curCol, screenColumns);
        const auto room = static_cast<std::size_t>(screenColumns - column);
        const auto inserted = static_cast<std::int32_t>(std::min(text.size(), room));
        std::memmove(line.text.data() + column + inserted, line.text.data() + column,
                     static_cast<std::size_t>(screenColumns - column - inserted));
        if (inserted > 0)
            std::memcpy(line.text.data() + column, text.data(), static_cast<std::size_t>(inserted));
        markForDrawing(record, curCol);
        setFlags(record, lineFlag::whole);
        for (std::int32_t k = screenColumns; k > curCol + count && count > 0; --k) {
            line.attrs[static_cast<std::size_t>(k)] = line.attrs[static_cast<std::size_t>(k - count)];
        }
        // What is pushed over the right edge is lost; only a cursor behind the line is an error.
        setWords(line, curCol,
                 curCol < screenColumns ? std::min<std::int32_t>(count, screenColumns - curCol) : count,
                 word);
        if (line.usedLength >= curCol) line.usedLength = grown(line.usedLength, count);
        // Text that waits to be drawn moves along, or the window would miss its end.
        if (line.dirtyLast >= curCol) line.dirtyLast = grown(line.dirtyLast, count);
    });
}

void delChars(std::int16_t count) {
    trapped("delChars", [&] {
        const std::int32_t record = recordOnCursorRow();
        ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
        const std::int32_t last = std::max(line.usedLength, line.dirtyLast);
        if (curCol < 0) throw RunTimeError{errors::invalidProcedureCall};
        const std::int32_t column = std::min(curCol, screenColumns);
        const std::int32_t kept = std::clamp(screenColumns - column - count, 0, screenColumns - column);
        std::memmove(line.text.data() + column, line.text.data() + screenColumns - kept,
                     static_cast<std::size_t>(kept));
        std::fill(line.text.begin() + column + kept, line.text.end(), ' ');
        for (std::int32_t k = curCol + 1; k + count <= screenColumns; ++k) {
            line.attrs[static_cast<std::size_t>(k)] = line.attrs[static_cast<std::size_t>(k + count)];
        }
        setFlags(record, lineFlag::draw | lineFlag::whole);
        if (line.usedLength > curCol) line.usedLength = toInt16(line.usedLength - count);
        scrErase(last - count + 1, lastColumn, curRow, curRow);
    });
}

void scrErase(std::int32_t colFrom, std::int32_t colTo, std::int32_t rowFrom, std::int32_t rowTo) {
    trapped("scrErase", [&] {
        if (colTo < colFrom || rowTo < rowFrom) return;
        blankArea(colFrom, rowFrom, colTo - colFrom + 1, rowTo - rowFrom + 1);
        const std::int32_t first = std::clamp(colFrom, 0, screenColumns);
        const std::int32_t blanked =
            std::clamp(colTo, first, screenColumns);  // one cell fewer than the words below
        const std::int32_t words = std::clamp(colTo + 1, first, screenColumns);
        for (std::int32_t row = rowFrom; row <= rowTo; ++row) {
            ScreenLine& line = lineOnRow(row);
            std::fill(line.text.begin() + first, line.text.begin() + blanked, ' ');
            if (line.usedLength > colFrom) line.usedLength = toInt16(colFrom);
            std::fill(line.attrs.begin() + first + 1, line.attrs.begin() + words + 1, defaultAttr);
        }
    });
}

void cursorLeft() {
    trapped("cursorLeft", [] {
        flushBuf();
        curCol = std::max(curCol - 1, 0);
    });
}

}  // namespace qxterm
