#include "picture_text.h"

#include <array>
#include <cstdint>

namespace qxterm::scenario {
namespace {

constexpr std::uint16_t replacement = 0xFFFD;
/// 0x80 to 0x9F; the other characters have their own numbers.
constexpr std::array<std::uint16_t, 32> windows1252{
    0x20AC,      replacement, 0x201A, 0x0192, 0x201E, 0x2026,      0x2020, 0x2021,  //
    0x02C6,      0x2030,      0x0160, 0x2039, 0x0152, replacement, 0x017D, replacement,
    replacement, 0x2018,      0x2019, 0x201C, 0x201D, 0x2022,      0x2013, 0x2014,  //
    0x02DC,      0x2122,      0x0161, 0x203A, 0x0153, replacement, 0x017E, 0x0178};
/// "j" to "x": corners, crossing, scan lines 1 to 9, tees, vertical line.
constexpr std::array<std::uint16_t, 15> lineDrawing{0x2518, 0x2510, 0x250C, 0x2514, 0x253C,
                                                    0x23BA, 0x23BB, 0x2500, 0x23BC, 0x23BD,
                                                    0x251C, 0x2524, 0x2534, 0x252C, 0x2502};

std::string encoded(std::uint32_t number) {
    std::string text;
    if (number < 0x80) {
        text += static_cast<char>(number);
    } else if (number < 0x800) {
        text += static_cast<char>(0xC0U | number >> 6U);
        text += static_cast<char>(0x80U | (number & 0x3FU));
    } else {
        text += static_cast<char>(0xE0U | number >> 12U);
        text += static_cast<char>(0x80U | (number >> 6U & 0x3FU));
        text += static_cast<char>(0x80U | (number & 0x3FU));
    }
    return text;
}

}  // namespace

std::string utf8(char character) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 32 || byte == 127) return encoded(replacement);
    if (byte >= 0x80 && byte < 0xA0) return encoded(windows1252[byte - 0x80U]);
    return encoded(byte);
}

std::string utf8OfLineDrawing(char character) {
    const auto place = static_cast<std::size_t>(static_cast<unsigned char>(character)) - 'j';
    return place < lineDrawing.size() ? encoded(lineDrawing[place]) : utf8(character);
}

bool isGlyph(const PictureCell& cell) { return cell.terminalFont() && cell.code() != cell.text(); }

std::string pictureAsText(const Picture& picture) {
    std::string text;
    for (int row = 0; row < pictureRows; ++row) {
        int used = pictureColumns;
        while (used > 0 && picture.at(used - 1, row).code() == ' ') --used;
        for (int column = 0; column < used; ++column) {
            const PictureCell& cell = picture.at(column, row);
            text += isGlyph(cell) ? utf8OfLineDrawing(cell.text()) : utf8(cell.code());
        }
        text += '\n';
    }
    if (const auto cursor = picture.cursor()) {
        text += "[cursor: column " + std::to_string(cursor->first + 1) + ", row " +
                std::to_string(cursor->second + 1) + "]\n";
    } else {
        text += "[no cursor]\n";
    }
    return text;
}

}  // namespace qxterm::scenario
