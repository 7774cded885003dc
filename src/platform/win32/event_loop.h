#pragma once

namespace qxterm::win32 {

/// The program ends: every event loop returns. Called when the main window is gone or start-up has failed.
void endLoop();
/// Waits for one message and carries it out; nested loops of modal forms are made of it.
void waitAndDispatch();
/// What such a loop does when no message waits, before it shows the pictures and waits itself: returns false
/// when there was nothing to do.
void setIdleWork(bool (*work)());

}  // namespace qxterm::win32
