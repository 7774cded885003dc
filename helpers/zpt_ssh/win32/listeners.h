#pragma once

#include <cstdint>
#include <vector>

namespace zpt {

/// What stands for a process that the system does not tell.
constexpr std::uint32_t unknownProcess = 0;

/// The processes that listen on a TCP port, of either IP version, by their identifiers.
[[nodiscard]] std::vector<std::uint32_t> listenersOf(std::uint16_t port);

}  // namespace zpt
