#pragma once

#include <optional>

#include "platform/screen_reading.h"

namespace qxterm {

/// What the window shows, as text: line drawing and text in the colour of its background are blanks, text
/// that blinks is there in both phases.
[[nodiscard]] ScreenReading readScreen();
/// Where the cursor stands, or the mark that keys move while a marking made by keys is in view; behind the
/// last character of the local login prompt.
[[nodiscard]] std::optional<ScreenPlace> placeOnScreen();

}  // namespace qxterm
