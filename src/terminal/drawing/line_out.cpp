#include "terminal/drawing/line_out.h"

#include "diag/error_trap.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/text_look.h"

namespace qxterm {
namespace {

/// Draws a line again from its beginning: on the cursor's row, whatever row the line stands on.
[[gnu::noinline]] void redrawWhole(ScreenLine& line) {
    paintLine(line, 0, curRow);
    doAttr(curAttr, curFg, curBg);
    clearFlags(line, lineFlag::whole);
}

}  // namespace

void lineOut(ScreenLine& line, std::int32_t row) {
    trapped("lineOut", [&line, row] {
        const std::int32_t first = line.dirtyFirst;
        const std::int32_t last = line.dirtyLast;
        clearDirtySpan(line);
        if (modeSet(mode::drawingSuspended)) return;
        drawCells(line, first, last, row);
        if ((line.lineFlags & lineFlag::whole) != 0) [[unlikely]]
            redrawWhole(line);
    });
}

}  // namespace qxterm
