#pragma once

#include <string_view>

#include "terminal/model/screen_store.h"

/// The pending run: characters accepted for the cursor position, stored and drawn together.
namespace qxterm {

/// putBuf for a run that is not empty.
void putPending();

/// Stores the pending run at the cursor, advances curCol and empties the run. Reports as "putBuf": error 5
/// left of the line, 9 right of it; a run that failed stays, and is dropped when it fails again.
inline void putBuf() {
    if (pendingCount != 0) putPending();
}

/// The short way of appending a run to an empty pending run and storing it. Returns false, with nothing done,
/// when something about it might fail or another run waits.
[[nodiscard]] bool storeAtOnce(std::string_view run);

/// Stores the pending run, carries out deferred scrolls and draws every line that needs it. Ends every block.
/// Reports as "flushBuf".
void flushBuf();

/// The pending run could not be stored and waits for one more try. Belongs to putBuf.
extern bool pendingFailed;
/// Forgets the pending run.
inline void dropPending() {
    pendingCount = 0;
    pendingFailed = false;
}

}  // namespace qxterm
