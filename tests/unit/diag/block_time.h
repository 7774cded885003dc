#pragma once

#include <ctime>
#include <limits>

namespace qxterm::test {

/// What a block of host output may take of the processor's time, in units of std::clock: a tenth of a second,
/// sanitizers included. On Windows std::clock is the time of day, in which other programs have their share:
/// there is no limit there.
#ifdef _WIN32
inline constexpr std::clock_t longestBlock = std::numeric_limits<std::clock_t>::max();
#else
inline constexpr std::clock_t longestBlock = CLOCKS_PER_SEC / 10;
#endif

}  // namespace qxterm::test
