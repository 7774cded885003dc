#include "terminal/drawing/line_out.h"

#include <algorithm>

#include "diag/error_trap.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/text_look.h"

namespace qxterm {
namespace {

/// Draws a line again from its beginning: on the cursor's row, whatever row the line stands on.
[[gnu::noinline]] void redrawWhole(ScreenLine& line) {
    paintLine(line, 0, curRow);
    doAttr(curAttr, curFg, curBg);
    line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~lineFlag::whole);
}

}  // namespace

void lineOut(ScreenLine& line, std::int32_t row) {
    trapped("lineOut", [&line, row] {
        const std::int32_t first = line.dirtyFirst;
        const std::int32_t last = line.dirtyLast;
        line.lineFlags = static_cast<std::int16_t>(line.lineFlags & ~lineFlag::draw);
        if (const auto record = &line - screenLines.data(); record >= 0 && record < screenRows) {
            recordsToDraw &= ~(1U << static_cast<std::uint32_t>(record));
        }
        line.dirtyFirst = 0;
        line.usedLength = std::max(line.usedLength, line.dirtyLast);
        line.dirtyLast = -1;
        if (modeSet(mode::drawingSuspended)) return;
        drawCells(line, first, last, row);
        if ((line.lineFlags & lineFlag::whole) != 0) [[unlikely]]
            redrawWhole(line);
    });
}

}  // namespace qxterm
