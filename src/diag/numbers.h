#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qxterm {

/// Text without its leading and trailing blanks.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// A whole decimal number with an optional sign first, blanks around it ignored. Error 13 for anything else,
/// error 6 out of range.
[[nodiscard]] std::int16_t textToInt16(std::string_view text);
[[nodiscard]] std::int32_t textToInt32(std::string_view text);

/// Reads typed text as far as it is a number (leading blanks skipped, optional sign); 0 when it starts with
/// none. Values beyond 64 bits stay at the limit.
[[nodiscard]] std::int64_t leadingNumber(std::string_view text);

}  // namespace qxterm
