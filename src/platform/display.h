#pragma once

#include <cstdint>

namespace qxterm::display {

/// Size of the screen in twips.
[[nodiscard]] std::int32_t width();
[[nodiscard]] std::int32_t height();
/// Twips per pixel: 15 at 96 dots to the inch, 12 at 120, 10 at 144.
[[nodiscard]] std::int16_t twipsPerPixelX();
[[nodiscard]] std::int16_t twipsPerPixelY();
/// The system beep; returns at once. More than ten in a second are heard as ten.
void beep();

}  // namespace qxterm::display
