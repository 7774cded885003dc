#pragma once

/// The saved cursor.
namespace qxterm {

/// ESC 7: saves the cursor's place, with text that is pending counted, and the attributes. Nothing on the
/// status row.
void saveCursor();
/// ESC 8: both as they were saved; the modes stay as they are.
void restoreCursor();

}  // namespace qxterm
