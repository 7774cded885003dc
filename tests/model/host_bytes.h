#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace qxterm::test {

/// Choices that follow from a number: the same on every system.
class Choices {
public:
    explicit Choices(std::uint64_t seed) : random_{seed} {}

    /// 0 to limit - 1.
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }
    /// True once in so many times.
    bool oneIn(std::uint32_t times) { return below(times) == 0; }
    std::int32_t between(std::int32_t first, std::int32_t last) {
        return first + static_cast<std::int32_t>(below(static_cast<std::uint32_t>(last - first + 1)));
    }

private:
    std::mt19937_64 random_;
};

/// What is left out.
struct HostLimits {
    bool telnet = true;
    bool repeats = true;         ///< the repeat command
    bool columnsOutside = true;  ///< columns that the status-row command puts outside of the line
};

/// Output of a host: text, controls, sequences of every kind, with ordinary and with extreme parameters,
/// finished and not.
[[nodiscard]] std::string hostBytes(Choices& choices, const HostLimits& limits = {});

}  // namespace qxterm::test
