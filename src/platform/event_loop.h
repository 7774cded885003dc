#pragma once

#include <cstdint>

namespace qxterm::eventLoop {

/// Runs events until the main window has been unloaded (or, before it is loaded, until nothing keeps the
/// program).
void run();
/// Runs the events that wait and returns: the yield to the message loop.
void doEvents();
/// Whether it is time to yield: to look at the queue costs as much as interpreting some thousand bytes. Next
/// to free; asked after each line feed.
[[nodiscard]] bool yieldDue();
/// Lets time pass without running events.
void sleep(std::int32_t milliseconds);
/// True once the program is ending: the main window is gone.
[[nodiscard]] bool ending();

}  // namespace qxterm::eventLoop
