#include "platform/controls.h"

#include <algorithm>

#include "platform/backend.h"

namespace qxterm {
namespace {

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

Control::Control(Form& form, ControlKind kind, const char* name, int id, Design design, int index)
    : form_{form},
      kind_{kind},
      name_{name},
      id_{id},
      index_{index},
      design_{design},
      enabled_{design.enabled},
      visible_{design.visible},
      caption_{design.caption} {
    Control** end = &form.controls_;
    while (*end != nullptr) end = &(*end)->next_;
    *end = this;
}

Control::~Control() {
    for (Control** link = &form_.controls_; *link != nullptr; link = &(*link)->next_) {
        if (*link == this) {
            *link = next_;
            break;
        }
    }
}

void Control::setEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    if (native != nullptr) backend::enabledChanged(*this);
}

void Control::setVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    if (native != nullptr) backend::visibleChanged(*this);
}

void Control::setContainerShown(bool shown) {
    if (containerShown_ == shown) return;
    containerShown_ = shown;
    if (native != nullptr) backend::visibleChanged(*this);
}

void Control::setCaption(std::string_view text) {
    if (caption_ == text) return;
    caption_ = text;
    if (native != nullptr) backend::captionChanged(*this);
}

TwipsRect Control::place() const { return native != nullptr ? backend::controlPlace(*this) : place_; }

void Control::move(const TwipsRect& place) {
    place_ = place;
    if (native != nullptr) backend::moveControl(*this, place);
}

void Control::setFocus() {
    if (native != nullptr) backend::focusControl(*this);
}

void Control::resetToDesign() {
    enabled_ = design_.enabled;
    visible_ = design_.visible;
    containerShown_ = true;
    caption_ = design_.caption;
    switch (kind_) {
        case ControlKind::label: static_cast<Label*>(this)->coloured = false; break;
        case ControlKind::optionButton:
        case ControlKind::checkBox: static_cast<ToggleControl*>(this)->value_ = false; break;
        case ControlKind::textBox: static_cast<TextBox*>(this)->text_.clear(); break;
        case ControlKind::listBox:
        case ControlKind::comboBox: {
            auto* list = static_cast<ItemsControl*>(this);
            list->items_.clear();
            list->listIndex_ = -1;
            break;
        }
        case ControlKind::tabStrip: static_cast<TabStrip*>(this)->tab_ = 0; break;
        case ControlKind::pictureBox: static_cast<PictureBox*>(this)->hooked_ = false; break;
        case ControlKind::frame:
        case ControlKind::button:
        case ControlKind::scrollBar:
        case ControlKind::image: break;
    }
}

void Label::setTextColour(Rgb colour) {
    textColour = colour;
    coloured = true;
    if (native != nullptr) backend::textColourChanged(*this);
}

void ToggleControl::setValue(bool value) {
    value_ = value;
    if (native == nullptr) return;
    backend::valueChanged(*this, value);
    if (value && kind_ == ControlKind::optionButton) deselectOthers(*this);
}

void TextBox::setText(std::string_view text) {
    if (text_ == text) return;
    text_ = text;
    if (native != nullptr) backend::textChanged(*this);
    onChange.raise();
}

void TextBox::setFont(std::string_view face, float points) {
    if (native != nullptr) backend::textFontChanged(*this, face, points);
}

void TextBox::userChanged(std::string_view text) {
    if (text_ == text) return;
    text_ = text;
    onChange.raise();
}

void ItemsControl::clear() {
    items_.clear();
    listIndex_ = -1;
    if (native != nullptr) backend::itemsChanged(*this);
}

void ItemsControl::addItem(std::string_view text) {
    items_.emplace_back(text);
    if (native != nullptr) backend::itemsChanged(*this);
}

void ItemsControl::setListIndex(int index) {
    if (index < -1 || index >= static_cast<int>(items_.size()))
        throw RunTimeError{errors::invalidProcedureCall};
    listIndex_ = index;
    if (native != nullptr) backend::chosenChanged(*this);
}

std::string_view ItemsControl::chosenText() const {
    return listIndex_ < 0 ? std::string_view{}
                          : std::string_view{items_[static_cast<std::size_t>(listIndex_)]};
}

void ItemsControl::userChose(int index) {
    listIndex_ = index;
    onClick.raise();
}

void ScrollBar::setMinimum(std::int16_t minimum) {
    if (minimum_ == minimum) return;
    minimum_ = minimum;
    if (native != nullptr) backend::scrollBarChanged(*this);
}

void ScrollBar::setMaximum(std::int16_t maximum) {
    if (maximum_ == maximum) return;
    maximum_ = maximum;
    if (native != nullptr) backend::scrollBarChanged(*this);
}

void ScrollBar::setChanges(std::int16_t large, std::int16_t small) {
    largeChange_ = large;
    smallChange_ = small;
    if (native != nullptr) backend::scrollBarChanged(*this);
}

void ScrollBar::setValue(std::int16_t value) {
    if (value < minimum_ || value > maximum_) throw RunTimeError{errors::invalidProcedureCall};
    if (value_ == value) return;
    value_ = value;
    if (native != nullptr) backend::scrollBarChanged(*this);
    onChange.raise();
}

void ScrollBar::userMoved(std::int16_t value, bool dragging) {
    value = std::clamp(value, minimum_, maximum_);
    if (value_ == value) return;
    value_ = value;
    if (native != nullptr) backend::scrollBarChanged(*this);
    if (dragging) {
        onScroll.raise();
    } else {
        onChange.raise();
    }
}

void Image::loadPicture(const std::string& path) { backend::loadPicture(*this, path); }

void TabStrip::setTabs(const std::vector<std::string>& captions) {
    tabs_ = captions;
    if (native != nullptr) backend::tabsChanged(*this);
}

void TabStrip::setTab(int tab) {
    if (tab_ == tab) return;
    tab_ = tab;
    if (native != nullptr) backend::tabsChanged(*this);
    onChange.raise();
}

}  // namespace qxterm
