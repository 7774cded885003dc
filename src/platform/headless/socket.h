#pragma once

#include <cstdint>
#include <string_view>

#include "platform/socket.h"

/// The peer of the socket control, played by a script. Events are raised at once.
namespace qxterm::headless {

void socketConnects(Socket& socket);
/// The peer closes: the connection is gone, but the control stays open until the program closes it.
void socketCloses(Socket& socket);
void socketFails(Socket& socket, std::int16_t number, std::string_view description);
/// Bytes arrive and are announced as Socket describes it.
void socketReceives(Socket& socket, std::string_view bytes);
/// The number of the address family that the control reports: 4, 6 or 0.
inline constexpr std::int16_t usualFamily = 4;
void setAddressFamily(std::int16_t number);

/// True while the control has something to close: an attempt, a connection, or what is left of a lost one.
[[nodiscard]] bool socketInUse(const Socket& socket);

/// How often the program had the socket's messages armed anew.
[[nodiscard]] std::uint32_t timesRearmed(const Socket& socket);

/// Every socket closed, without a record.
void resetSockets();

}  // namespace qxterm::headless
