#pragma once

#include <string>

namespace qxterm::fuzz {

/// What the terminal holds, as one text: rows as characters and words, cursor, modes, region, saved cursor,
/// programmed keys and the newest lines of the scrollback. Two equal texts: the terminal is in the same state
/// for all that a host can do or see.
[[nodiscard]] std::string terminalState();

/// What the window shows, cell by cell, from the drawing calls alone.
[[nodiscard]] std::string windowState();

}  // namespace qxterm::fuzz
