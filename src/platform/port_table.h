#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>

namespace qxterm {

/// Which local ports of this machine are in use.
struct PortTables {
    static constexpr std::size_t ports = 65536;
    std::bitset<ports> tcp;  ///< local ports of the TCP connection table, listening ports included
    std::bitset<ports> udp;  ///< local ports of the UDP listener table
};

/// Reads both tables of the system into the caller's. A table that the system does not give stays empty.
void readPortTables(PortTables& tables);

}  // namespace qxterm
