#pragma once

#include <cstdint>
#include <list>
#include <string_view>
#include <vector>

#include "platform/win32/system.h"

namespace qxterm::win32 {

/// One address of a host, with the port put in.
struct HostAddress {
    sockaddr_storage address{};
    int length = 0;
    [[nodiscard]] int family() const { return address.ss_family; }
};

/// What a look-up found: the addresses in the order in which they are to be tried, or why there are none.
struct LookUp {
    std::uint32_t token = 0;
    int error = 0;  ///< socket error number; 0 when there are addresses
    std::vector<HostAddress> addresses;
};

/// Looks the host up (names and numbers, IPv4 and IPv6) and returns at once. wmResolved tells the hidden
/// window that there is an answer; it carries the token, by which one that nobody waits for any more is told.
void lookUp(std::string_view host, std::uint16_t port, std::uint32_t token);
/// The answers that have come. They are not in the message, which any program of the desktop can send.
[[nodiscard]] std::list<LookUp> takeLookUps();

}  // namespace qxterm::win32
