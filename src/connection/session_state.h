#pragma once

#include <cstdint>

#include "config/connect_type.h"

namespace qxterm {

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
/// True while g_iConnectType belongs to a session.
[[nodiscard]] inline bool sessionHoldsType() { return sessionStarted || g_bConnectActive; }
/// Brings g_iConnectType to the current profile's type, unless a session holds it. Called when either has
/// changed.
void followProfileType();

}  // namespace qxterm
