#pragma once

#include <cstdint>

namespace qxterm::headless {

/// The display: size in pixels, twips per pixel in both directions. 1024 x 768 at 15 after a reset.
void setDisplay(std::int32_t width, std::int32_t height, std::int16_t twipsPerPixel);
[[nodiscard]] std::int32_t toTwips(std::int32_t pixels);
/// Whole pixels, the rest cut off.
[[nodiscard]] std::int32_t toPixels(std::int32_t twips);

void resetDisplay();

}  // namespace qxterm::headless
