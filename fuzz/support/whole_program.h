#pragma once

#include <string_view>

#include "platform/headless/recorder.h"

/// What holds of the whole program between any two commands of a scenario, whatever failed before.
namespace qxterm::fuzz {

/// The recorder's sink: ends the program at something that must not be.
void keepRecord(const headless::Record& record);

/// What may be sent while a command runs.
enum class Sends { nothing, answers, anything };
/// From now on; anything at first.
void allowSends(Sends allowed);

/// Ends the program unless the terminal's memory is in order: rows, cursor, region, records, what is carried.
void checkMemory();
/// The same for the registry of timers, and for what a session leaves behind when none runs. helpers: those
/// of SSH sessions too, which stay when ending them was made to fail.
void checkSession(bool helpers);
/// The window has just been painted, and no failure is planned: ends the program unless it shows what the
/// lines of the view hold.
void checkPicture();

/// True for telnet's answers to a host, as hexadecimal digits.
[[nodiscard]] bool isTelnetAnswer(std::string_view hex);

}  // namespace qxterm::fuzz
