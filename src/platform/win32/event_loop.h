#pragma once

#include <cstdint>

namespace qxterm::win32 {

/// The program ends: every event loop returns. Called when the main window is gone or start-up has failed.
void endLoop();
/// Waits for one message and carries it out; nested loops of modal forms are made of it.
void waitAndDispatch();

/// Forgets how long the program has gone without a yield so far.
void startYieldWatch();
/// The longest time since then in which eventLoop::doEvents was not called, in milliseconds.
[[nodiscard]] std::uint64_t longestWithoutYield();

}  // namespace qxterm::win32
