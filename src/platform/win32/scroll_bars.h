#pragma once

#include "platform/controls.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

[[nodiscard]] Control::Native* createScrollBar(ScrollBar& bar, HWND parent);
/// WM_VSCROLL of a scroll bar of the form.
void scrollByUser(const Form& form, HWND window, int code);

}  // namespace qxterm::win32
