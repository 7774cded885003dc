#pragma once

namespace qxterm::win32 {

/// The program ends: every event loop returns. Called when the main window is gone or start-up has failed.
void endLoop();
/// Waits for one message and carries it out; nested loops of modal forms are made of it.
void waitAndDispatch();

}  // namespace qxterm::win32
