// What the user does, and what time does.

#include <algorithm>

#include "model/terminal.h"

namespace qxterm::model {

const Line& Terminal::numbered(int line) const {
    if (line >= liveView) return screen[static_cast<std::size_t>(line - liveView)];
    const int oldest = liveView - static_cast<int>(scrollback.size());
    if (line < oldest) throw NotModelled{};
    return scrollback[static_cast<std::size_t>(line - oldest)];
}

Line& Terminal::numbered(int line) {
    return const_cast<Line&>(static_cast<const Terminal&>(*this).numbered(line));
}

void Terminal::scrollTo(int value) {
    value = std::clamp(value, liveView - static_cast<int>(scrollback.size()), liveView);
    const int by = view - value;
    if (by == 0) return;
    view = value;
    if (by >= -lastPageRow && by <= lastPageRow) {
        scrollWindow(0, lastPageRow, by);
        const int from = by > 0 ? 0 : lastPageRow + 1 + by;
        for (int r = from; r < from + std::abs(by); ++r) drawWhole(numbered(view + r), r);
    } else {
        for (int r = 0; r <= lastPageRow; ++r) drawWhole(numbered(view + r), r);
    }
}

void Terminal::tick() {
    if (blinkTicks_ == 0 || --blinkTicks_ > 0) return;
    blinkTicks_ = 2;
    blinkOff = !blinkOff;
    uncovered();
}

void Terminal::key(int code) {
    std::string bytes;
    if (code == 37) bytes = "\x1b[D";
    if (code == 38) bytes = "\x1b[A";
    if (code == 39) bytes = "\x1b[C";
    if (code == 40) bytes = "\x1b[B";
    if (code == 46) bytes = "\x7f";
    if (code >= 112 && code <= 119)
        bytes = strings[static_cast<std::size_t>(bank)][static_cast<std::size_t>(code - 112)];
    if (!bytes.empty()) block(bytes);
}

void Terminal::character(char c) {
    scrollTo(liveView);
    block({&c, 1});
}

void Terminal::clearMarks() {
    for (Line& line : screen) line.marked = false;
    for (Line& line : scrollback) line.marked = false;
}

bool Terminal::ordered(Place& from, Place& to) const {
    from = start_;
    to = end_;
    if (to.line < from.line || (to.line == from.line && to.column < from.column)) std::swap(from, to);
    from.column = std::clamp(from.column, 0, columns);
    to.column = std::clamp(to.column, 0, columns);
    if (from.line == to.line && from.column == to.column) return false;
    // The end lies behind the last cell.
    if (--to.column < 0) {
        to.column = columns;
        --to.line;
    }
    return true;
}

bool Terminal::within(const Place& from, const Place& to, int line, Range& range) {
    if (line < from.line || line > to.line) return false;
    range = {line == from.line ? from.column : 0, line == to.line ? to.column : columns};
    return true;
}

void Terminal::mouseDown(int at, int windowRow) {
    clearMarks();
    start_ = {std::clamp(at, 0, columns - 1), windowRow + view};
    selection_ = false;
    holding_ = true;
}

void Terminal::mouseMove(int at, int windowRow) {
    if (!holding_) return;
    end_ = {at, windowRow + view};
    selection_ = true;
}

void Terminal::mouseUp(int at, int windowRow) {
    if (!holding_) return;
    end_ = {at, windowRow + view};
    holding_ = false;
    Place from;
    Place to;
    selection_ = ordered(from, to);
    if (!selection_) return;
    for (int line = from.line; line <= to.line; ++line) {
        Range range{};
        if (!within(from, to, line, range)) continue;
        Line& marked = numbered(line);
        marked.marked = true;
        marked.markFirst = range.first;
        marked.markLast = range.last;
    }
}

bool Terminal::selected(int at, int windowRow) const {
    if (windowRow > lastPageRow) return false;
    const int line = view + windowRow;
    if (holding_) {
        Place from;
        Place to;
        Range range{};
        return selection_ && ordered(from, to) && within(from, to, line, range) && at >= range.first &&
               at <= range.last;
    }
    const Line& shown = numbered(line);
    return shown.marked && at >= shown.markFirst && at <= shown.markLast;
}

std::string Terminal::selectedText() const {
    std::string result;
    int lastColumn = -1;
    for (int line = liveView - static_cast<int>(scrollback.size()); line < liveView + lastPageRow + 1;
         ++line) {
        const Line& one = numbered(line);
        if (!one.marked) continue;
        std::string text =
            one.text.substr(static_cast<std::size_t>(std::min(one.markFirst, columns)),
                            static_cast<std::size_t>(std::max(one.markLast - one.markFirst + 1, 0)));
        text.erase(text.find_last_not_of(' ') + 1);
        if (text.empty()) continue;
        if (!result.empty()) result += "\r\n";
        result += text;
        lastColumn = one.markLast;
    }
    if (lastColumn == columns - 1) result += "\r\n";
    return result;
}

std::string Terminal::copy() {
    const std::string text = selectedText();
    clearMarks();
    selection_ = false;
    return text;
}

bool Terminal::cursorSeen() const {
    return (mode & (drawingSuspended | cursorHidden)) == 0 && view == liveView;
}

}  // namespace qxterm::model
