#pragma once

#include <cstdint>

/// Modems: dialling, and the carrier that makes the session.
namespace qxterm {

/// Steps of modemConnect.
inline constexpr std::int16_t modemReset = 1;
inline constexpr std::int16_t modemDial = 2;

/// One step of getting a modem's connection, only while the port is open: modemReset sends the reset string
/// and has modemDial follow a second later; modemDial sends the dial string. The session is up when the
/// carrier appears.
void modemConnect(std::int16_t step);

}  // namespace qxterm
