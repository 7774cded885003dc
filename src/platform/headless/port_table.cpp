#include "platform/headless/port_table.h"

#include "platform/headless/process.h"

namespace qxterm {
namespace headless {
namespace {

PortTables& listed() {
    static PortTables tables;
    return tables;
}

}  // namespace

void setTcpPorts(const std::bitset<PortTables::ports>& ports) { listed().tcp = ports; }

void setUdpPorts(const std::bitset<PortTables::ports>& ports) { listed().udp = ports; }

void resetPortTables() { listed() = {}; }

}  // namespace headless

void readPortTables(PortTables& tables) { tables = headless::listed(); }

bool portListening(std::uint16_t port) { return headless::listed().tcp[port] || headless::forwardOpen(); }

}  // namespace qxterm
