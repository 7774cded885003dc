#pragma once

#include <chrono>
#include <ctime>
#include <vector>

namespace qxterm::bench {

/// Processor time that this process has used, in seconds: other programs on the machine do not count.
[[nodiscard]] inline double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

/// Time of one call of a routine, in seconds of processor time.
template <class Routine>
[[nodiscard]] double secondsOf(Routine&& routine) {
    const double before = processorSeconds();
    routine();
    return processorSeconds() - before;
}

/// The same by the wall clock, for calls that are too short for the other one.
template <class Routine>
[[nodiscard]] double shortSecondsOf(Routine&& routine) {
    const auto before = std::chrono::steady_clock::now();
    routine();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

/// The middle value; the values must not be empty.
[[nodiscard]] double median(std::vector<double> values);

}  // namespace qxterm::bench
