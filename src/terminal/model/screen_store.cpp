#include "terminal/model/screen_store.h"

#include <algorithm>

#include "platform/run_time_error.h"
#include "terminal/model/attributes.h"

namespace qxterm {

std::array<ScreenLine, screenRows> screenLines;
std::array<std::int32_t, screenRows> rowMap;
ScreenLine blankLine;
std::array<ScreenLine, scrollbackLines + 1> scrollback;
std::int16_t scrollbackTop = liveView;
std::int16_t scrollbackTurns = 0;
std::uint32_t recordsToDraw = 0;

std::int32_t curCol = 0;
std::int32_t curRow = 0;
std::int32_t regionTop = 0;
std::int32_t regionBottom = pageRows - 1;
std::int16_t screenMode = 0;
std::int16_t curAttr = defaultAttrTriple.flags;
std::int16_t curFg = defaultAttrTriple.fg;
std::int16_t curBg = defaultAttrTriple.bg;
std::int32_t savedCol = 0;
std::int32_t savedRow = 0;
AttrTriple savedAttr = defaultAttrTriple;
std::int16_t savedMode = 0;
std::array<char, pendingCapacity> pendingText;
std::int16_t pendingCount = 0;
std::int32_t pendingScrolls = 0;
std::int16_t scrollFlushLimit = 22;
std::int16_t screenBackIndex = 0;

std::int16_t scrollbackMap(std::int32_t position) {
    const auto at = static_cast<std::int32_t>(subscript(position, 0, scrollbackLines));
    // While the store fills, each stored line turns the used positions by one, so that the newest line stands
    // in the lowest slot; once it is full the whole ring turns.
    if (at < scrollbackTop) return static_cast<std::int16_t>(at);
    if (scrollbackTop > 1) return static_cast<std::int16_t>(scrollbackLines + scrollbackTop - at);
    return static_cast<std::int16_t>(scrollbackLines - (at - 1 + scrollbackTurns) % scrollbackLines);
}

ScreenLine& virtualLine(std::int32_t number) {
    if (number > scrollbackLines) return lineOnRow(number - liveView);
    return scrollback[static_cast<std::size_t>(scrollbackMap(number))];
}

void flagForDrawing(std::int32_t record, std::int16_t flags) {
    ScreenLine& line = screenLines[static_cast<std::size_t>(record)];
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags | flags);
    recordsToDraw |= 1U << static_cast<std::uint32_t>(record);
}

void markSelected(ScreenLine& line, std::int16_t first, std::int16_t last) {
    line.selFirst = first;
    line.selLast = last;
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags | lineFlag::selected);
}

void clearSelected(ScreenLine& line) { clearFlags(line, lineFlag::selected); }

void setWords(ScreenLine& line, std::int32_t column, std::int32_t count, std::int16_t word) {
    if (count <= 0) return;
    const std::int32_t inside = std::clamp(screenColumns - column, 0, count);
    std::fill_n(line.attrs.begin() + std::min(column, screenColumns) + 1, inside, word);
    if (inside < count) throw RunTimeError{errors::subscriptOutOfRange};
}

void makeBlankLine() {
    blankLine.text.fill(' ');
    blankLine.attrs.fill(defaultAttr);
    blankLine.dirtyFirst = 0;
    blankLine.dirtyLast = -1;
    blankLine.selFirst = 0;
    blankLine.selLast = 0;
    blankLine.usedLength = -1;
    blankLine.lineFlags = 0;
    blankLine.extent = 0;
}

void blankRecord(std::int32_t record) {
    copyLine(screenLines[static_cast<std::size_t>(record)], blankLine);
    recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
}

}  // namespace qxterm
