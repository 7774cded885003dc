#pragma once

#include <string_view>

/// Every byte that leaves the program for the host goes through one of these. Each first writes the bytes to
/// the trace log under "BYTES<<" and reports failures under its own name.
namespace qxterm {

/// To the socket as a byte array: keyboard, paste, telnet replies.
void sendBytes(std::string_view bytes);
/// To the socket as text: the automatic login.
void sendText(std::string_view text);
/// To the serial port: keyboard, paste, modem commands.
void sendSerial(std::string_view text);

}  // namespace qxterm
