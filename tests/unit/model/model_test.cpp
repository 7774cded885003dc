#include <gtest/gtest.h>

#include "model/pair.h"

namespace qxterm::test::model_test {
namespace {

/// Steps at random, for program and twin: after each of them both must hold and show the same.
void walk(std::uint64_t seed, int steps) {
    Choices choices{seed};
    HostLimits limits;
    limits.columnsOutside = false;
    Pair pair;
    for (int step = 0; step < steps && !pair.lost(); ++step) {
        const std::string differs = pair.randomStep(choices, limits);
        ASSERT_EQ(differs, "") << "seed " << seed << ", step " << step << ": " << pair.happened();
    }
}

TEST(Model, RandomStepsAreTheSameForProgramAndTwin) {
    constexpr std::uint64_t seeds = 24;
    for (std::uint64_t seed = 1; seed <= seeds && !::testing::Test::HasFatalFailure(); ++seed)
        walk(seed, 150);
}

}  // namespace
}  // namespace qxterm::test::model_test
