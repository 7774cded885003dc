#pragma once

#include <cstdint>
#include <string_view>

#include "platform/serial.h"

/// The line behind the serial control, played by a script. A closed port loses what arrives and raises
/// nothing.
namespace qxterm::headless {

/// Bytes arrive; event 2 follows unless they arrive quietly.
void serialReceives(SerialPort& port, std::string_view bytes, bool quietly);
/// The carrier comes or goes: event 5.
void setCarrier(SerialPort& port, bool on);
/// OnComm with any event, open or not.
void serialEvent(SerialPort& port, std::int16_t event);
/// While busy, opening any port fails with error 68.
void setPortsBusy(bool busy);

/// Every port closed, without a record.
void resetSerialPorts();

}  // namespace qxterm::headless
