#include "platform/form.h"

#include <algorithm>
#include <new>

#include "platform/backend.h"
#include "platform/controls.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/menu.h"
#include "platform/run_time_error.h"

namespace qxterm {
namespace {

std::vector<Form*>& shown() {
    static std::vector<Form*> forms;
    return forms;
}

/// A form that cannot be shown does not stay behind, loaded and out of everybody's reach.
template <class Show>
void showOrUnload(Form& form, Show&& show) {
    try {
        show();
    } catch (const std::bad_alloc&) {
        (void)form.unload();
        throw;
    } catch (const RunTimeError&) {
        (void)form.unload();
        throw;
    }
}

}  // namespace

void Form::load() {
    if (loaded_) return;
    caption_.reset();
    for (Control* control = controls_; control != nullptr; control = control->next())
        control->resetToDesign();
    for (Menu* menu : Menu::all()) {
        if (&menu->form() == this) menu->resetToDesign();
    }
    backend::createWindow(*this);
    loaded_ = true;
    onLoad.raise();
}

void Form::show() {
    load();
    if (!loaded_ || visible_) return;
    showOrUnload(*this, [this] {
        shown().push_back(this);
        visible_ = true;
        backend::showWindow(*this, false);
    });
}

void Form::showModal(void (*prepare)()) {
    if (eventLoop::ending()) return;
    load();
    if (!loaded_) return;
    showOrUnload(*this, [this, prepare] {
        if (prepare != nullptr) prepare();
        if (!visible_) {
            shown().push_back(this);
            visible_ = true;
        }
        backend::showWindow(*this, true);
        backend::runModal(*this);
    });
}

bool Form::unload(UnloadReason reason) {
    if (!loaded_ || unloading_) return true;
    unloading_ = true;
    bool cancel = false;
    onQueryUnload.raise(cancel, reason);
    if (cancel) {
        unloading_ = false;
        return false;
    }
    onUnload.raise();
    loaded_ = false;
    visible_ = false;
    hooked_ = false;
    std::erase(shown(), this);
    backend::destroyWindow(*this);
    unloading_ = false;
    return true;
}

std::string Form::caption() const { return caption_ ? *caption_ : std::string{designed_}; }

void Form::setCaption(std::string_view text) {
    if (caption() == text) return;
    caption_ = std::make_unique<std::string>(text);
    if (loaded_) backend::formCaptionChanged(*this, *caption_);
}

TwipsRect Form::place() const { return loaded_ ? backend::formPlace(*this) : TwipsRect{}; }

void Form::move(const TwipsRect& place) {
    if (loaded_) backend::moveForm(*this, place);
}

void Form::setClientSize(std::int32_t width, std::int32_t height) {
    if (loaded_) backend::setFormClientSize(*this, width, height);
}

PixelRect Form::normalPosition() const { return loaded_ ? backend::formNormalPosition(*this) : PixelRect{}; }

void Form::setFocus() {
    if (loaded_) backend::focusForm(*this);
}

Control* Form::find(std::string_view name, int index) const {
    for (Control* control = controls_; control != nullptr; control = control->next()) {
        if (name == control->name() && control->index() == index) return control;
    }
    return nullptr;
}

void Form::attachMessageHook(bool attached) {
    hooked_ = attached;
    if (loaded_) backend::formHookChanged(*this, attached);
}

void Glb_CentreForm(Form& form) {
    TwipsRect place = form.place();
    place.top = (display::height() - place.height) / 2;
    place.left = (display::width() - place.width) / 2;
    form.move(place);
}

void setApplicationTitle(std::string_view title) {
    static std::string current;
    if (current == title) return;
    current = title;
    backend::applicationTitleChanged(title);
}

const std::vector<Form*>& visibleForms() { return shown(); }

}  // namespace qxterm
