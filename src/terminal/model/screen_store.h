#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "diag/checked.h"
#include "terminal/model/line_record.h"

/// The terminal's memory: what is on the screen, what scrolled off it, the cursor and the modes. The folder
/// terminal/commands writes it; everybody else reads it, and what drawing, the view and the connections
/// change of it they change through the routines below.
namespace qxterm {

/// Bits of screenMode.
namespace mode {
inline constexpr std::int16_t insert = 1;
inline constexpr std::int16_t reverseScreen = 2;
inline constexpr std::int16_t origin = 4;
inline constexpr std::int16_t wrapDisabled = 8;
inline constexpr std::int16_t drawingSuspended = 16;
inline constexpr std::int16_t underlineCursor = 32;
inline constexpr std::int16_t cursorHidden = 64;
inline constexpr std::int16_t keyBarShown = 128;
inline constexpr std::int16_t cursorBlinking = 256;
}  // namespace mode

inline constexpr std::int32_t scrollbackLines = 500;
/// Virtual line number of screen row 0; the scroll bar's value while the view is live.
inline constexpr std::int16_t liveView = 501;
/// Virtual line number of screen row 23.
inline constexpr std::int32_t lastVirtualLine = 524;

/// The records; which row shows which one is rowMap's business.
extern std::array<ScreenLine, screenRows> screenLines;
/// Record number (0..24) shown on each screen row. Scrolling permutes it.
extern std::array<std::int32_t, screenRows> rowMap;
/// The template that a line is blanked with.
extern ScreenLine blankLine;
/// Slots 1..500 hold lines; slot 0 is not used.
extern std::array<ScreenLine, scrollbackLines + 1> scrollback;
/// First used scrollback position: 501 when it is empty, 1 when it is full.
extern std::int16_t scrollbackTop;
/// How often the full scrollback has reused its oldest slot, 0..499: with scrollbackTop it yields the map
/// below.
extern std::int16_t scrollbackTurns;
/// Bit n: record n has lineFlag::draw set. Kept by the routines below that set and clear the flag, and by
/// what stands for them in terminal/commands.
extern std::uint32_t recordsToDraw;

/// Column 0..79, 80 behind a run that ends in the last column; outside only after the status-row command.
extern std::int32_t curCol;
/// Row 0..24.
extern std::int32_t curRow;
/// Scrolling region, inclusive rows.
extern std::int32_t regionTop;
extern std::int32_t regionBottom;
/// Bits of `mode`.
extern std::int16_t screenMode;

struct AttrTriple {
    std::int16_t flags;
    std::int16_t fg;
    std::int16_t bg;
};
inline constexpr AttrTriple defaultAttrTriple{0, 7, 0};
/// Flags (attributes.h) and colour indices of what is written next.
extern std::int16_t curAttr;
extern std::int16_t curFg;
extern std::int16_t curBg;

/// The cursor saved by ESC 7.
extern std::int32_t savedCol;
extern std::int32_t savedRow;
extern AttrTriple savedAttr;
extern std::int16_t savedMode;

/// Longest run that can wait: a line, and the columns left of it that a status-row command may start from.
inline constexpr std::size_t pendingCapacity = 96;
/// Printable characters accepted for the cursor position but not stored yet; the first pendingCount of them
/// are valid.
extern std::array<char, pendingCapacity> pendingText;
extern std::int16_t pendingCount;

/// Scrolls done in rowMap but not yet on the window.
extern std::int32_t pendingScrolls;
/// One scroll more than this flushes.
extern std::int16_t scrollFlushLimit;
/// Colour index of the window's background: 0, or 7 in reverse screen.
extern std::int16_t screenBackIndex;

/// The record on a screen row. Error 9 outside 0..24.
[[nodiscard]] inline ScreenLine& lineOnRow(std::int32_t row) {
    return *(screenLines.data() + rowMap[subscript(row, 0, screenRows - 1)]);
}

/// Storage slot of a scrollback position (1..500, 500 the newest). Error 9 outside 0..500.
[[nodiscard]] std::int16_t scrollbackMap(std::int32_t position);

/// The slot of position 500, which holds the line stored last.
[[nodiscard]] inline std::size_t newestSlot() {
    const std::int32_t turned = scrollbackTurns == 0 ? 1 : liveView - scrollbackTurns;
    return static_cast<std::size_t>(scrollbackTop > 1 ? scrollbackTop : turned);
}

/// The line with a virtual number: 1..500 scrollback positions, 501..524 screen rows; 0 is the slot that
/// holds no line. Error 9 outside.
[[nodiscard]] ScreenLine& virtualLine(std::int32_t number);

/// Sets the draw flag of a record and widens its dirty span to the left.
inline void markForDrawing(std::int32_t record, std::int32_t column) {
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    if ((line.lineFlags & lineFlag::draw) == 0 || column < line.dirtyFirst) line.dirtyFirst = toInt16(column);
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags | lineFlag::draw);
    recordsToDraw |= 1U << static_cast<std::uint32_t>(record);
}

/// The number of the record on the cursor's row. Error 9 when there is no such row.
[[nodiscard]] inline std::int32_t recordOnCursorRow() { return rowMap[subscript(curRow, 0, screenRows - 1)]; }
/// Sets flags of a record that bring it to be drawn.
void flagForDrawing(std::int32_t record, std::int16_t flags);
inline void clearFlags(ScreenLine& line, std::int16_t flags) {
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~flags);
}
/// The line's dirty span is being drawn: from now on it counts as used, and nothing waits.
inline void clearDirtySpan(ScreenLine& line) {
    clearFlags(line, lineFlag::draw);
    if (const auto record = &line - screenLines.data(); record >= 0 && record < screenRows)
        recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
    line.dirtyFirst = 0;
    line.usedLength = std::max(line.usedLength, line.dirtyLast);
    line.dirtyLast = -1;
}
/// The whole window is being drawn in place: no scroll is left to do on it.
inline void dropPendingScrolls() { pendingScrolls = 0; }

/// Marks columns of a line as selected, and takes the mark away.
void markSelected(ScreenLine& line, std::int16_t first, std::int16_t last);
void clearSelected(ScreenLine& line);

/// Sets the words of cells of a line. Error 9 behind its end, with the words before set.
void setWords(ScreenLine& line, std::int32_t column, std::int32_t count, std::int16_t word);

/// Fills the blank template. Called at start-up.
void makeBlankLine();
/// Copies the blank template over a record.
void blankRecord(std::int32_t record);

[[nodiscard]] inline bool modeSet(std::int16_t bit) { return (screenMode & bit) != 0; }
inline void setMode(std::int16_t bit, bool on) {
    screenMode = static_cast<std::int16_t>(on ? (screenMode | bit) : (screenMode & ~bit));
}

/// The current attribute becomes the triple.
inline void setCurrentAttr(const AttrTriple& triple) {
    curAttr = triple.flags;
    curFg = triple.fg;
    curBg = triple.bg;
}

}  // namespace qxterm
