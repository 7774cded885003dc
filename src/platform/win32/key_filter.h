#pragma once

#include "platform/controls.h"

namespace qxterm::win32 {

/// Has the characters typed into a text, list or combo box pass its onKeyPress first, if that is connected:
/// Enter and Escape, too, which otherwise would press the dialog's buttons.
void filterKeys(Control& control);

}  // namespace qxterm::win32
