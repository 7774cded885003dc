#include "terminal/view/view_keys.h"

#include <algorithm>
#include <array>

#include "diag/error_trap.h"
#include "platform/form.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/scrollback_view.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"
#include "terminal/view/selection_marks.h"

// The cursor keys are the host's with and without Shift, Control and Alt. Marking by keyboard has to do with
// the four keys beside them.

namespace qxterm {
namespace {

/// Virtual-key codes.
namespace key {
constexpr std::int16_t pageUp = 33;
constexpr std::int16_t pageDown = 34;
constexpr std::int16_t home = 36;
constexpr std::int16_t insert = 45;
}  // namespace key

/// A cell of the lines that can be selected.
struct Cell {
    std::int32_t column;
    std::int32_t line;  ///< virtual line number
};

/// The cells between two, both inclusive: one of them stays, the other one is the mark that the keys move.
struct Marking {
    Cell fixed;
    Cell mark;
};

using EndPoints = std::array<std::int32_t, 4>;

/// The end points that the keys set last.
EndPoints setByKeys{};

EndPoints endPoints() { return {selStartRow, selStartCol, selEndRow, selEndCol}; }

bool isMarked(const ScreenLine& line) { return (line.lineFlags & lineFlag::selected) != 0; }

/// What is marked now, wherever output has moved it to. Of a selection made with the mouse, too, the end
/// where the button was let go moves on.
std::optional<Marking> markingThatStands() {
    if (!hasSelection()) return std::nullopt;
    std::optional<Cell> first;
    Cell last{};
    for (std::int32_t number = scrollbackTop; number <= lastVirtualLine; ++number) {
        const ScreenLine& line = virtualLine(number);
        if (!isMarked(line)) continue;
        const auto column = [](std::int32_t stored) { return std::clamp(stored, 0, lastColumn); };
        if (!first) first = Cell{column(line.selFirst), number};
        last = {column(line.selLast), number};
    }
    if (!first) return std::nullopt;
    const bool backward = std::pair{selEndRow, selEndCol} < std::pair{selStartRow, selStartCol};
    return backward ? Marking{last, *first} : Marking{*first, last};
}

/// Where marking begins: at the cursor, or at the upper left of a view that shows no cursor.
Cell firstMark() {
    if (vscterm.value() != liveView) return {0, vscterm.value()};
    return {std::clamp(curCol, 0, lastColumn), liveView + std::clamp(curRow, 0, pageRows - 1)};
}

std::int32_t lastCharacter(std::int32_t line) {
    const auto& text = virtualLine(line).text;
    const auto at = std::find_if(text.rbegin(), text.rend(), [](char c) { return c != ' '; });
    return std::max(static_cast<std::int32_t>(text.rend() - at) - 1, 0);
}

Cell moved(Cell from, std::int16_t code, bool far) {
    const std::int32_t lines = far ? pageRows : 1;
    switch (code) {
        case key::pageUp: from.line -= lines; break;
        case key::pageDown: from.line += lines; break;
        case key::home: from.column = far ? 0 : from.column - 1; break;
        default: from.column = far ? lastCharacter(from.line) : from.column + 1; break;
    }
    // Behind a line's end stands the next line's first cell.
    if (from.column < 0 && from.line > scrollbackTop) from = {lastColumn, from.line - 1};
    if (from.column > lastColumn && from.line < lastVirtualLine) from = {0, from.line + 1};
    return {std::clamp(from.column, 0, lastColumn),
            std::clamp<std::int32_t>(from.line, scrollbackTop, lastVirtualLine)};
}

void bringIntoView(std::int32_t line) {
    const std::int32_t top = vscterm.value();
    if (line < top) {
        vscterm.setValue(static_cast<std::int16_t>(line));
    } else if (line >= top + pageRows) {
        vscterm.setValue(static_cast<std::int16_t>(line - pageRows + 1));
    }
}

void mark(const Marking& wanted) {
    const auto order = [](const Cell& cell) { return std::pair{cell.line, cell.column}; };
    removeSelection();
    if (order(wanted.mark) < order(wanted.fixed)) {
        selectBetween(wanted.fixed.column + 1, wanted.fixed.line, wanted.mark.column, wanted.mark.line);
    } else {
        selectBetween(wanted.fixed.column, wanted.fixed.line, wanted.mark.column + 1, wanted.mark.line);
    }
    setByKeys = endPoints();
    bringIntoView(wanted.mark.line);
    showSel();
}

void moveMark(std::int16_t code, bool far, bool grows) {
    if (dragging()) return;
    const std::optional<Marking> now = markingThatStands();
    if (!now) {
        const Cell begin = firstMark();
        mark({begin, begin});
        return;
    }
    const Cell to = moved(now->mark, code, far);
    mark({grows ? now->fixed : to, to});
}

void moveView(std::int16_t code) {
    switch (code) {
        case key::pageUp: wheelView(static_cast<short>(-vscterm.largeChange())); break;
        case key::pageDown: wheelView(vscterm.largeChange()); break;
        case key::home: vscterm.setValue(vscterm.minimum()); break;
        default: vscterm.setValue(vscterm.maximum()); break;
    }
}

void carryOut(std::int16_t code, std::int16_t shift) {
    if (code == key::insert && shift == shiftState::alt && !dragging()) removeSelection();
    if (code < key::pageUp || code > key::home) return;
    switch (shift) {
        case shiftState::shift: moveView(code); break;
        case shiftState::control: moveMark(code, false, false); break;
        case shiftState::control | shiftState::shift: moveMark(code, false, true); break;
        case shiftState::alt: moveMark(code, true, false); break;
        case shiftState::alt | shiftState::shift: moveMark(code, true, true); break;
        default: break;
    }
}

}  // namespace

void viewKey(std::int16_t code, std::int16_t shift) {
    trapped("viewKey", [&] { carryOut(code, shift); });
}

std::optional<std::pair<std::int32_t, std::int32_t>> keyboardMark() {
    if (!hasSelection() || setByKeys != endPoints()) return std::nullopt;
    const std::optional<Marking> now = markingThatStands();
    if (!now) return std::nullopt;
    return std::pair{now->mark.column, now->mark.line};
}

void resetViewKeys() { setByKeys = {}; }

}  // namespace qxterm
