#include "platform/display.h"

#include <array>
#include <cstddef>

#include "platform/win32/handle.h"
#include "platform/win32/twips.h"

namespace qxterm::display {
namespace {

constexpr int twipsPerInch = 1440;
/// A beep is dropped when this many were made within the last second.
constexpr std::size_t beepsPerSecond = 10;
constexpr ULONGLONG second = 1000;  // milliseconds

std::int16_t twipsPerPixel(int dotsPerInch) {
    const int twips = MulDiv(twipsPerInch, 1, dotsPerInch > 0 ? dotsPerInch : 96);
    return static_cast<std::int16_t>(twips > 0 ? twips : 1);
}

std::int16_t measure(int axis) {
    const win32::ScreenDc screen;
    return twipsPerPixel(GetDeviceCaps(screen.get(), axis));
}

}  // namespace

std::int32_t width() { return win32::twipsX(GetSystemMetrics(SM_CXSCREEN)); }
std::int32_t height() { return win32::twipsY(GetSystemMetrics(SM_CYSCREEN)); }

// The resolution that the program was started with holds for as long as it runs.
std::int16_t twipsPerPixelX() {
    static const std::int16_t twips = measure(LOGPIXELSX);
    return twips;
}

std::int16_t twipsPerPixelY() {
    static const std::int16_t twips = measure(LOGPIXELSY);
    return twips;
}

void beep() {
    static std::array<ULONGLONG, beepsPerSecond> times{};
    static std::size_t oldest = 0;
    const ULONGLONG now = GetTickCount64();
    if (times[oldest] != 0 && now - times[oldest] < second) return;
    times[oldest] = now;
    oldest = (oldest + 1) % beepsPerSecond;
    MessageBeep(MB_OK);
}

}  // namespace qxterm::display
