#pragma once

#include <cstdint>

namespace qxterm {

/// Connection types: the values of g_iConnectType and of a profile's connect type.
namespace connectType {
inline constexpr std::int16_t net = 0;
inline constexpr std::int16_t serial = 1;
inline constexpr std::int16_t modem = 2;
inline constexpr std::int16_t ssh = 3;
inline constexpr std::int16_t unknown = 4;
inline constexpr std::int16_t loop = 5;
}  // namespace connectType

/// Always the connection type of the current profile: set at start, after New, after reading a profile, after
/// OK in Options.
extern std::int16_t g_iConnectType;
/// TRUE while a session is up. Set by the transports, cleared by disconnectPort only.
extern bool g_bConnectActive;
/// TRUE while the profile's type is SSH. Set when such a profile is read and by connectPort, cleared by
/// connectPort for a network connection.
extern bool g_bSSHMode;

}  // namespace qxterm
