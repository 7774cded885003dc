#include "connection/ssh_ports.h"

#include "diag/recorded.h"
#include "platform/headless/port_table.h"

namespace qxterm::test::ssh_ports_test {
namespace {

using Ports = std::bitset<PortTables::ports>;

class SshPorts : public RecordedTest {
protected:
    static Ports range(std::size_t first, std::size_t last) {
        Ports ports;
        for (std::size_t port = first; port <= last; ++port) ports.set(port);
        return ports;
    }
};

TEST_F(SshPorts, AFreeStartIsTheAnswer) { EXPECT_EQ(CN_NetStat(3000), 3000); }

TEST_F(SshPorts, PortsOfEitherTableArePassedOver) {
    headless::setTcpPorts(range(3000, 3001));
    headless::setUdpPorts(range(3002, 3004));
    EXPECT_EQ(CN_NetStat(3000), 3005);
    EXPECT_EQ(CN_NetStat(2999), 2999);
}

TEST_F(SshPorts, TheSearchEndsAt32000) {
    headless::setTcpPorts(range(3000, 31999));
    EXPECT_EQ(CN_NetStat(3000), 32000);
    headless::setUdpPorts(range(32000, 65535));
    EXPECT_EQ(CN_NetStat(3000), 0);
    EXPECT_EQ(CN_NetStat(32000), 0);
    EXPECT_EQ(CN_NetStat(32001), 0);
}

TEST_F(SshPorts, WhatIsNoPortFindsNone) {
    headless::setUdpPorts(range(0, 0));  // as a table may tell that knows no number
    EXPECT_EQ(CN_NetStat(0), 0);
    EXPECT_EQ(CN_NetStat(-1), 0);
    EXPECT_EQ(CN_NetStat(INT32_MAX), 0);
    EXPECT_EQ(CN_NetStat(INT32_MIN), 0);
    EXPECT_EQ(CN_NetStat(1), 1);
}

}  // namespace
}  // namespace qxterm::test::ssh_ports_test
