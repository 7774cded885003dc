#include "connection/ssh_ports.h"

#include <memory>

#include "diag/error_trap.h"
#include "platform/port_table.h"

namespace qxterm {
namespace {

constexpr std::int32_t lastPort = 32000;

}  // namespace

std::int32_t CN_NetStat(std::int32_t startPort) {
    std::int32_t found = 0;
    trapped("CN_NetStat", [&] {
        if (startPort < 1) return;
        // Both tables are read once: on a machine with thousands of connections reading them takes long.
        const auto tables = std::make_unique<PortTables>();
        readPortTables(*tables);
        for (std::int32_t port = startPort; port <= lastPort; ++port) {
            const auto number = static_cast<std::size_t>(port);
            if (tables->tcp[number] || tables->udp[number]) continue;
            found = port;
            return;
        }
    });
    return found;
}

}  // namespace qxterm
