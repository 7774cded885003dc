#pragma once

#include <string_view>

#include "terminal/commands/sequence.h"

/// Printable characters, and the command that repeats one.
namespace qxterm {

/// Appends a printable run to the pending run, wrapping at the right edge. Called by the interpreter.
void acceptPrintable(std::string_view run);
/// The short way of a run that CR and LF follow: acceptPrintable, putBuf and lineFeed without the way through
/// the pending run. Returns false, with nothing done, when something about it might fail.
[[nodiscard]] bool acceptLine(std::string_view run);

void repeatCharacter(HostInput& input);  ///< b

}  // namespace qxterm
