#pragma once

#include "platform/form.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// The menu bar of the form's menus, for its window. Null when the system has none to give.
[[nodiscard]] HMENU createMenuBar(const Form& form);
/// WM_COMMAND of a menu entry.
void chooseMenuEntry(const Form& form, int command);
/// WM_INITMENUPOPUP.
void openMenu(const Form& form, HMENU popup);

}  // namespace qxterm::win32
