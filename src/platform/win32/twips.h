#pragma once

#include <cstdint>

#include "platform/display.h"
#include "platform/geometry.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// The nearest pixel.
constexpr int toPixels(std::int32_t twips, std::int32_t twipsPerPixel) {
    const std::int32_t half = twipsPerPixel / 2;
    return (twips < 0 ? twips - half : twips + half) / twipsPerPixel;
}

inline int pixelsX(std::int32_t twips) { return toPixels(twips, display::twipsPerPixelX()); }
inline int pixelsY(std::int32_t twips) { return toPixels(twips, display::twipsPerPixelY()); }
inline std::int32_t twipsX(LONG pixels) {
    return static_cast<std::int32_t>(pixels) * display::twipsPerPixelX();
}
inline std::int32_t twipsY(LONG pixels) {
    return static_cast<std::int32_t>(pixels) * display::twipsPerPixelY();
}

inline TwipsRect toTwips(const RECT& r) {
    return {twipsX(r.left), twipsY(r.top), twipsX(r.right - r.left), twipsY(r.bottom - r.top)};
}

/// Coordinates packed into a mouse or hit-test message; they may be negative.
inline POINT pointOf(LPARAM lParam) {
    const auto bits = static_cast<std::uint32_t>(lParam);
    return {static_cast<std::int16_t>(bits & 0xFFFFU), static_cast<std::int16_t>(bits >> 16U)};
}

constexpr std::uint16_t lowWord(WPARAM w) { return static_cast<std::uint16_t>(w & 0xFFFFU); }
constexpr std::uint16_t highWord(WPARAM w) { return static_cast<std::uint16_t>((w >> 16U) & 0xFFFFU); }

}  // namespace qxterm::win32
