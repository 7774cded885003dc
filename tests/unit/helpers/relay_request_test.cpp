#include "zpt_tnetd/request.h"

#include <gtest/gtest.h>

namespace zpt::relay_request_test {
namespace {

using Words = std::vector<std::string_view>;

TEST(RelayRequestLine, IsReadAsTheTerminalWritesIt) {
    const auto parsed = parseRelayRequest({"2", "3000", "3001", "4", "bob"});
    ASSERT_TRUE(parsed.good()) << parsed.complaint;
    EXPECT_EQ(parsed.request.localPort, 3000);
    EXPECT_EQ(parsed.request.forwardPort, 3001);
    EXPECT_FALSE(parsed.request.idle());
}

TEST(RelayRequestLine, EqualPortsLeaveNothingToRelay) {
    EXPECT_TRUE(parseRelayRequest({"2", "3000", "3000", "0", "bob"}).request.idle());
}

TEST(RelayRequestLine, TheLoginNameMayBeMissing) {
    EXPECT_TRUE(parseRelayRequest({"2", "3000", "3001", "6"}).good());
}

TEST(RelayRequestLine, WhatDoesNotFitIsRefused) {
    for (const Words& words :
         {Words{}, Words{"2", "3000", "3001"}, Words{"2", "3000", "3001", "4", "bob", "x"},
          Words{"1", "3000", "3001", "4", "bob"}, Words{"2", "0", "3001", "4", "bob"},
          Words{"2", "3000", "65536", "4", "bob"}, Words{"2", "3000", "3001", "5", "bob"},
          Words{"2", "3000", "3001", "", "bob"}, Words{"2", "3000", "3001", "4", "-x"}}) {
        EXPECT_FALSE(parseRelayRequest(words).good()) << words.size();
    }
}

}  // namespace
}  // namespace zpt::relay_request_test
