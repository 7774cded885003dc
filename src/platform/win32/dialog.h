#pragma once

#include "platform/controls.h"

namespace qxterm::win32 {

/// True for a label that is drawn without a background: one with a colour, and every one on a picture.
[[nodiscard]] bool seeThrough(const Label& label);

}  // namespace qxterm::win32
