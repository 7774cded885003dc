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
/// What a session may leave behind, because ending it was made to fail.
struct Leftovers {
    bool helpers = false;  ///< of an SSH session
    bool attempt = false;  ///< to connect, whose status dialog is gone

    /// A command of the scenario that plans such a failure.
    void told(std::string_view line);
};

/// The same as checkMemory for the registry of timers, and for what a session leaves behind when none runs.
void checkSession(const Leftovers& allowed);
/// The window has just been painted, and no failure is planned: ends the program unless it shows what the
/// lines of the view hold.
void checkPicture();

/// True for telnet's answers to a host, as hexadecimal digits.
[[nodiscard]] bool isTelnetAnswer(std::string_view hex);

}  // namespace qxterm::fuzz
