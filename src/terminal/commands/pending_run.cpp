#include "terminal/commands/pending_run.h"

#include <algorithm>
#include <cstring>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/inserting_deleting.h"
#include "terminal/commands/scrolling.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/line_out.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/attributes.h"

namespace qxterm {

bool pendingFailed = false;

namespace {

// --- the ordinary run: the short way of storing --------------------------------------------------------------
// Nearly every run overwrites cells that lie within the line, and nothing of that can fail. storePending does
// the same with every run.

/// The cursor's line when a run of that many characters, one or more, is an ordinary one, and none of these
/// modes is set; else null.
[[gnu::always_inline]] inline ScreenLine* lineOfOrdinaryRun(std::int32_t count,
                                                            std::int16_t otherModes = mode::insert) {
    constexpr int otherFlags =
        ~(UINT8_MAX & ~attrFlag::invisible);  // those that an ordinary run may not have
    if (((screenMode & otherModes) | (curAttr & otherFlags)) != 0) return nullptr;
    if (static_cast<std::uint32_t>(curRow) >= screenRows) return nullptr;
    if (curCol < 0 || curCol > screenColumns - count) return nullptr;
    if (!coloursExist(curFg, curBg) || !shortWaysOpen()) return nullptr;
    return screenLines.data() + rowMap[static_cast<std::size_t>(curRow)];
}

/// Stores an ordinary run on that line and advances curCol. The caller marks or draws what was written.
[[gnu::always_inline]] inline void storeOrdinaryRun(ScreenLine& line, const char* text, std::int32_t count) {
    const auto word = static_cast<std::int16_t>(curAttr + curFg * 256 + curBg * 4096);
    char* const cells = line.text.data() + curCol;
    std::int16_t* const words = line.attrs.data() + curCol + 1;
    curCol += count;
    if (line.extent < curCol) line.extent = static_cast<std::int16_t>(curCol);
    if (count == 1) {  // frequent, and not worth the calls
        *cells = *text;
        *words = word;
    } else {
        std::memcpy(cells, text, static_cast<std::size_t>(count));
        std::fill_n(words, count, word);
    }
}

/// Marks the cells for drawing that an ordinary run is about to be stored in: markForDrawing, and the last
/// cell.
inline void markOrdinaryRun(ScreenLine& line, std::int32_t count) {
    const auto column = static_cast<std::int16_t>(curCol);
    if ((line.lineFlags & lineFlag::draw) == 0 || column < line.dirtyFirst) line.dirtyFirst = column;
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags | lineFlag::draw);
    recordsToDraw |= 1U << static_cast<std::uint32_t>(&line - screenLines.data());
    const auto last = static_cast<std::int16_t>(curCol + count - 1);
    if (line.dirtyLast < last) line.dirtyLast = last;
}

// --- storing any run -------------------------------------------------------------------------------------------

void overwrite(std::int32_t record, std::int16_t word) {
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    if (curCol < 0) throw RunTimeError{errors::invalidProcedureCall};
    const std::int32_t room = std::clamp<std::int32_t>(screenColumns - curCol, 0, pendingCount);
    if (room > 0) std::memcpy(line.text.data() + curCol, pendingText.data(), static_cast<std::size_t>(room));
    markForDrawing(record, curCol);
    line.extent = screenColumns;
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

// --- flushing --------------------------------------------------------------------------------------------------

/// The short way of flushAll, for an ordinary run that waits alone for a line which is drawn up to date:
/// putBuf and lineOut in one. Returns false, with nothing done, in every other case.
[[gnu::always_inline]] inline bool flushOnlyRun(std::int32_t count) {
    constexpr auto otherModes = static_cast<std::int16_t>(mode::insert | mode::drawingSuspended);
    if ((static_cast<std::uint32_t>(pendingScrolls) | recordsToDraw) != 0) return false;
    ScreenLine* const line = lineOfOrdinaryRun(count, otherModes);
    if (line == nullptr || line->dirtyLast != -1 || (line->lineFlags & lineFlag::whole) != 0) return false;
    const std::int32_t first = curCol;
    storeOrdinaryRun(*line, pendingText.data(), count);
    dropPending();
    line->dirtyFirst = 0;
    if (line->usedLength < curCol - 1) line->usedLength = static_cast<std::int16_t>(curCol - 1);
    drawRun(*line, first, count, curRow);
    return true;
}

/// The same out of the way of the characters that come with a command between any two.
[[gnu::noinline]] bool flushOnlyLongRun() { return flushOnlyRun(pendingCount); }

/// Whatever waits: the pending run, scrolls of the window, lines to be drawn.
[[gnu::noinline]] void flushAll() {
    putBuf();
    if (pendingScrolls > 0) {
        const std::int32_t lines = pendingScrolls;
        scrollRegion(-lines);
        pendingScrolls = 0;
    }
    if (recordsToDraw == 0) return;
    for (std::int32_t row = 0; row < screenRows; ++row) {
        ScreenLine& line = lineOnRow(row);
        if ((line.lineFlags & lineFlag::draw) != 0) lineOut(line, row);
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

bool storeAtOnce(std::string_view run) {
    if (pendingCount != 0 || run.size() > screenColumns) return false;
    const auto count = static_cast<std::int32_t>(run.size());
    ScreenLine* const line = lineOfOrdinaryRun(count);
    if (line == nullptr) return false;
    markOrdinaryRun(*line, count);
    storeOrdinaryRun(*line, run.data(), count);
    return true;
}

void flushBuf() {
    trapped("flushBuf", [] {
        const std::int16_t waiting = pendingCount;
        if (waiting == 1 ? flushOnlyRun(1) : waiting > 1 && flushOnlyLongRun()) return;
        if (waiting != 0 || pendingScrolls != 0 || recordsToDraw != 0) flushAll();
    });
}

}  // namespace qxterm
