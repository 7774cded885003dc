#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/run_time_error.h"

/// Checked arithmetic and subscripts: what leaves its range raises a run-time error instead of wrapping or
/// straying.
namespace qxterm {

/// Error 6 outside -32768..32767.
[[nodiscard]] constexpr std::int16_t toInt16(std::int64_t value) {
    if (value < INT16_MIN || value > INT16_MAX) [[unlikely]]
        throw RunTimeError{errors::overflow};
    return static_cast<std::int16_t>(value);
}

/// Error 6 outside the 32-bit range.
[[nodiscard]] constexpr std::int32_t toInt32(std::int64_t value) {
    if (value < INT32_MIN || value > INT32_MAX) [[unlikely]]
        throw RunTimeError{errors::overflow};
    return static_cast<std::int32_t>(value);
}

/// index itself, for use as a subscript of an array that runs from first to last. Error 9 outside.
[[nodiscard]] constexpr std::size_t subscript(std::int64_t index, std::int64_t first, std::int64_t last) {
    if (index < first || index > last) [[unlikely]]
        throw RunTimeError{errors::subscriptOutOfRange};
    return static_cast<std::size_t>(index);
}

}  // namespace qxterm
