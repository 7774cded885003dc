#pragma once

#include "platform/win32/system.h"

namespace qxterm::win32 {

/// The program ends: every event loop returns. Called when the main window is gone or start-up has failed.
void endLoop();
/// Waits for one message and carries it out; nested loops of modal forms are made of it.
void waitAndDispatch();
/// A message that an interpreter's yield in the middle of a block has brought, although it takes none of the
/// kind: another program sent it, or the system hands it over while it looks. What may start a loop of its
/// own is put into the queue, to be met behind the block. True when that has been done.
[[nodiscard]] bool waitsForTheBlock(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// What such a loop does when no message waits, before it shows the pictures and waits itself: returns false
/// when there was nothing to do.
void setIdleWork(bool (*work)());

}  // namespace qxterm::win32
