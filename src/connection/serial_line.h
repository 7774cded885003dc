#pragma once

#include <cstdint>

/// Serial lines and the modems on them: the events of the port `comser`, the receive poll and dialling.
namespace qxterm {

/// Steps of modemConnect.
inline constexpr std::int16_t modemReset = 1;
inline constexpr std::int16_t modemDial = 2;

/// One step of getting a modem's connection, only while the port is open: modemReset sends the reset string
/// and has modemDial follow a second later; modemDial sends the dial string. The session is up when the
/// carrier appears.
void modemConnect(std::int16_t step);

/// The port's event: received text, carrier change, carrier time-out.
void comser_OnComm();

/// Registers the receive poll (timer action 5, 250 ms) and removes it.
void startSerialPoll();
void stopSerialPoll();
/// Timer action 5: shows what is waiting at the port, unless the interpreter is busy.
void pollSerial();

/// Puts the line into the break state for 250 ms (Send Break); timer action 1 ends it.
void sendBreak();
void endBreak();

}  // namespace qxterm
