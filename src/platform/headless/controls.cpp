#include "platform/controls.h"

#include "platform/backend.h"
#include "platform/headless/display.h"
#include "platform/headless/native.h"
#include "platform/headless/recorder.h"
#include "platform/program.h"

namespace qxterm::headless {
namespace {

/// The splash picture, the one picture that there is.
constexpr std::string_view splashFile = "tmspl16.dat";
constexpr std::int32_t splashWidth = 480;   // pixels
constexpr std::int32_t splashHeight = 320;  // pixels

/// The frame that an option button stands in: control numbers count up from their frame's own.
const Control* frameOf(const Control& button) {
    const Control* frame = nullptr;
    for (const Control* control = button.form().firstControl(); control != nullptr;
         control = control->next()) {
        if (control->kind() != ControlKind::frame || control->id() > button.id()) continue;
        if (frame == nullptr || control->id() > frame->id()) frame = control;
    }
    return frame;
}

void deselectOthers(const Control& button) {
    const Control* frame = frameOf(button);
    for (Control* control = button.form().firstControl(); control != nullptr; control = control->next()) {
        if (control == &button || control->kind() != ControlKind::optionButton) continue;
        auto& other = static_cast<OptionButton&>(*control);
        if (other.value() && frameOf(other) == frame) other.setValue(false);
    }
}

}  // namespace
}  // namespace qxterm::headless

namespace qxterm::backend {

// A control's state is the platform's common half; in memory there is no second one to keep in step with it.

void enabledChanged(Control& /*control*/) {}

void visibleChanged(Control& /*control*/) {}

void captionChanged(Control& control) {
    if (control.kind() != ControlKind::label) return;
    headless::record("label", {{"name", control.name()}, {"text", control.caption()}});
}

void textColourChanged(Label& /*label*/) {}

void valueChanged(Control& control, bool value) {
    if (value && control.kind() == ControlKind::optionButton) headless::deselectOthers(control);
}

void textChanged(TextBox& /*box*/) {}

void textFontChanged(TextBox& /*box*/, std::string_view /*face*/, float /*points*/) {}

void itemsChanged(ItemsControl& /*list*/) {}

void chosenChanged(ItemsControl& /*list*/) {}

void scrollBarChanged(ScrollBar& /*bar*/) {}

void tabsChanged(TabStrip& /*strip*/) {}

void menuChanged(Menu& /*menu*/) {}

void loadPicture(Image& image, const std::string& path) {
    const std::string folder = program::folder();
    const std::string_view file{path};
    const bool inFolder = file.substr(0, folder.size()) == folder;
    const std::size_t name = file.find_last_of('\\');
    if (!inFolder || name == std::string_view::npos || file.substr(name + 1) != headless::splashFile) {
        throw RunTimeError{errors::fileNotFound};
    }
    if (image.native == nullptr) return;
    image.native->place.width = headless::toTwips(headless::splashWidth);
    image.native->place.height = headless::toTwips(headless::splashHeight);
}

}  // namespace qxterm::backend
