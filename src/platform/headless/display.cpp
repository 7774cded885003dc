#include "platform/display.h"

#include "platform/headless/display.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

struct Screen {
    std::int32_t width = 1024;
    std::int32_t height = 768;
    std::int16_t twipsPerPixel = 15;
};

Screen screen;

}  // namespace

void setDisplay(std::int32_t width, std::int32_t height, std::int16_t twipsPerPixel) {
    screen = {width, height, twipsPerPixel};
}

std::int32_t toTwips(std::int32_t pixels) { return pixels * screen.twipsPerPixel; }

std::int32_t toPixels(std::int32_t twips) { return twips / screen.twipsPerPixel; }

void resetDisplay() { screen = Screen{}; }

}  // namespace qxterm::headless

namespace qxterm::display {

std::int32_t width() { return headless::toTwips(headless::screen.width); }

std::int32_t height() { return headless::toTwips(headless::screen.height); }

std::int16_t twipsPerPixelX() { return headless::screen.twipsPerPixel; }

std::int16_t twipsPerPixelY() { return headless::screen.twipsPerPixel; }

void beep() { headless::record("beep"); }

}  // namespace qxterm::display
