#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/screen_operations.h"
#include "terminal/screen_store.h"

/// The short way of the ordinary pending run, which nearly every run is: it overwrites cells that lie within
/// the line, and nothing of that can fail. putBuf's general way does the same with every run. A failure that
/// is planned for any routine closes the short way.
namespace qxterm {

/// The cursor's line when a run of that many characters, one or more, is an ordinary one, and none of these
/// modes is set; else null.
[[nodiscard]] inline ScreenLine* lineOfOrdinaryRun(std::int32_t count,
                                                   std::int16_t otherModes = mode::insert) {
    constexpr int otherFlags =
        ~(UINT8_MAX & ~attrFlag::invisible);  // those that an ordinary run may not have
    if (modeSet(otherModes) || (curAttr & otherFlags) != 0) return nullptr;
    if (static_cast<std::uint32_t>(curRow) >= screenRows || curCol < 0 || curCol + count > screenColumns)
        return nullptr;
    if (!coloursExist(curFg, curBg) || detail::faultPlanned) return nullptr;
    return screenLines.data() + rowMap[static_cast<std::size_t>(curRow)];
}

/// Stores an ordinary run on that line and advances curCol. The caller marks or draws what was written.
inline void storeOrdinaryRun(ScreenLine& line, const char* text, std::int32_t count) {
    const auto word = static_cast<std::int16_t>(curAttr + curFg * 256 + curBg * 4096);
    char* const cells = line.text.data() + curCol;
    std::int16_t* const words = line.attrs.data() + curCol + 1;
    curCol += count;
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
    line.dirtyLast = std::max(line.dirtyLast, static_cast<std::int16_t>(curCol + count - 1));
}

}  // namespace qxterm
