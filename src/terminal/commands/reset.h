#pragma once

namespace qxterm {

/// Ends the selection: marks cleared, no end point. Filled at start-up.
extern void (*endSelection)();

/// Start-up's reset of the whole screen state: rows in order and blank, default attributes, modes off, full
/// region, cursor at the top left, scrollback forgotten. Reports as "resetScreen".
void resetScreen();
/// The host's full reset (ESC c), also made when a session ends: keeps wrap-disabled, the underline cursor,
/// the key bar's bit and cursor blinking, and the scrollback.
void resetTerminal();
/// All of the variables of the terminal and of drawing as they are before main has run.
void startTerminal();

}  // namespace qxterm
