#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

#include "common/win32/system.h"

namespace zpt {

/// Looks at what the host sends before the terminal gets it: leaves what the terminal is to have at the
/// block's beginning and returns its length; what it appends to replies goes to the host.
using HostFilter = std::function<std::size_t(std::span<char> block, std::string& replies)>;

/// Blocks that a filter looks at are short, so that there is space for the replies again and again. Both in
/// bytes.
constexpr std::size_t longestFilteredBlock = 4096;
constexpr std::size_t longestReplies = 16384;

/// Carries bytes between the terminal and the host until both have ended their sending, or the connection
/// breaks. The end of one side's sending is passed on after its last byte; the way back stays open.
void pump(SOCKET terminal, SOCKET host, const HostFilter& filter = {});

}  // namespace zpt
