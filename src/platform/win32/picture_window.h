#pragma once

#include "platform/picture_box.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

[[nodiscard]] Control::Native* createPictureWindow(PictureBox& box, HWND parent);
/// The main window has got the keyboard: its picture box gets it, when it is shown.
void focusScreen(const Form& form);
/// WM_MOUSEWHEEL, which the window with the keyboard gets: turns the form's picture box.
void wheel(const Form& form, WPARAM wParam);

}  // namespace qxterm::win32
