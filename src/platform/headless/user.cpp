#include "platform/headless/user.h"

#include <algorithm>

namespace qxterm::headless {
namespace {

constexpr std::int16_t activated = 1;  // parameter of the activation message
constexpr std::int16_t deactivated = 0;
constexpr std::int16_t backspace = 8;

const Form* focusedForm = nullptr;
const Control* focusedControl = nullptr;

void typeInto(TextBox& box, std::int16_t code) {
    std::string text = box.text();
    if (code == backspace) {
        if (!text.empty()) text.pop_back();
    } else if (code >= ' ' && code <= 255) {
        text += static_cast<char>(code);
    }
    box.userChanged(text);
}

}  // namespace

// Tabs do not count: a person who wants to use a control on another tab shows that tab first.
bool usable(const Control& control) {
    return control.form().visible() && control.enabled() && control.visible();
}

bool click(Control& control) {
    if (!usable(control)) return false;
    giveFocus(control.form(), &control);
    switch (control.kind()) {
        case ControlKind::button: {
            auto& button = static_cast<Button&>(control);
            if (button.index() >= 0) {
                button.onClickIndex.raise(static_cast<std::int16_t>(button.index()));
            } else {
                button.onClick.raise();
            }
            return true;
        }
        case ControlKind::optionButton: {
            auto& button = static_cast<OptionButton&>(control);
            button.setValue(true);
            button.onClick.raise();
            return true;
        }
        case ControlKind::checkBox: {
            auto& box = static_cast<CheckBox&>(control);
            box.setValue(!box.value());
            box.onClick.raise();
            return true;
        }
        default: return false;
    }
}

bool enterText(TextBox& box, std::string_view text) {
    if (!usable(box)) return false;
    giveFocus(box.form(), &box);
    box.userChanged(text);
    return true;
}

bool choose(ItemsControl& list, int index, bool twice) {
    if (!usable(list)) return false;
    giveFocus(list.form(), &list);
    list.userChose(index);
    if (twice) list.onDblClick.raise();
    return true;
}

bool press(Control& control, std::int16_t code) {
    if (!usable(control)) return false;
    giveFocus(control.form(), &control);
    if (control.kind() == ControlKind::textBox) {
        auto& box = static_cast<TextBox&>(control);
        box.onKeyPress.raise(code);
        if (code != 0 && box.form().loaded()) typeInto(box, code);
        return true;
    }
    if (control.kind() != ControlKind::listBox && control.kind() != ControlKind::comboBox) return false;
    static_cast<ItemsControl&>(control).onKeyPress.raise(code);
    return true;
}

bool moveScrollBar(ScrollBar& bar, std::int32_t value) {
    if (!usable(bar)) return false;
    bar.userMoved(static_cast<std::int16_t>(std::clamp<std::int32_t>(value, bar.minimum(), bar.maximum())),
                  false);
    return true;
}

bool chooseMenu(Menu& menu, std::int16_t index) {
    (void)menu.entry(index);
    if (!menu.form().visible()) return false;
    menu.onOpen.raise();
    const Menu::Entry& entry = menu.entry(index);
    if (!entry.enabled || !entry.visible || entry.separator()) return false;
    menu.onClick.raise(index);
    return true;
}

void activate(Form& form) {
    // The form hears of its activation first: that is where it attaches the hook that sees the message.
    form.onActivate.raise();
    if (form.messageHookAttached()) form.onActivateMessage.raise(activated);
    if (form.visible()) giveFocus(form, nullptr);
}

void deactivate(Form& form) {
    if (form.messageHookAttached()) form.onActivateMessage.raise(deactivated);
    form.onDeactivate.raise();
    forgetFocus(form);
}

void giveFocus(Form& form, Control* control) {
    if (focusedForm == &form && focusedControl == control) return;
    focusedForm = &form;
    focusedControl = control;
    if (control == nullptr) {
        form.onGotFocus.raise();
    } else if (control->kind() == ControlKind::textBox) {
        static_cast<TextBox*>(control)->onGotFocus.raise();
    }
}

void forgetFocus(const Form& form) {
    if (focusedForm != &form) return;
    focusedForm = nullptr;
    focusedControl = nullptr;
}

}  // namespace qxterm::headless
