#pragma once

#include <cstdint>
#include <string>

#include "diag/error_trap.h"

/// Serial lines: opening the port `comser`, its events, the receive poll and the break. A modem is used
/// through them too.
namespace qxterm {

/// Opens the port of the current profile with its settings. The carrier's time-out is in seconds, 0 for a
/// plain line, which need not have a carrier at all.
void openLine(ErrorTrap& trap, std::int16_t carrierTimeout);
/// A text about port (%1) and speed (%2) of the current profile.
[[nodiscard]] std::string lineText(const char* pattern);

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
