#include "diag/numbers.h"

#include <algorithm>

#include "diag/checked.h"

namespace qxterm {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::int64_t leadingNumber(std::string_view text) {
    constexpr std::int64_t limit = INT64_MAX / 10 - 1;
    text = trimmed(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char c : text) {
        if (!isDigit(c)) break;
        value = std::min(value, limit) * 10 + (c - '0');
    }
    return negative ? -value : value;
}

std::int32_t textToInt32(std::string_view text) {
    const std::string_view number = trimmed(text);
    std::string_view digits = number;
    if (!digits.empty() && (digits.front() == '-' || digits.front() == '+')) digits.remove_prefix(1);
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit))
        throw RunTimeError{errors::typeMismatch};
    return toInt32(leadingNumber(number));
}

std::int16_t textToInt16(std::string_view text) { return toInt16(textToInt32(text)); }

}  // namespace qxterm
