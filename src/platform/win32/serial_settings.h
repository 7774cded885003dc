#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/serial.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// Puts the line settings "baud,parity,data,stop" and the handshaking into the port's control block. False
/// when the settings make no sense.
[[nodiscard]] bool applySettings(DCB& control, std::string_view settings, Handshaking handshaking);

}  // namespace qxterm::win32
