#pragma once

#include "platform/picture_box.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// The answer to WM_GETOBJECT of a picture box's window: an object that tells a screen reader what stands
/// there, the screen as one text and each row as a child of it. 0 where the system lacks what it takes.
[[nodiscard]] LRESULT accessibleScreen(PictureBox& box, WPARAM wParam);
/// The window is going: objects that readers still hold answer that they are not connected.
void endAccessibleScreen(HWND window);

}  // namespace qxterm::win32
