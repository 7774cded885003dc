#pragma once

#include "terminal/control_sequences.h"

namespace qxterm {

/// Parses and executes an escape sequence; the position stands on the ESC on entry and on the last byte
/// consumed on return. Returns true when the text from the ESC on must be carried, as doEscBracket does.
/// Reports as "doEsc".
[[nodiscard]] bool doEsc(Interpretation& input);

}  // namespace qxterm
