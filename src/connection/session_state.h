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

/// The connection type of the current profile: follows it at start, after New, after reading a profile, after
/// OK in Options. While a session is up or being set up it stays the type that the session was started with,
/// and catches up with the profile when the session has ended: bytes go where the session is, and its own
/// transport is closed. Written by followProfileType only.
extern std::int16_t g_iConnectType;
/// TRUE while a session is up. Set by the transports, cleared by disconnectPort only.
extern bool g_bConnectActive;
/// A session was started and has not ended: it is up, or being set up. Set by connectPort and cleared by
/// disconnectPort.
extern bool sessionStarted;
/// TRUE while the profile's type is SSH. Set when such a profile is read and by connectPort, cleared by
/// connectPort for a network connection.
extern bool g_bSSHMode;

/// True while g_iConnectType belongs to a session.
[[nodiscard]] inline bool sessionHoldsType() { return sessionStarted || g_bConnectActive; }

}  // namespace qxterm
