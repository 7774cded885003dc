#pragma once

namespace qxterm::headless {

/// Called by each yield to the message loop (eventLoop::doEvents) before waiting paints are delivered; null
/// while nothing waits, which keeps the yield next to free.
extern void (*yieldHook)();

/// The program is ending from now on: the main window is gone, or start-up failed. The "exit" record follows
/// once no modal loop runs any more.
void endProgram();
/// Records the end when it has come and is not told yet.
void announceEnd();

/// One event from the script; false when none will come.
bool runNextEvent();

/// A program that has not ended, no hook.
void resetEventLoop();

}  // namespace qxterm::headless
