#pragma once

#include <cstdint>
#include <string_view>

namespace qxterm {

/// Carries out the telnet command at `position` and sends the answer that it asks for: the terminal type
/// "QXTERM", a refusal of every other option. Called by the interpreter for each byte 255, on any transport;
/// answers go out only while the socket is connected.
///
/// data, length: the whole byte string; position: 1-based, on entry that of the IAC, on return that of the
/// last byte consumed. carried: set true when the command's bytes have not all arrived; position is then
/// length + 1 and the command is to be kept from its IAC on, else false.
void doTelnet(std::string_view data, std::int32_t& position, std::int32_t length, bool& carried);

}  // namespace qxterm
