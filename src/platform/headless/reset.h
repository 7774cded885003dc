#pragma once

namespace qxterm::headless {

/// Ends the program's run as if its process were killed: forms go without events and records, timers, sockets
/// and ports with them; "qxterm.ini", the clipboard, the display and the language stay.
void endRun();

/// Brings the whole platform to its start state, the recorder's sink included. Every test begins with it.
void reset();

}  // namespace qxterm::headless
