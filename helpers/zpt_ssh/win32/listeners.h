#pragma once

#include <cstdint>
#include <vector>

#include "common/win32/sockets.h"

namespace zpt {

/// The processes that listen on a TCP port, at addresses of the loopback address' kind, by their identifiers;
/// unknownProcess for those that the system does not tell.
[[nodiscard]] std::vector<std::uint32_t> listenersOf(Loopback address, std::uint16_t port);

}  // namespace zpt
