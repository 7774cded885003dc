#pragma once

#include <cstdint>

#include "output.h"
#include "platform/form.h"

/// What `dump` prints, one routine a subject.
namespace qxterm::scenario {

[[nodiscard]] Json dumpScreen();
/// The screen dump without its rows.
[[nodiscard]] Json dumpTerminal();
/// Cursor and stored text of the rows that are not blank, trailing blanks cut off.
[[nodiscard]] Json dumpPage();
/// One row (0 to 24): text, attribute words as [word, cells in a row] pairs, dirty state.
[[nodiscard]] Json dumpRow(std::int32_t row);
/// The window as dumpPage tells it: what was drawn, and the cursor that is seen.
[[nodiscard]] Json dumpView();
[[nodiscard]] Json dumpScrollback();
[[nodiscard]] Json dumpWindow();
[[nodiscard]] Json dumpKeys();
[[nodiscard]] Json dumpMenus();
[[nodiscard]] Json dumpForm(const Form& form);
[[nodiscard]] Json dumpProfile();
[[nodiscard]] Json dumpLists();
[[nodiscard]] Json dumpIni();
[[nodiscard]] Json dumpTimers();
[[nodiscard]] Json dumpState();
[[nodiscard]] Json dumpSelection();
[[nodiscard]] Json dumpClipboard();
/// The calls of the system that can fail: how often they were called and failed, and what is planned.
[[nodiscard]] Json dumpFailures();

}  // namespace qxterm::scenario
