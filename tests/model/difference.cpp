#include <algorithm>

#include "model/pair.h"
#include "platform/picture.h"
#include "terminal/commands/function_keys.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"

namespace qxterm::test {
namespace {

std::string at(const char* what, int column, int row) {
    return std::string{what} + " in column " + std::to_string(column) + " of row " + std::to_string(row) +
           ": ";
}

std::string number(const char* what, long long program, long long twin) {
    if (program == twin) return {};
    return std::string{what} + ": " + std::to_string(program) + " for " + std::to_string(twin);
}

std::string inLine(const ScreenLine& line, const model::Line& twin, int row, bool onScreen) {
    for (int c = 0; c < model::columns; ++c) {
        const auto column = static_cast<std::size_t>(c);
        if (line.text[column] != twin.text[column])
            return at("character", c, row) + "'" + line.text[column] + "' for '" + twin.text[column] + "'";
        if (line.attrs[column + 1] != twin.words[column])
            return at("word", c, row) + std::to_string(line.attrs[column + 1]) + " for " +
                   std::to_string(twin.words[column]);
    }
    const std::string where = " of row " + std::to_string(row);
    if (std::string s = number("used length", line.usedLength, twin.used); !s.empty()) return s + where;
    if (onScreen) {
        if (std::string s = number("last dirty column", line.dirtyLast, twin.dirtyLast); !s.empty())
            return s + where;
    }
    if (std::string s = number("to be redrawn", (line.lineFlags & lineFlag::whole) != 0, twin.toDrawWhole);
        !s.empty())
        return s + where;
    const bool marked = (line.lineFlags & lineFlag::selected) != 0;
    if (std::string s = number("marked", marked, twin.marked); !s.empty()) return s + where;
    if (!marked) return {};
    if (std::string s = number("first marked", line.selFirst, twin.markFirst); !s.empty()) return s + where;
    if (std::string s = number("last marked", line.selLast, twin.markLast); !s.empty()) return s + where;
    return {};
}

std::string inState(const model::Terminal& twin) {
    const std::pair<const char*, std::pair<long long, long long>> numbers[] = {
        {"cursor's column", {curCol, twin.column}},
        {"cursor's row", {curRow, twin.row}},
        {"flags", {curAttr, twin.attribute.flags}},
        {"foreground", {curFg, twin.attribute.foreground}},
        {"background", {curBg, twin.attribute.background}},
        {"mode", {screenMode, twin.mode}},
        {"region's top", {regionTop, twin.regionTop}},
        {"region's bottom", {regionBottom, twin.regionBottom}},
        {"saved column", {savedCol, twin.savedColumn}},
        {"saved row", {savedRow, twin.savedRow}},
        {"saved flags", {savedAttr.flags, twin.savedAttribute.flags}},
        {"saved foreground", {savedAttr.fg, twin.savedAttribute.foreground}},
        {"saved background", {savedAttr.bg, twin.savedAttribute.background}},
        {"saved mode", {savedMode, twin.savedMode}},
        {"pending", {pendingCount, static_cast<long long>(twin.pending.size())}},
        {"view", {vscterm.value(), twin.view}},
        {"window's background", {screenBackIndex, twin.background}},
        {"picture's background", {picterm.background(), twin.background}},
        {"scrollback's first line",
         {scrollbackTop, model::liveView - static_cast<int>(twin.scrollback.size())}},
        {"blink phase", {textBlinkOff, twin.blinkOff}},
        {"bank", {fkeyBank, twin.bank}},
    };
    for (const auto& [what, values] : numbers) {
        if (std::string s = number(what, values.first, values.second); !s.empty()) return s;
    }
    if (carryOver != twin.carried) return "carried text";
    if (lastChar != twin.repeatable) return "last character: " + lastChar + " for " + twin.repeatable;
    for (std::size_t which = 0; which < 2; ++which) {
        for (std::size_t key = 0; key < 8; ++key) {
            const auto& label = fkeyLabels[which][key];
            if (std::string{label.begin(), label.end()} != twin.labels[which][key]) return "label of a key";
            if (fkeyStrings[which][key] != twin.strings[which][key]) return "string of a key";
        }
    }
    return {};
}

std::string inWindow(const model::Terminal& twin) {
    const Picture& picture = picterm.picture();
    for (int r = 0; r < model::rows; ++r) {
        for (int c = 0; c < model::columns; ++c) {
            const PictureCell cell = picture.at(c, r);
            const model::Cell& other = twin.window[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
            if (cell.text() != other.text)
                return at("shown character", c, r) + "'" + cell.text() + "' for '" + other.text + "'";
            const int seen = cell.on(picterm.background()).bg();
            const int wanted = other.drawn ? other.background : twin.background;
            if (seen != wanted)
                return at("shown background", c, r) + std::to_string(seen) + " for " + std::to_string(wanted);
            if (cell.fg() != other.foreground)
                return at("shown foreground", c, r) + std::to_string(cell.fg()) + " for " +
                       std::to_string(other.foreground);
            // With drawing suspended a paint shows nothing, and no marks.
            const bool shown = (twin.mode & model::drawingSuspended) == 0;
            const int style = (other.terminalFont ? 1 : 0) | (other.bold ? 2 : 0) |
                              (other.underlined ? 4 : 0) | (twin.selected(c, r) ? 16 : 0);
            if ((cell.style() & (shown ? 31 : 15)) != (style & (shown ? 31 : 15)))
                return at("shown style", c, r) + std::to_string(cell.style()) + " for " +
                       std::to_string(style);
            // While it blinks its phase is its own.
            if (cell.cursor() && twin.cursorBlinks() &&
                (c != std::min(twin.column, model::columns - 1) || r != twin.row))
                return at("a cursor", c, r);
            if (twin.cursorBlinks()) continue;
            const bool here =
                twin.cursorSeen() && r == twin.row && c == std::min(twin.column, model::columns - 1);
            if (cell.cursor() != here) return at(here ? "no cursor" : "a cursor", c, r);
        }
    }
    return {};
}

}  // namespace

std::string difference(const model::Terminal& twin, bool all) {
    if (std::string s = inState(twin); !s.empty()) return s;
    for (int r = 0; r < model::rows; ++r) {
        if (std::string s = inLine(lineOnRow(r), twin.screen[static_cast<std::size_t>(r)], r, true);
            !s.empty())
            return s;
    }
    constexpr std::size_t newest = 4;
    const std::size_t held = twin.scrollback.size();
    for (std::size_t back = 1; back <= (all ? held : std::min(newest, held)); ++back) {
        const int position = model::liveView - static_cast<int>(back);
        if (std::string s = inLine(virtualLine(position), twin.scrollback[held - back], position, false);
            !s.empty())
            return s;
    }
    return inWindow(twin);
}

}  // namespace qxterm::test
