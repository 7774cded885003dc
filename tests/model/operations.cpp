// What is done to lines, and what the window shows of it.

#include <algorithm>

#include "model/terminal.h"

namespace qxterm::model {
namespace {

/// More scrolls than this are not put off.
constexpr int mostWaitingScrolls = 22;

std::string eighty(std::string text) {
    text.resize(columns, ' ');
    return text;
}

}  // namespace

void Terminal::store() {
    if (pending.empty()) return;
    const int count = static_cast<int>(pending.size());
    if (column < 0 || column + count > columns) throw NotModelled{};
    Line& line = screen[static_cast<std::size_t>(row)];
    const std::string text = (attribute.flags & invisible) != 0 ? std::string(pending.size(), ' ') : pending;
    if ((mode & insertMode) != 0) {
        insertText(text, attribute.word());
    } else {
        line.dirtyFirst = line.toDraw ? std::min(line.dirtyFirst, column) : column;
        line.toDraw = true;
        for (int k = 0; k < count; ++k) {
            line.text[static_cast<std::size_t>(column + k)] = text[static_cast<std::size_t>(k)];
            line.words[static_cast<std::size_t>(column + k)] = attribute.word();
        }
    }
    column += count;
    line.dirtyLast = std::max(line.dirtyLast, column - 1);
    pending.clear();
}

void Terminal::insertText(const std::string& text, int word) {
    Line& line = screen[static_cast<std::size_t>(row)];
    const int count = static_cast<int>(text.size());
    const auto from = static_cast<std::size_t>(column);
    line.text = eighty(line.text.substr(0, from) + text + line.text.substr(from));
    line.dirtyFirst = line.toDraw ? std::min(line.dirtyFirst, column) : column;
    line.toDraw = true;
    line.toDrawWhole = true;
    line.words.insert(line.words.begin() + column, text.size(), word);
    line.words.resize(columns);
    if (line.used >= column) line.used = std::min(line.used + count, 32767);
    // What waits to be drawn moves along with its text.
    if (line.dirtyLast >= column) line.dirtyLast = std::min(line.dirtyLast + count, 32767);
}

void Terminal::deleteCharacters(int count) {
    if (column < 0 || column > columns) throw NotModelled{};
    Line& line = screen[static_cast<std::size_t>(row)];
    const int last = std::max(line.used, line.dirtyLast);
    const auto from = static_cast<std::size_t>(column);
    const auto behind = static_cast<std::size_t>(std::min(column + count, columns));
    line.text = eighty(line.text.substr(0, from) + line.text.substr(behind));
    for (int k = column; k + count < columns; ++k)
        line.words[static_cast<std::size_t>(k)] = line.words[static_cast<std::size_t>(k + count)];
    line.toDraw = true;
    line.toDrawWhole = true;
    if (line.used > column) line.used -= count;
    erase(last - count + 1, columns - 1, row, row);
}

void Terminal::lineFeed() {
    store();
    if (row == statusRow) return;
    if (row == regionBottom) {
        moveUp();
        if (++waitingScrolls_ > mostWaitingScrolls) flush();
    } else if (row < lastPageRow) {
        ++row;
    }
}

/// The lines alone: the window follows later.
void Terminal::moveUp() {
    if (regionTop == 0) {
        Line gone = screen[0];
        gone.used = std::max(gone.used, gone.toDraw ? gone.dirtyLast : -1);
        scrollback.push_back(gone);
        if (scrollback.size() > scrollbackCapacity) scrollback.pop_front();
    }
    for (int r = regionTop; r < regionBottom; ++r)
        screen[static_cast<std::size_t>(r)] = screen[static_cast<std::size_t>(r + 1)];
    screen[static_cast<std::size_t>(regionBottom)] = Line{};
}

void Terminal::scrollUp() {
    moveUp();
    scrollWindow(regionTop, regionBottom, -1);
}

void Terminal::scrollDown() {
    for (int r = regionBottom; r > regionTop; --r)
        screen[static_cast<std::size_t>(r)] = screen[static_cast<std::size_t>(r - 1)];
    screen[static_cast<std::size_t>(regionTop)] = Line{};
    scrollWindow(regionTop, regionBottom, 1);
}

void Terminal::erase(int fromColumn, int toColumn, int fromRow, int toRow) {
    if (fromColumn > toColumn || fromRow > toRow) return;
    fill(fromColumn, toColumn, fromRow, toRow);
    for (int r = fromRow; r <= toRow; ++r) {
        Line& line = screen[static_cast<std::size_t>(r)];
        for (int c = std::max(fromColumn, 0); c <= toColumn && c < columns; ++c) {
            if (c < toColumn)
                line.text[static_cast<std::size_t>(c)] = ' ';  // the last one keeps its character
            line.words[static_cast<std::size_t>(c)] = defaultWord;
        }
        if (line.used > fromColumn) line.used = fromColumn;
    }
}

void Terminal::flush() {
    store();
    if (waitingScrolls_ > 0) scrollWindow(regionTop, regionBottom, -waitingScrolls_);
    waitingScrolls_ = 0;
    for (int r = 0; r < rows; ++r) {
        Line& line = screen[static_cast<std::size_t>(r)];
        if (line.toDraw) drawLine(line, r);
    }
}

void Terminal::drawLine(Line& line, int windowRow) {
    const int first = line.dirtyFirst;
    const int last = line.dirtyLast;
    line.toDraw = false;
    line.dirtyFirst = 0;
    line.used = std::max(line.used, line.dirtyLast);
    line.dirtyLast = -1;
    if ((mode & drawingSuspended) != 0) return;
    for (int c = first; c <= last && c < columns; ++c) drawCell(line, c, windowRow);
    if (line.toDrawWhole) {
        drawUsed(line, row);  // where the cursor stands, wherever the line does
        line.toDrawWhole = false;
    }
}

void Terminal::drawCell(const Line& line, int at, int windowRow) {
    const char c = line.text[static_cast<std::size_t>(at)];
    const int word = line.words[static_cast<std::size_t>(at)];
    const bool exchanged = ((mode & reverseScreen) != 0) != ((word & reverse) != 0);
    Cell cell;
    cell.drawn = true;
    if ((word & blink) != 0 && blinkOff) {
        cell.background = (mode & reverseScreen) != 0 ? 7 : 0;
    } else {
        cell.text = c;
        cell.foreground = exchanged ? word / 4096 % 16 : word / 256 % 16;
        cell.background = exchanged ? word / 256 % 16 : word / 4096 % 16;
        cell.bold = (word & bold) != 0;
        cell.underlined = (word & underline) != 0;
        cell.terminalFont = (word & shiftOut) != 0 && c >= 'j' && c <= 'x';
    }
    window[static_cast<std::size_t>(windowRow)][static_cast<std::size_t>(at)] = cell;
}

void Terminal::drawUsed(const Line& line, int windowRow) {
    for (int c = 0; c <= line.used && c < columns; ++c) drawCell(line, c, windowRow);
}

void Terminal::drawWhole(const Line& line, int windowRow) {
    drawUsed(line, windowRow);
    // In the background of this moment: a later change of it is not seen before the next paint.
    Cell blank;
    blank.drawn = true;
    blank.background = background;
    for (int c = std::max(line.used + 1, 0); c < columns; ++c)
        window[static_cast<std::size_t>(windowRow)][static_cast<std::size_t>(c)] = blank;
}

void Terminal::fill(int fromColumn, int toColumn, int fromRow, int toRow) {
    Cell blank;
    blank.drawn = true;
    blank.background = (mode & reverseScreen) != 0 ? 7 : 0;
    for (int r = fromRow; r <= toRow; ++r) {
        for (int c = std::max(fromColumn, 0); c <= toColumn && c < columns; ++c)
            window[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)] = blank;
    }
}

void Terminal::scrollWindow(int first, int last, int by) {
    const auto before = window;
    for (int r = first; r <= last; ++r) {
        const int from = r - by;
        auto& cells = window[static_cast<std::size_t>(r)];
        if (from >= first && from <= last) {
            cells = before[static_cast<std::size_t>(from)];
        } else {
            cells.fill(Cell{});
        }
    }
}

void Terminal::paint() {
    if ((mode & drawingSuspended) != 0) return;
    waitingScrolls_ = 0;  // all is drawn where it belongs
    for (int r = 0; r <= lastPageRow; ++r) drawWhole(numbered(view + r), r);
    drawWhole(screen[statusRow], statusRow);
}

void Terminal::uncovered() {
    for (auto& cells : window) cells.fill(Cell{});
    paint();
}

}  // namespace qxterm::model
