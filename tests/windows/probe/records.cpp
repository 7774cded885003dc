#include "records.h"

#include <algorithm>
#include <string>
#include <utility>

#include "connection/ssh_prompt.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/line_drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/attributes.h"
#include "terminal/model/input_busy.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"

namespace qxterm::probe {
namespace {

/// What a cell must show. The look of a blank does not count unless it is underlined.
struct Wanted {
    char character = ' ';
    int fg = 7;
    int bg = 0;
    bool bold = false;
    bool underlined = false;
    bool terminalFont = false;
    bool selected = false;
    bool cursor = false;
};

const ScreenLine& lineOfRow(int row) {
    return row < pageRows ? virtualLine(vscterm.value() + row) : lineOnRow(row);
}

bool isLine(char character) { return character >= 'j' && character <= 'x'; }

Wanted textOf(const ScreenLine& line, int column) {
    Wanted cell;
    cell.bg = screenBackIndex;
    if (column > line.usedLength) return cell;
    const int word = static_cast<std::uint16_t>(line.attrs.at(static_cast<std::size_t>(column) + 1));
    const int flags = word & 0xFF;
    if ((flags & attrFlag::blink) != 0 && textBlinkOff) return cell;
    cell.character = line.text.at(static_cast<std::size_t>(column));
    cell.fg = word >> 8 & 15;
    cell.bg = word >> 12 & 15;
    if (((flags & attrFlag::reverse) != 0) != ((screenMode & mode::reverseScreen) != 0))
        std::swap(cell.fg, cell.bg);
    cell.bold = (flags & attrFlag::bold) != 0;
    cell.underlined = (flags & attrFlag::underline) != 0;
    cell.terminalFont = (flags & attrFlag::shiftOut) != 0 && isLine(cell.character);
    return cell;
}

/// The places between the ends of a drag, or the columns that a line has marked.
bool isSelected(int row, int column) {
    if (row >= pageRows) return false;
    const int number = vscterm.value() + row;
    if (!dragging()) {
        const ScreenLine& line = virtualLine(number);
        return (line.lineFlags & lineFlag::selected) != 0 && column >= line.selFirst &&
               column <= line.selLast;
    }
    if (selEndCol == -1) return false;
    const auto start = std::pair{selStartRow, selStartCol};
    const auto end = std::pair{selEndRow, std::min(selEndCol, screenColumns)};
    const auto here = std::pair{number, column};
    return here >= std::min(start, end) && here < std::max(start, end);
}

bool cursorMay() { return !modeSet(mode::cursorHidden) && vscterm.value() == liveView; }

/// A blinking cursor may be in either phase, and stays in it while the window is inactive; any other is there
/// whenever it may be.
bool cursorMust() { return cursorMay() && !modeSet(mode::cursorBlinking); }

bool same(const PictureCell& cell, const Wanted& wanted) {
    const int bg = cell.drawn() ? cell.bg() : picterm.background();
    const bool inked = wanted.character != ' ' || wanted.underlined;
    const bool looks = cell.fg() == wanted.fg && cell.bold() == wanted.bold;
    return cell.text() == wanted.character && bg == wanted.bg && cell.underlined() == wanted.underlined &&
           (!inked || looks) && cell.terminalFont() == wanted.terminalFont &&
           cell.selected() == wanted.selected && cell.cursor() == wanted.cursor;
}

Json told(int row, int column, const Wanted& wanted) {
    const PictureCell& cell = picterm.picture().at(column, row);
    const auto style = [](bool bold, bool underlined, bool terminal, bool selected, bool cursor) {
        return std::string{bold ? " bold" : ""} + (underlined ? " underlined" : "") +
               (terminal ? " lines" : "") + (selected ? " selected" : "") + (cursor ? " cursor" : "");
    };
    const auto look = [](char character, int fg, int bg) {
        return scenario::jsonText(std::string(1, character)) + ' ' + std::to_string(fg) + " on " +
               std::to_string(bg);
    };
    const ScreenLine& line = lineOfRow(row);
    return {{"row", row},
            {"column", column},
            {"wanted",
             look(wanted.character, wanted.fg, wanted.bg) +
                 style(wanted.bold, wanted.underlined, wanted.terminalFont, wanted.selected, wanted.cursor)},
            {"found",
             look(cell.text(), cell.fg(), cell.drawn() ? cell.bg() : picterm.background()) +
                 style(cell.bold(), cell.underlined(), cell.terminalFont(), cell.selected(), cell.cursor())},
            {"line", scenario::jsonText(std::string(line.text.data(), line.text.size()))},
            {"used", line.usedLength},
            {"mode", screenMode},
            {"scroll", vscterm.value()},
            {"cursor", Json::array({curCol, curRow})},
            {"dragging", dragging()},
            {"blank phase", textBlinkOff}};
}

}  // namespace

bool recordsStand() {
    return inputBusy == 0 && recordsToDraw == 0 && pendingCount == 0 && pendingScrolls == 0 &&
           !modeSet(mode::drawingSuspended) && !localTextUp() && !picterm.paintWaits();
}

Json recordsDifference() {
    const auto shown = picterm.picture().cursor();
    if (shown && !cursorMay())
        return {{"cursor", "is shown"}, {"mode", screenMode}, {"scroll", vscterm.value()}};
    if (!shown && cursorMust()) return {{"cursor", "is not shown"}, {"mode", screenMode}};
    const std::pair cursor{std::min(curCol, lastColumn), curRow};
    for (int row = 0; row < screenRows; ++row) {
        const ScreenLine& line = lineOfRow(row);
        for (int column = 0; column < screenColumns; ++column) {
            Wanted wanted = textOf(line, column);
            wanted.selected = isSelected(row, column);
            wanted.cursor = shown && cursor == std::pair{column, row};
            const PictureCell& cell = picterm.picture().at(column, row);
            if (!same(cell, wanted)) return told(row, column, wanted);
            const bool bar = modeSet(mode::underlineCursor);
            if (wanted.cursor && cell.barInverted() != bar) return {{"cursor", "has the other shape"}};
        }
    }
    return Json::object();
}

}  // namespace qxterm::probe
