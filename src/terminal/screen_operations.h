#pragma once

#include <cstdint>
#include <string_view>

#include "terminal/screen_store.h"

namespace qxterm {

/// putBuf for a run that is not empty.
void putPending();

/// Stores the pending run at the cursor, advances curCol and empties the run. Reports as "putBuf": error 5
/// left of the line, 9 right of it; a run that failed stays, and is dropped when it fails again.
inline void putBuf() {
    if (pendingCount != 0) putPending();
}

/// Inserts text at the cursor, shifting the rest of the line right; the inserted cells take the word. Reports
/// as "insChars".
void insChars(std::string_view text, std::int16_t count, std::int16_t word);
/// Deletes count characters at the cursor, shifting the rest left and blanking the freed cells. Reports as
/// "delChars".
void delChars(std::int16_t count);
/// Erases a rectangle of cells, inclusive, on the window and in the store; the characters of column colTo
/// stay in the store. Cells that do not exist are left out. Reports as "scrErase".
void scrErase(std::int32_t colFrom, std::int32_t colTo, std::int32_t rowFrom, std::int32_t rowTo);

/// flushBuf, then one column left, not below 0. Reports as "cursorLeft".
void cursorLeft();

/// The pending run could not be stored and waits for one more try. Belongs to putBuf.
extern bool pendingFailed;
/// Forgets the pending run.
inline void dropPending() {
    pendingCount = 0;
    pendingFailed = false;
}

}  // namespace qxterm
