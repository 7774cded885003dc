#pragma once

#include <cstdint>

#include "platform/win32/system.h"

namespace qxterm::win32 {

/// Microseconds since some time before the program began. Finer than the system's tick, which is 10 to 16
/// milliseconds wide.
[[nodiscard]] inline std::int64_t microseconds() {
    static const std::int64_t perSecond = [] {
        LARGE_INTEGER frequency{};
        QueryPerformanceFrequency(&frequency);
        return static_cast<std::int64_t>(frequency.QuadPart);
    }();
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    constexpr std::int64_t million = 1000000;
    const std::int64_t seconds = now.QuadPart / perSecond;
    return seconds * million + (now.QuadPart - seconds * perSecond) * million / perSecond;
}

}  // namespace qxterm::win32
