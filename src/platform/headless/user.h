#pragma once

#include <cstdint>
#include <string_view>

#include "platform/controls.h"
#include "platform/menu.h"

/// What a person at the desktop does. Gestures on something that cannot be used (disabled, hidden, its form
/// not shown) return false and do nothing.
namespace qxterm::headless {

[[nodiscard]] bool usable(const Control& control);

/// A button (its index goes along for one of an array), an option button or a check box.
bool click(Control& control);
/// Replaces what stands in a text box.
bool enterText(TextBox& box, std::string_view text);
/// Chooses an entry that exists, and double-clicks it on top of that.
bool choose(ItemsControl& list, int index, bool twice);
/// Presses a character key in a text, list or combo box. In a text box a character that the handler lets
/// through is typed at the end, a backspace takes the last one away.
bool press(Control& control, std::int16_t code);
/// Moves a scroll bar; held within its range.
bool moveScrollBar(ScrollBar& bar, std::int32_t value);
/// Opens the menu and chooses an entry; separators cannot be chosen. Error 91 when there is no entry with
/// this index.
bool chooseMenu(Menu& menu, std::int16_t index);

/// The window becomes the active one, or another program's window does.
void activate(Form& form);
void deactivate(Form& form);

/// Gives the keyboard to a control, or to the form itself (null); what gets it anew is told.
void giveFocus(Form& form, Control* control);
/// A form that is going away no longer has the keyboard.
void forgetFocus(const Form& form);

}  // namespace qxterm::headless
