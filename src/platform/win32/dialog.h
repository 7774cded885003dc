#pragma once

#include "platform/controls.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// True for a label that is drawn without a background: one with a colour, and every one on a picture.
[[nodiscard]] bool seeThrough(const Label& label);

/// Ctrl+Tab and Ctrl+Page Down turn to the next tab of a form that has tabs, with Shift and by Page Up to the
/// one before. True when the message was such a key.
[[nodiscard]] bool turnTab(const Form& form, const MSG& message);

}  // namespace qxterm::win32
