#include "payloads.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "application_payload.h"
#include "random.h"

namespace qxterm::bench {
namespace {

constexpr int columns = 80;
constexpr int rows = 24;
constexpr std::string_view lineEnd = "\r\n";

char letter(Random& random) { return static_cast<char>(random.between('a', 'z')); }

/// Words of lower-case letters with blanks between them.
void appendText(std::string& out, Random& random, int length) {
    int wordLeft = random.between(2, 9);
    for (int at = 0; at < length; ++at) {
        if (wordLeft-- == 0) {
            out += ' ';
            wordLeft = random.between(2, 9);
        } else {
            out += letter(random);
        }
    }
}

void goTo(std::string& out, int row, int column) {
    out += "\x1b[" + std::to_string(row) + ';' + std::to_string(column) + 'H';
}

std::string plainLines(std::size_t size) {
    Random random{1};
    std::string out;
    while (out.size() < size) {
        appendText(out, random, random.between(20, columns - 1));
        out += lineEnd;
    }
    return out;
}

std::string wrappingLines(std::size_t size) {
    Random random{2};
    std::string out;
    while (out.size() < size) {
        appendText(out, random, random.between(200, 2000));
        out += lineEnd;
    }
    return out;
}

std::string yesLines(std::size_t size) {
    std::string out;
    while (out.size() < size) {
        out += 'y';
        out += lineEnd;
    }
    return out;
}

std::string regionScrolling(std::size_t size) {
    Random random{3};
    std::string out = "\x1b[5;20r\x1b[20;1H";
    while (out.size() < size) {
        appendText(out, random, random.between(20, columns - 1));
        out += lineEnd;
    }
    return out += "\x1b[r";
}

/// A letter on every cell, each with a cursor motion of its own, screen by screen.
std::string cursorMotion(std::size_t size) {
    std::string out;
    for (int screen = 0; out.size() < size; ++screen) {
        for (int row = 1; row <= rows; ++row) {
            for (int column = 1; column <= columns; ++column) {
                goTo(out, row, column);
                out += static_cast<char>('A' + screen % 26);
            }
        }
    }
    return out;
}

std::string jumps(std::size_t size) {
    Random random{4};
    std::string out;
    while (out.size() < size) {
        goTo(out, random.between(1, rows), random.between(1, columns));
        out += letter(random);
    }
    return out;
}

/// Whole screens on which each character sets both colours, bold and underline anew.
std::string colourChanges(std::size_t size) {
    std::string out;
    for (int screen = 0; out.size() < size; ++screen) {
        goTo(out, 1, 1);
        for (int cell = 0; cell < rows * columns; ++cell) {
            const int index = cell / columns + cell + screen;
            out += "\x1b[3" + std::to_string(index % 8) + ";4" + std::to_string(7 - index % 8) + ";1;4m";
            out += static_cast<char>('A' + screen % 26);
        }
    }
    return out += "\x1b[0m";
}

/// Text of which each character changes one of the two colours.
std::string singleColours(std::size_t size) {
    Random random{5};
    std::string out;
    for (int column = 0; out.size() < size; ++column) {
        const int base = random.below(2) == 0 ? 30 : 40;
        out += "\x1b[" + std::to_string(base + random.below(8)) + 'm';
        out += letter(random);
        if (column % columns == columns - 1) out += "\x1b[0m\r\n";
    }
    return out += "\x1b[0m";
}

std::string fullScreens(std::size_t size) {
    std::string out;
    for (int screen = 0; out.size() < size; ++screen) {
        goTo(out, 1, 1);
        out.append(static_cast<std::size_t>(columns * rows), static_cast<char>('A' + screen % 26));
    }
    return out;
}

}  // namespace

std::vector<Payload> makePayloads(std::size_t size) {
    return {
        {"plain", "lines of text", 9.7, plainLines(size)},
        {"wrap", "long lines that wrap", 20.4, wrappingLines(size)},
        {"y", "lines of one letter", 9.6, yesLines(size)},
        {"region", "text scrolling inside rows 5 to 20", 12.9, regionScrolling(size)},
        {"motion", "cursor motion over every cell, one character each", 8.0, cursorMotion(size)},
        {"jumps", "cursor motion anywhere, one character each", 7.0, jumps(size)},
        {"colours", "both colours and flags set for each character", 8.2, colourChanges(size)},
        {"one colour", "one colour changed for each character", 6.0, singleColours(size)},
        {"screens", "full screens of one letter", 31.9, fullScreens(size)},
        {"application", "frames, fields, partial redraws", 10.0, applicationScreens(size)},
    };
}

}  // namespace qxterm::bench
