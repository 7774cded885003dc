#include "common/fields.h"

#include <algorithm>
#include <charconv>

namespace zpt {
namespace {

constexpr unsigned char del = 127;

bool inHost(char c) {
    constexpr std::string_view others = ".-_:%[]";
    const bool alphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return alphanumeric || others.find(c) != std::string_view::npos || static_cast<unsigned char>(c) > del;
}

bool inLogin(char c) {
    constexpr std::string_view quotes = "\"'`";
    const auto code = static_cast<unsigned char>(c);
    return code > ' ' && code != del && quotes.find(c) == std::string_view::npos;
}

}  // namespace

std::optional<std::uint16_t> parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc{} || stop != end || port == 0) return std::nullopt;
    return port;
}

bool isHost(std::string_view text) {
    return !text.empty() && text.size() <= longestField && text.front() != '-' &&
           std::all_of(text.begin(), text.end(), inHost);
}

bool isLogin(std::string_view text) {
    return text.size() <= longestField && !text.starts_with('-') &&
           std::all_of(text.begin(), text.end(), inLogin);
}

}  // namespace zpt
