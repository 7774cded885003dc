#include "terminal/view/screen_text.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "terminal/drawing/drawing.h"
#include "terminal/drawing/line_drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/attributes.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/view_keys.h"

namespace qxterm {
namespace {

constexpr char blank = ' ';

bool readable(char c) { return static_cast<unsigned char>(c) > static_cast<unsigned char>(blank); }

/// What the picture shows in a cell. The codes of line-drawing glyphs are none of readable characters.
char shownCharacter(const PictureCell& cell) {
    return cell.fg() != cell.bg() && readable(cell.code()) ? cell.code() : blank;
}

/// What a cell would show in the other phase of blinking text; a blank where no text blinks.
char blinkingCharacter(const ScreenLine& line, std::size_t column) {
    if (static_cast<std::int32_t>(column) > line.usedLength) return blank;
    const AttrTriple attr = unpackAttr(line.attrs[column + 1]);
    const char c = line.text[column];
    if ((attr.flags & attrFlag::blink) == 0 || attr.fg == attr.bg || !readable(c)) return blank;
    if ((attr.flags & attrFlag::shiftOut) != 0 && isLineDrawing(c)) return blank;
    return c;
}

std::string rowText(int row) {
    std::string text;
    for (const PictureCell& cell : picterm.picture().row(row)) text += shownCharacter(cell);
    if (textBlinkOff && !localPromptShown()) {
        const ScreenLine& line = row < pageRows ? virtualLine(vscterm.value() + row) : lineOnRow(row);
        for (std::size_t column = 0; column < text.size(); ++column) {
            if (text[column] == blank) text[column] = blinkingCharacter(line, column);
        }
    }
    text.erase(text.find_last_not_of(blank) + 1);
    return text;
}

ScreenReading::Columns selectedColumns(int row) {
    const Picture::Row& cells = picterm.picture().row(row);
    const auto selected = [](const PictureCell& cell) { return cell.selected(); };
    const auto first = std::find_if(cells.begin(), cells.end(), selected);
    if (first == cells.end()) return {};
    const auto last = std::find_if(cells.rbegin(), cells.rend(), selected);
    return {static_cast<int>(first - cells.begin()), static_cast<int>(cells.rend() - last) - 1};
}

std::optional<ScreenPlace> endOfLocalPrompt() {
    for (int row = pageRows - 1; row >= 0; --row) {
        const auto length = static_cast<int>(rowText(row).size());
        if (length > 0) return ScreenPlace{std::min(length, lastColumn), row};
    }
    return std::nullopt;
}

}  // namespace

ScreenReading readScreen() {
    ScreenReading reading;
    for (int row = 0; row < pictureRows; ++row) {
        reading.rows[static_cast<std::size_t>(row)] = rowText(row);
        reading.selected[static_cast<std::size_t>(row)] = selectedColumns(row);
    }
    return reading;
}

std::optional<ScreenPlace> placeOnScreen() {
    if (localPromptShown()) return endOfLocalPrompt();
    if (const auto mark = keyboardMark()) {
        const int row = mark->second - vscterm.value();
        if (row >= 0 && row < pageRows) return ScreenPlace{mark->first, row};
    }
    if (inputBusy != 0 || vscterm.value() != liveView || modeSet(mode::cursorHidden)) return std::nullopt;
    if (curRow < 0 || curRow >= screenRows) return std::nullopt;
    return ScreenPlace{std::clamp(curCol, 0, lastColumn), curRow};
}

}  // namespace qxterm
