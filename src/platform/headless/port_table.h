#pragma once

#include "platform/port_table.h"

namespace qxterm::headless {

/// The ports that the system's tables list, each table replaced as a whole.
void setTcpPorts(const std::bitset<PortTables::ports>& ports);
void setUdpPorts(const std::bitset<PortTables::ports>& ports);

/// Empty tables.
void resetPortTables();

}  // namespace qxterm::headless
