#pragma once

#include <cstdint>
#include <string_view>

#include "terminal/line_record.h"

namespace qxterm {

/// Stores the pending run at the cursor, advances curCol and empties the run. Reports as "putBuf": error 5
/// left of the line, 9 right of it; a run that failed stays, and is dropped when it fails again.
void putBuf();

/// The cursor's line when a pending run overwrites cells that lie within it and nothing of that can fail;
/// null in every other case. Such a run, nearly all of them, is stored by storeOrdinaryRun; putBuf's general
/// way does the same with every run.
[[nodiscard]] ScreenLine* lineOfOrdinaryRun();
/// Stores the pending run on that line, advances curCol and empties the run. The caller marks or draws what
/// was written.
void storeOrdinaryRun(ScreenLine& line);

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

/// Forgets the pending run.
void dropPending();

}  // namespace qxterm
