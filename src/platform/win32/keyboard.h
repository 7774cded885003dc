#pragma once

#include <cstdint>

#include "platform/form.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// Shift, Control and Alt as they are held down now.
[[nodiscard]] std::int16_t heldShifts();
/// Hands a key of the main window to the form's events. False when the system is to go on with it: the keys
/// of the menu bar and of the system menu.
[[nodiscard]] bool keyboardTakes(Form& form, UINT message, WPARAM wParam);

}  // namespace qxterm::win32
