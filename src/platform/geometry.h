#pragma once

#include <cstdint>

namespace qxterm {

/// A rectangle in pixels; right and bottom lie just outside.
struct PixelRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    [[nodiscard]] constexpr std::int32_t width() const { return right - left; }
    [[nodiscard]] constexpr std::int32_t height() const { return bottom - top; }
    [[nodiscard]] constexpr bool empty() const { return right <= left || bottom <= top; }
    friend constexpr bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// Place and size of a form or control in twips (1440 to the inch); a control's place counts from its form's
/// corner.
struct TwipsRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// Full-intensity colour components, 0 to 255.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

}  // namespace qxterm
