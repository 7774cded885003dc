#pragma once

#include <string>
#include <vector>

namespace qxterm::fuzz {

/// Starts the program anew in memory, without a profile.
void startProgram();
/// The same with a telnet session that the scripted peer has accepted.
void startSession();

/// What was sent to the host since the start, one text for each send, lower-case hexadecimal digits.
[[nodiscard]] const std::vector<std::string>& sends();

/// Requires what must hold of the terminal between two blocks of output, whatever arrived.
void checkTerminal();

}  // namespace qxterm::fuzz
