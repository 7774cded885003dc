#include "platform/controls.h"

#include "platform/backend.h"
#include "platform/headless/display.h"
#include "platform/headless/failures.h"
#include "platform/headless/native.h"
#include "platform/headless/recorder.h"
#include "platform/program.h"

namespace qxterm::headless {
namespace {

/// The splash picture, the one picture that there is.
constexpr std::string_view splashFile = "tmspl16.dat";
constexpr std::int32_t splashWidth = 480;   // pixels
constexpr std::int32_t splashHeight = 320;  // pixels

}  // namespace
}  // namespace qxterm::headless

namespace qxterm::backend {

// A control's state is the platform's common half; in memory there is no second one to keep in step with it.

void enabledChanged(Control& /*control*/) {}

void visibleChanged(Control& /*control*/) {}

void captionChanged(Control& control) {
    if (control.kind() != ControlKind::label) return;
    headless::record("label", [&] {
        return headless::Fields{{"name", control.name()}, {"text", control.caption()}};
    });
}

void textColourChanged(Label& /*label*/) {}

void valueChanged(Control& /*control*/, bool /*value*/) {}

void textChanged(TextBox& /*box*/) {}

void textFontChanged(TextBox& /*box*/, std::string_view /*face*/, float /*points*/) {}

void itemsChanged(ItemsControl& /*list*/) {}

void chosenChanged(ItemsControl& /*list*/) {}

void scrollBarChanged(ScrollBar& /*bar*/) {}

void tabsChanged(TabStrip& /*strip*/) {}

void menuChanged(Menu& /*menu*/) {}

void loadPicture(Image& image, const std::string& path) {
    headless::raiseIfPlanned(headless::Point::pictureLoad);
    if (path != program::fileIn(program::folder(), headless::splashFile)) {
        throw RunTimeError{errors::fileNotFound};
    }
    if (image.native == nullptr) return;
    image.native->place.width = headless::toTwips(headless::splashWidth);
    image.native->place.height = headless::toTwips(headless::splashHeight);
}

}  // namespace qxterm::backend
