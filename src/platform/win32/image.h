#pragma once

#include "platform/controls.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// The native half of a picture. Its window only keeps the place and is never shown: the form paints the
/// picture as its own background, so that labels can lie on it.
[[nodiscard]] Control::Native* createImage(HWND window);
/// Paints the form's pictures. False when it has none.
[[nodiscard]] bool paintImages(const Form& form, HDC dc);

}  // namespace qxterm::win32
