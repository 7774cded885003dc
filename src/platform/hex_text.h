#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// Lower-case hexadecimal digits, two a byte.
[[nodiscard]] inline std::string hexText(std::string_view bytes) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

}  // namespace qxterm
