#pragma once

#include <cstdint>

namespace qxterm {

/// The first local port from startPort (1 to 32000) upward that is in neither of the system's tables, TCP and
/// UDP; 0 when there is none up to 32000 or startPort is no port. Called by the SSH bridge.
[[nodiscard]] std::int32_t CN_NetStat(std::int32_t startPort);

}  // namespace qxterm
