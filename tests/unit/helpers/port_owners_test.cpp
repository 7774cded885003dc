#include "zpt_ssh/port_owners.h"

#include <gtest/gtest.h>

#include <vector>

namespace zpt::port_owners_test {
namespace {

constexpr std::uint32_t client = 1200;
constexpr std::uint32_t startedByIt = 1204;
constexpr std::uint32_t stranger = 77;

bool answers(const std::vector<std::uint32_t>& owners) {
    return clientAnswers(owners,
                         [](std::uint32_t process) { return process == client || process == startedByIt; });
}

TEST(PortOwners, TheClientAndWhatItStarted) {
    EXPECT_TRUE(answers({client}));
    EXPECT_TRUE(answers({startedByIt}));
    EXPECT_TRUE(answers({client, startedByIt}));
}

TEST(PortOwners, NobodyIsNotTheClient) { EXPECT_FALSE(answers({})); }

TEST(PortOwners, AStrangerIsNotEvenBesideTheClient) {
    EXPECT_FALSE(answers({stranger}));
    EXPECT_FALSE(answers({stranger, client}));
    EXPECT_FALSE(answers({client, stranger}));
}

TEST(PortOwners, WhoIsNotToldMayBeTheClient) {
    EXPECT_TRUE(answers({unknownProcess}));
    EXPECT_TRUE(answers({unknownProcess, client}));
    EXPECT_FALSE(answers({unknownProcess, stranger}));
}

TEST(PortOwners, WhoIsNotToldIsNotLookedFor) {
    EXPECT_TRUE(clientAnswers(std::vector{unknownProcess}, [](std::uint32_t) {
        ADD_FAILURE() << "asked for the unknown process";
        return false;
    }));
}

}  // namespace
}  // namespace zpt::port_owners_test
