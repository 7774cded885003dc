#include "terminal/view/selection_drag.h"

#include <algorithm>
#include <utility>

#include "diag/error_trap.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_marks.h"

namespace qxterm {

constinit Timer tmrSelect{frmterm, "tmrSelect"};

namespace {

constexpr std::int16_t leftButton = 1;
constexpr std::int32_t stepInterval = 50;  // ms between two steps of auto-scroll

bool buttonHeld = false;
bool autoScrollUp = false;
bool autoScrollDown = false;

struct Cell {
    std::int32_t column;
    std::int32_t row;  ///< virtual line number
};

// In twips. A cell that could not be measured counts as one pixel.
std::int32_t cellWidth() { return g_iTwipsX * std::max(charWidth, 1); }
std::int32_t cellHeight() { return g_iTwipsY * std::max(lineHeight, 1); }

Cell cellAt(std::int32_t x, std::int32_t y) { return {x / cellWidth(), y / cellHeight() + vscterm.value()}; }

void setEnd(const Cell& cell) {
    // -1 stands for "no selection", so a mouse left of the screen ends at its edge.
    selEndCol = std::max(cell.column, 0);
    selEndRow = cell.row;
}

void setAutoScroll(bool up, bool down) {
    if (up == autoScrollUp && down == autoScrollDown) return;
    autoScrollUp = up;
    autoScrollDown = down;
    tmrSelect.setInterval(stepInterval);
    tmrSelect.setEnabled(up || down);
}

}  // namespace

bool dragging() { return buttonHeld; }

void stopDrag() {
    buttonHeld = false;
    setAutoScroll(false, false);
}

void resetDrag() {
    buttonHeld = false;
    autoScrollUp = false;
    autoScrollDown = false;
}

void picterm_MouseDown(std::int16_t button, std::int16_t /*shift*/, std::int32_t x, std::int32_t y) {
    trapped("picterm_MouseDown", [&] {
        if (button != leftButton) return;
        if (selEndCol != -1) removeSelection();
        const Cell cell = cellAt(x, y);
        selStartCol = std::clamp(cell.column, 0, lastColumn);
        selStartRow = cell.row;
        selEndCol = -1;
        buttonHeld = true;
        setAutoScroll(false, false);
    });
}

void picterm_MouseMove(std::int16_t /*button*/, std::int16_t /*shift*/, std::int32_t x, std::int32_t y) {
    trapped("picterm_MouseMove", [&] {
        if (!buttonHeld) return;
        const bool above = y < 0;
        const bool below = y / cellHeight() >= pageRows;
        // Once auto-scroll runs its steps set the end point, until the mouse is back on the page.
        const bool stepping = (above && autoScrollUp) || (below && autoScrollDown);
        setAutoScroll(above, below);
        if (!stepping) setEnd(cellAt(x, y));
        showSel();
    });
}

void tmrSelect_Timer() {
    trapped("tmrSelect_Timer", [] {
        const int step = autoScrollUp ? -1 : 1;
        const int value = vscterm.value() + step;
        const bool atLimit = value < vscterm.minimum() || value > vscterm.maximum();
        if (!atLimit) vscterm.setValue(static_cast<std::int16_t>(value));
        setEnd(autoScrollUp ? Cell{0, vscterm.value()} : Cell{screenColumns, vscterm.value() + pageRows - 1});
        if (atLimit) tmrSelect.setEnabled(false);
        showSel();
    });
}

void picterm_MouseUp(std::int16_t button, std::int16_t /*shift*/, std::int32_t x, std::int32_t y) {
    trapped("picterm_MouseUp", [&] {
        if (button != leftButton || !buttonHeld) return;
        if (!autoScrollUp && !autoScrollDown) setEnd(cellAt(x, y));
        std::int32_t firstCol = 0;
        std::int32_t firstRow = 0;
        std::int32_t lastCol = 0;
        std::int32_t lastRow = 0;
        orderSel(firstCol, firstRow, lastCol, lastRow);
        const bool none = selEndCol == -1 || (firstCol == lastCol && firstRow == lastRow);
        stopDrag();
        if (none) {
            selEndCol = -1;
        } else {
            markSelection();
        }
        showSel();
    });
}

}  // namespace qxterm
