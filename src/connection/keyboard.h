#pragma once

#include <cstdint>

namespace qxterm {

/// A key of the main window: virtual-key code and shift mask. Cursor keys, Delete, F1 to F8 and Control+F5 go
/// to the host, keys that move the view or mark text (viewKey) and Control+Insert, which copies, stay here;
/// nothing without a session. Reports as "Form_KeyDown".
void Form_KeyDown(std::int16_t code, std::int16_t shift);
/// A character typed into the main window, 0 to 255; sent as it is. Reports as "Form_KeyPress".
void Form_KeyPress(std::int16_t character);
/// A function-key button, 1 to 8: acts as the key and gives the keyboard back to the main form. Reports as
/// "CScmdfkey_Click".
void CScmdfkey_Click(std::int16_t index);

}  // namespace qxterm
