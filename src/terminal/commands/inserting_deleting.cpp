#include "terminal/commands/inserting_deleting.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/pending_run.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/attributes.h"

namespace qxterm {
namespace {

/// A host may insert into one line for ever; what counts ends with column 79 anyway.
std::int16_t grown(std::int16_t length, std::int16_t count) {
    return toInt16(std::min<std::int32_t>(length + count, INT16_MAX));
}

bool cursorInRegion() { return curRow >= regionTop && curRow <= regionBottom; }

/// Moves the records of rows from `row` on by one for each step of the walk, `count` rows back, and puts the
/// first `count` records that the walk overwrites, blanked, at the other end: at `freed`, `freed` + step and
/// so on.
void walkRows(std::int32_t row, std::int32_t steps, std::int32_t step, std::int32_t count,
              std::int32_t freed) {
    std::array<std::int32_t, screenRows> aside{};
    std::int32_t kept = 0;
    for (std::int32_t k = 0; k < steps; ++k, row += step) {
        auto& entry = rowMap[static_cast<std::size_t>(row)];
        if (kept < count) aside[static_cast<std::size_t>(kept++)] = entry;
        entry = rowMap[static_cast<std::size_t>(row + step * count)];
    }
    for (std::int32_t k = 0; k < kept; ++k, freed -= step) {
        rowMap[static_cast<std::size_t>(freed)] = aside[static_cast<std::size_t>(k)];
        blankRecord(aside[static_cast<std::size_t>(k)]);
    }
}

void redrawRegionRest() {
    blankArea(0, curRow, screenColumns, regionBottom - curRow + 1);
    picterm_Paint();
}

}  // namespace

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
        line.extent = screenColumns;
        flagForDrawing(record, lineFlag::whole);
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
        flagForDrawing(record, lineFlag::draw | lineFlag::whole);
        if (line.usedLength > curCol) line.usedLength = toInt16(line.usedLength - count);
        scrErase(last - count + 1, lastColumn, curRow, curRow);
    });
}

void insertCharacters(const Parameters& parameters) {
    flushBuf();
    const auto count = toInt16(std::min<std::int32_t>(parameters.valueOr(1, 1), screenColumns - curCol));
    static constexpr auto blanks = [] {
        std::array<char, screenColumns + 1> all{};
        all.fill(' ');
        return all;
    }();
    insChars({blanks.data(), static_cast<std::size_t>(std::clamp<std::int32_t>(count, 0, screenColumns))},
             count, defaultAttr);
}

void deleteCharacters(const Parameters& parameters) {
    flushBuf();
    delChars(parameters.valueOr(1, 1));
}

void insertLines(const Parameters& parameters) {
    const std::int16_t count = parameters.valueOr(1, 1);
    if (!cursorInRegion()) return;
    flushBuf();
    curCol = 0;
    const std::int32_t rows = std::min<std::int32_t>(count, regionBottom - curRow + 1);
    walkRows(regionBottom, regionBottom - curRow - rows + 1, -1, rows, curRow);
    redrawRegionRest();
}

void deleteLines(const Parameters& parameters) {
    const std::int16_t count = parameters.valueOr(1, 1);
    if (!cursorInRegion()) return;
    flushBuf();
    curCol = 0;
    const std::int32_t rows = std::min<std::int32_t>(count, regionBottom - curRow);
    walkRows(curRow, regionBottom - curRow - rows + 1, 1, rows, regionBottom);
    redrawRegionRest();
}

}  // namespace qxterm
