#include "platform/headless/port_table.h"

#include "platform/headless/failures.h"

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

void readPortTables(PortTables& tables) {
    tables = headless::listed();
    if (headless::fails(headless::Point::portsTcp)) tables.tcp.reset();
    if (headless::fails(headless::Point::portsUdp)) tables.udp.reset();
}

}  // namespace qxterm
