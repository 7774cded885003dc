#include <string>

#include "platform/win32/native.h"

namespace qxterm::win32 {
namespace {

std::string textOf(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    const int length = GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void clicked(const Button& button) {
    if (button.index() >= 0 && button.onClickIndex.connected()) {
        button.onClickIndex.raise(static_cast<std::int16_t>(button.index()));
    } else {
        button.onClick.raise();
    }
}

/// A button that only got the keyboard announces a click, too: nothing is clicked that was chosen before.
void clicked(OptionButton& option) {
    if (option.value()) return;
    option.setValue(true);
    option.onClick.raise();
}

void clicked(CheckBox& box) {
    box.setValue(SendMessageA(box.native->window, BM_GETCHECK, 0, 0) == BST_CHECKED);
    box.onClick.raise();
}

void boxTold(TextBox& box, int code) {
    if (code == EN_SETFOCUS) box.onGotFocus.raise();
    if (code == EN_CHANGE && !box.native->fillingText) box.userChanged(textOf(box.native->window));
}

void listTold(ListBox& list, int code) {
    if (code == LBN_DBLCLK) list.onDblClick.raise();
    if (code != LBN_SELCHANGE) return;
    const auto chosen = static_cast<int>(SendMessageA(list.native->window, LB_GETCURSEL, 0, 0));
    if (chosen != LB_ERR) list.userChose(chosen);
}

void comboTold(ComboBox& combo, int code) {
    if (code != CBN_SELCHANGE) return;
    const auto chosen = static_cast<int>(SendMessageA(combo.native->window, CB_GETCURSEL, 0, 0));
    if (chosen != CB_ERR) combo.userChose(chosen);
}

}  // namespace

void controlCommand(const Form& form, HWND window, int /*id*/, int code) {
    Control* const control = controlOf(form, window);
    if (control == nullptr || !control->enabled()) return;
    // The second press of a fast pair on a button that the program draws itself.
    const bool click = code == BN_CLICKED || code == BN_DOUBLECLICKED;
    switch (control->kind()) {
        case ControlKind::button:
            if (click) clicked(static_cast<const Button&>(*control));
            break;
        case ControlKind::optionButton:
            if (code == BN_CLICKED) clicked(static_cast<OptionButton&>(*control));
            break;
        case ControlKind::checkBox:
            if (code == BN_CLICKED) clicked(static_cast<CheckBox&>(*control));
            break;
        case ControlKind::textBox: boxTold(static_cast<TextBox&>(*control), code); break;
        case ControlKind::listBox: listTold(static_cast<ListBox&>(*control), code); break;
        case ControlKind::comboBox: comboTold(static_cast<ComboBox&>(*control), code); break;
        case ControlKind::label:
        case ControlKind::frame:
        case ControlKind::scrollBar:
        case ControlKind::image:
        case ControlKind::tabStrip:
        case ControlKind::pictureBox: break;
    }
}

void controlNotify(const Form& form, const NMHDR& header) {
    Control* const control = controlOf(form, header.hwndFrom);
    if (control == nullptr || control->kind() != ControlKind::tabStrip) return;
    if (static_cast<int>(header.code) != static_cast<int>(TCN_SELCHANGE)) return;
    const auto tab = static_cast<int>(SendMessageA(header.hwndFrom, TCM_GETCURSEL, 0, 0));
    static_cast<TabStrip*>(control)->setTab(tab);
}

}  // namespace qxterm::win32
