#pragma once

#include <cstdint>

namespace qxterm::bench {

/// A small seeded generator: the same numbers on every machine and with every library.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_{seed} {}

    /// A number from 0 to limit - 1.
    [[nodiscard]] int below(int limit) {
        return static_cast<int>(next() % static_cast<std::uint64_t>(limit));
    }
    /// A number from first to last.
    [[nodiscard]] int between(int first, int last) { return first + below(last - first + 1); }

private:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    std::uint64_t state_;
};

}  // namespace qxterm::bench
