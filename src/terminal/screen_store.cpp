#include "terminal/screen_store.h"

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

void blankRecord(std::int32_t record) {
    copyLine(screenLines[static_cast<std::size_t>(record)], blankLine);
    recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
}

}  // namespace qxterm
