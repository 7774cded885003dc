#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

/// Connection types: the values of a profile's connect type, and their words in the file.
namespace qxterm::connectType {

inline constexpr std::int16_t net = 0;
inline constexpr std::int16_t serial = 1;
inline constexpr std::int16_t modem = 2;
inline constexpr std::int16_t ssh = 3;
inline constexpr std::int16_t unknown = 4;
inline constexpr std::int16_t loop = 5;

struct Word {
    std::int16_t type;
    const char* word;
};
inline constexpr std::array words{Word{net, "net"}, Word{serial, "serial"}, Word{modem, "modem"},
                                  Word{ssh, "ssh"}, Word{loop, "loop"}};

/// `unknown` for a word that is none of them.
[[nodiscard]] constexpr std::int16_t ofWord(std::string_view word) {
    const auto* const found =
        std::find_if(words.begin(), words.end(), [&](const Word& entry) { return word == entry.word; });
    return found == words.end() ? unknown : found->type;
}

/// Null for a type that has no word.
[[nodiscard]] constexpr const char* wordOf(std::int16_t type) {
    const auto* const found =
        std::find_if(words.begin(), words.end(), [&](const Word& entry) { return type == entry.type; });
    return found == words.end() ? nullptr : found->word;
}

}  // namespace qxterm::connectType
