#include <algorithm>
#include <vector>

#include "platform/backend.h"
#include "platform/display.h"
#include "platform/headless/clock.h"
#include "platform/headless/display.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/forms.h"
#include "platform/headless/native.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/recorder.h"
#include "platform/headless/user.h"

namespace qxterm::headless {
namespace {

std::vector<Form*>& loaded() {
    static std::vector<Form*> forms;
    return forms;
}

/// Size in pixels of a window, or of a control of the kind, until the program gives it another.
TwipsRect designedPlace(std::int32_t width, std::int32_t height) {
    return {0, 0, toTwips(width), toTwips(height)};
}

TwipsRect designedPlace(FormKind kind) {
    switch (kind) {
        case FormKind::mainWindow: return designedPlace(640, 480);
        case FormKind::dialog: return designedPlace(400, 300);
        case FormKind::picture: break;
    }
    return designedPlace(320, 200);
}

TwipsRect designedPlace(ControlKind kind) {
    switch (kind) {
        case ControlKind::scrollBar: return designedPlace(17, 400);
        case ControlKind::pictureBox: return designedPlace(640, 400);
        case ControlKind::listBox:
        case ControlKind::frame:
        case ControlKind::tabStrip: return designedPlace(200, 100);
        case ControlKind::label: return designedPlace(120, 14);
        default: return designedPlace(80, 24);
    }
}

/// Windows stand on whole pixels.
TwipsRect onPixels(const TwipsRect& place) {
    const auto whole = [](std::int32_t twips) { return toTwips(toPixels(twips)); };
    return {whole(place.left), whole(place.top), whole(place.width), whole(place.height)};
}

}  // namespace

const std::vector<Form*>& loadedForms() { return loaded(); }

}  // namespace qxterm::headless

namespace qxterm::backend {

using headless::record;

namespace {

void dropNative(Form& form) {
    std::erase(headless::loaded(), &form);
    headless::disarmTimers(form);
    headless::forgetFocus(form);
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        delete control->native;
        control->native = nullptr;
    }
    delete form.native;
    form.native = nullptr;
}

}  // namespace

void createWindow(Form& form) {
    headless::raiseIfPlanned(headless::Point::windowCreate);
    try {
        headless::loaded().push_back(&form);
        form.native = new Form::Native{headless::designedPlace(form.kind())};
        for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
            control->native = new Control::Native{headless::designedPlace(control->kind())};
            if (control->kind() == ControlKind::pictureBox) static_cast<PictureBox*>(control)->resetPicture();
        }
        headless::armTimers(form);
    } catch (const std::bad_alloc&) {
        dropNative(form);
        throw;
    }
}

void destroyWindow(Form& form) {
    dropNative(form);
    record("window", [&] { return headless::Fields{{"name", form.name()}, {"op", "unload"}}; });
    if (form.kind() == FormKind::mainWindow) headless::endProgram();
}

void showWindow(Form& form, bool modal) {
    record("window", [&] {
        return headless::Fields{{"name", form.name()}, {"op", modal ? "modal" : "show"}};
    });
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        if (control->kind() == ControlKind::pictureBox) headless::uncover(static_cast<PictureBox&>(*control));
    }
    headless::activate(form);
}

void formCaptionChanged(Form& form, const std::string& caption) {
    record("caption", [&] { return headless::Fields{{"name", form.name()}, {"text", caption}}; });
}

TwipsRect formPlace(const Form& form) { return form.native->place; }

void moveForm(Form& form, const TwipsRect& place) { form.native->place = headless::onPixels(place); }

void setFormClientSize(Form& form, std::int32_t width, std::int32_t height) {
    TwipsRect place = form.native->place;
    place.width = width;
    place.height = height;
    moveForm(form, place);
}

PixelRect formNormalPosition(const Form& form) {
    const TwipsRect& place = form.native->place;
    const std::int32_t left = headless::toPixels(place.left);
    const std::int32_t top = headless::toPixels(place.top);
    return {left, top, left, top};
}

void focusForm(Form& form) { headless::giveFocus(form, nullptr); }

void formHookChanged(Form& /*form*/, bool /*attached*/) {}

void applicationTitleChanged(std::string_view text) {
    record("apptitle", [&] { return headless::Fields{{"text", std::string{text}}}; });
}

TwipsRect controlPlace(const Control& control) { return control.native->place; }

void moveControl(Control& control, const TwipsRect& place) {
    const TwipsRect before = control.native->place;
    control.native->place = headless::onPixels(place);
    const TwipsRect& after = control.native->place;
    const bool sized = before.width != after.width || before.height != after.height;
    if (sized && control.kind() == ControlKind::pictureBox)
        headless::uncover(static_cast<PictureBox&>(control));
}

void focusControl(Control& control) { headless::giveFocus(control.form(), &control); }

}  // namespace qxterm::backend
