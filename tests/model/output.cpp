// What a host's bytes mean.

#include <algorithm>

#include "model/terminal.h"

namespace qxterm::model {
namespace {

constexpr char esc = '\x1b';
constexpr char iac = '\xff';
constexpr int largest = 32767;  // of a parameter
constexpr std::size_t labelLength = 16;

bool digit(char c) { return c >= '0' && c <= '9'; }

/// The first parameter, or what stands for it when there is none.
int first(const std::vector<int>& parameters, int otherwise) {
    return parameters.empty() ? otherwise : parameters[0];
}

std::string defaultLabel(int key) { return "   F" + std::to_string(key) + std::string(11, ' '); }

std::string defaultString(int key) { return std::string{"\x1bO"} + static_cast<char>('c' + key - 1); }

int roundedDown(int value) { return value - ((value % 8) + 8) % 8; }

}  // namespace

Terminal::Terminal() {
    for (std::size_t which = 0; which < 2; ++which) {
        for (int key = 1; key <= 8; ++key) {
            labels[which][static_cast<std::size_t>(key - 1)] = defaultLabel(key);
            strings[which][static_cast<std::size_t>(key - 1)] = defaultString(key);
        }
    }
    paint();
}

void Terminal::block(std::string_view bytes) {
    if (view != liveView) scrollTo(liveView);
    data_ = carried + std::string{bytes};
    carried.clear();
    wentBack_.clear();
    for (at_ = 1; at_ <= data_.size(); ++at_) {
        const char c = data_[at_ - 1];
        if (c == esc) {
            escape();
        } else if (c == iac) {
            telnet();
        } else if (static_cast<unsigned char>(c) >= ' ') {
            printable(c);
        } else {
            control(c);
        }
    }
    flush();
}

void Terminal::printable(char c) {
    const auto next = [this] { return column + static_cast<int>(pending.size()); };
    if ((mode & wrapDisabled) == 0 && next() >= columns) {
        store();
        column = 0;
        lineFeed();
    }
    if (next() >= columns) {
        flush();
        --column;
    }
    repeatable = std::string(1, c);
    pending += c;
}

void Terminal::control(char c) {
    switch (c) {
        case 7: ++bells; break;
        case 8:
            flush();
            if (column > 0) --column;
            break;
        case 9:
            flush();
            if (column % 8 == 0) ++column;
            column = std::min(roundedDown(column) + 8, columns);
            break;
        case 10: lineFeed(); break;
        case 13:
            store();
            column = 0;
            break;
        case 14:
            flush();
            attribute.flags |= shiftOut;
            break;
        case 15:
            flush();
            attribute.flags &= ~shiftOut;
            break;
        default: break;
    }
}

bool Terminal::readNext(std::size_t begin, char& byte) {
    ++at_;
    if (at_ > data_.size()) {
        carried = data_.substr(begin - 1);
        return false;
    }
    byte = data_[at_ - 1];
    return true;
}

void Terminal::escape() {
    const std::size_t begin = at_;
    char c = 0;
    if (!readNext(begin, c)) return;
    carried.clear();
    switch (c) {
        case '7':
            if (row == statusRow) break;
            savedColumn = column + static_cast<int>(pending.size());
            savedRow = row;
            savedAttribute = attribute;
            savedMode = mode;
            break;
        case '8':
            flush();
            column = savedColumn;
            row = savedRow;
            attribute = savedAttribute;
            break;
        case 'D':
            flush();
            if (row == statusRow) break;
            if (row == regionBottom) {
                scrollUp();
            } else {
                row = std::min(row + 1, lastPageRow);
            }
            break;
        case 'E':
            store();
            column = 0;
            lineFeed();
            break;
        case 'M':
            flush();
            if (row == statusRow) break;
            if (row == regionTop) {
                scrollDown();
            } else {
                row = std::max(row - 1, 0);
            }
            break;
        case 'c': reset(); break;
        case '(':
        case ')':
            if (readNext(begin, c) && c != 'A' && c != 'B' && c != '0' && c != '1' && c != '}') --at_;
            break;
        case '#':
            if (!readNext(begin, c)) break;
            if (c == '8') {
                fillWithE();
            } else if (c < '3' || c > '6') {
                --at_;
            }
            break;
        case '[': controlSequence(begin); break;
        case 'Q':
        case 'R':
        case '=':
        case '>': break;
        default: --at_; break;
    }
}

void Terminal::telnet() {
    const std::size_t begin = at_;
    char c = 0;
    if (!readNext(begin, c)) return;
    carried.clear();
    const int command = static_cast<unsigned char>(c);
    if (command >= 250 && command <= 254) {
        (void)readNext(begin, c);
    } else if (command == 0) {
        (void)readNext(begin, c);
    } else {
        ++at_;  // whatever stands there
    }
}

void Terminal::controlSequence(std::size_t begin) {
    char c = 0;
    if (!readNext(begin, c)) return;
    const bool marker = c == '?';
    if (marker && !readNext(begin, c)) return;
    std::vector<int> parameters;
    for (;;) {
        if (digit(c)) {
            int value = 0;
            while (digit(c)) {
                value = value * 10 + (c - '0');
                if (value > largest) return;  // an error: the sequence is lost, the digit with it
                if (!readNext(begin, c)) return;
            }
            parameters.push_back(value);
        }
        if (c != ';') break;
        if (!readNext(begin, c)) return;
    }
    static const std::string known = "HfrJKABCDLMmhlpqx@PbZ";
    if (known.find(c) == std::string::npos) {
        carried = data_.substr(begin - 1, at_ - begin + 1);
    } else if (c == 'b') {
        repeat(parameters);
    } else if (c == 'q') {
        (void)programKey(begin, parameters);
    } else {
        execute(c, parameters, marker);
    }
}

void Terminal::repeat(const std::vector<int>& parameters) {
    const std::size_t own = at_;
    const int count = first(parameters, 1);
    int position = 1;
    for (; position <= count; ++position) {
        if (column + static_cast<int>(pending.size()) >= columns) break;
        pending += repeatable;
    }
    at_ = static_cast<std::size_t>(position);
    if (at_ < own && !wentBack_.insert(own).second) at_ = own;
}

bool Terminal::programKey(std::size_t begin, std::vector<int> parameters) {
    parameters.resize(std::max<std::size_t>(parameters.size(), 4), 0);
    const int key = parameters[0];
    if (key < 1 || key > 8) return true;
    std::string label;
    std::string string;
    char c = 0;
    while (label.size() < labelLength) {
        if (!readNext(begin, c)) return false;
        label += c;
    }
    while (static_cast<int>(string.size()) < parameters[1]) {
        if (!readNext(begin, c)) return false;
        string += c;
    }
    if (parameters[2] > 1) return true;
    const auto which = static_cast<std::size_t>(parameters[2]);
    labels[which][static_cast<std::size_t>(key - 1)] = label;
    showLabels();
    if (!string.empty()) strings[which][static_cast<std::size_t>(key - 1)] = string;
    return true;
}

void Terminal::showLabels() { mode |= keyBarShown; }

void Terminal::execute(char final, std::vector<int> parameters, bool marker) {
    const int p1 = first(parameters, 1);
    switch (final) {
        case 'H':
        case 'f': moveTo(parameters); break;
        case 'r': setRegion(parameters); break;
        case 'J':
            flush();
            eraseInDisplay(first(parameters, 0));
            break;
        case 'K':
            flush();
            eraseInLine(first(parameters, 0));
            break;
        case 'A':
            flush();
            if (row != statusRow) row = std::max(row - p1, regionTop);
            break;
        case 'B':
            flush();
            if (row != statusRow) row = std::min(row + p1, regionBottom);
            break;
        case 'C':
            flush();
            column += p1;
            if (column >= columns) column = columns - 1;
            break;
        case 'D':
            flush();
            column = std::max(column - p1, 0);
            break;
        case 'L': insertLines(p1); break;
        case 'M': deleteLines(p1); break;
        case 'm': rendition(parameters); break;
        case 'h':
        case 'l':
            if (marker) {
                setPrivateModes(parameters, final == 'h');
            } else {
                setModes(parameters, final == 'h');
            }
            break;
        case 'p':
            switch (first(parameters, 0)) {
                case 0:
                case 1:
                    showLabels();
                    bank = first(parameters, 0);
                    break;
                case 2: mode &= ~keyBarShown; break;
                default: break;
            }
            break;
        case 'x':
            flush();
            row = statusRow;
            if (parameters.size() >= 2) column = parameters[1] - 1;
            if (column < 0 || column > columns) throw NotModelled{};
            break;
        case '@':
            flush();
            insertText(std::string(static_cast<std::size_t>(std::min(p1, columns - column)), ' '),
                       defaultWord);
            break;
        case 'P':
            flush();
            deleteCharacters(p1);
            break;
        default: backTab(p1); break;
    }
}

void Terminal::moveTo(const std::vector<int>& parameters) {
    flush();
    row = parameters.empty() ? 0 : parameters[0] - 1;
    column = parameters.size() < 2 ? 0 : parameters[1] - 1;
    if (column < 0) column = 0;
    if (column > columns) column = columns - 1;
    if ((mode & originMode) != 0) {
        row = std::clamp(row + regionTop, regionTop, regionBottom);
    } else {
        row = std::clamp(row, 0, lastPageRow);
    }
}

void Terminal::setRegion(const std::vector<int>& parameters) {
    int top = parameters.empty() ? 1 : parameters[0];
    int bottom = parameters.size() < 2 ? 24 : parameters[1];
    if (top < 1 || top > 23) top = 1;
    if (bottom < 1 || bottom > 24) bottom = 24;
    if (top >= bottom) return;
    flush();
    column = 0;
    row = 0;
    regionTop = top - 1;
    regionBottom = bottom - 1;
}

void Terminal::eraseInDisplay(int how) {
    constexpr int end = columns - 1;
    if (how == 0) {
        erase(column, end, row, row);
        erase(0, end, row + 1, lastPageRow);
    } else if (how == 1) {
        erase(0, end, 0, row);
        erase(column, end, row, row);
    } else if (how == 2) {
        erase(0, end, 0, lastPageRow);
    }
}

void Terminal::eraseInLine(int how) {
    constexpr int end = columns - 1;
    if (how == 0) erase(column, end, row, row);
    if (how == 1) erase(0, column, row, row);
    if (how == 2) erase(0, end, row, row);
}

void Terminal::backTab(int count) {
    flush();
    if (column % 8 == 0) --column;
    column = roundedDown(column);
    const int back = (count - 1) * 8;
    if (back > largest) {  // an error: the sequence is lost
        if (column < 0) throw NotModelled{};
        return;
    }
    column = std::max(column - back, 0);
}

void Terminal::insertLines(int count) {
    if (row < regionTop || row > regionBottom) return;
    flush();
    column = 0;
    count = std::min(count, regionBottom - row + 1);
    const auto before = screen;
    int freed = 0;
    for (int k = regionBottom; k >= row + count; --k) {
        if (freed < count) ++freed;
        screen[static_cast<std::size_t>(k)] = before[static_cast<std::size_t>(k - count)];
    }
    for (int k = 0; k < freed; ++k) screen[static_cast<std::size_t>(row + k)] = Line{};
    fill(0, columns - 1, row, regionBottom);
    paint();
}

void Terminal::deleteLines(int count) {
    if (row < regionTop || row > regionBottom) return;
    flush();
    column = 0;
    count = std::min(count, regionBottom - row);
    const auto before = screen;
    int freed = 0;
    for (int k = row + count; k <= regionBottom; ++k) {
        if (freed < count) ++freed;
        screen[static_cast<std::size_t>(k - count)] = before[static_cast<std::size_t>(k)];
    }
    for (int k = 0; k < freed; ++k) screen[static_cast<std::size_t>(regionBottom - k)] = Line{};
    fill(0, columns - 1, row, regionBottom);
    paint();
}

void Terminal::rendition(const std::vector<int>& parameters) {
    flush();
    for (const int p : parameters.empty() ? std::vector<int>{0} : parameters) {
        if (p == 0) {
            const int kept = attribute.flags & shiftOut;
            attribute = {};
            attribute.flags = kept;
        } else if (p == 1) {
            attribute.flags |= bold;
        } else if (p == 4) {
            attribute.flags |= underline;
        } else if (p == 5) {
            attribute.flags |= blink;
            if (blinkTicks_ == 0) blinkTicks_ = 2;
        } else if (p == 7) {
            attribute.flags |= reverse;
        } else if (p == 8) {
            attribute.flags |= invisible;
        } else if (p == 22) {
            attribute.flags = 0;
        } else if (p == 24) {
            attribute.flags &= ~underline;
        } else if (p == 25) {
            attribute.flags &= ~blink;
        } else if (p == 27) {
            attribute.flags &= ~(blink | reverse);
        } else if (p == 28) {
            attribute.flags &= ~invisible;
        } else if (p >= 30 && p <= 37) {
            attribute.foreground = p - 30;
        } else if (p == 39) {
            attribute.foreground = 7;
        } else if (p >= 40 && p <= 47) {
            attribute.background = p - 40;
        } else if (p == 49) {
            attribute.background = 0;
        }
    }
}

void Terminal::setModes(const std::vector<int>& parameters, bool on) {
    for (const int p : parameters) {
        if (p != 4) continue;
        flush();
        mode = on ? mode | insertMode : mode & ~insertMode;
    }
}

void Terminal::setPrivateModes(const std::vector<int>& parameters, bool on) {
    const auto put = [&](int bit, bool set) { mode = set ? mode | bit : mode & ~bit; };
    for (const int p : parameters) {
        switch (p) {
            case 5:
                put(reverseScreen, on);
                flush();
                background = on ? 7 : 0;
                paint();
                break;
            case 6:
                put(originMode, on);
                flush();
                column = 0;
                row = on ? regionTop : 0;
                break;
            case 7: put(wrapDisabled, !on); break;
            case 10:
                put(drawingSuspended, on);
                if (on) {
                    fill(0, columns - 1, 0, lastPageRow);
                } else {
                    paint();
                }
                break;
            case 11: put(underlineCursor, on); break;
            case 12:
                put(cursorBlinking, on);
                cursorBlinked_ = cursorBlinked_ || on;
                break;
            case 13: put(keyBarShown, !on); break;
            case 25: put(cursorHidden, !on); break;
            default: break;
        }
    }
}

void Terminal::reset() {
    flush();
    mode &= 0xFFA8;
    erase(0, columns - 1, 0, statusRow);
    for (int key = 1; key <= 8; ++key) {
        labels[0][static_cast<std::size_t>(key - 1)] = defaultLabel(key);
        for (auto& all : strings) all[static_cast<std::size_t>(key - 1)] = defaultString(key);
    }
    showLabels();
    column = 0;
    row = 0;
    regionTop = 0;
    regionBottom = lastPageRow;
    attribute = {};
    savedColumn = 0;
    savedRow = 0;
    savedAttribute = {};
    savedMode = 0;
    background = 0;
    clearMarks();
    selection_ = false;
    holding_ = false;
}

void Terminal::fillWithE() {
    store();
    for (int r = 0; r <= lastPageRow; ++r) {
        Line line;
        line.text = std::string(columns, 'E');
        line.dirtyLast = columns - 1;
        line.used = columns - 1;
        screen[static_cast<std::size_t>(r)] = line;
    }
    paint();
}

}  // namespace qxterm::model
