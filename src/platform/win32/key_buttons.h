#pragma once

#include <string>

#include "platform/controls.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

/// A button of the main window. It draws its caption as it stands, two lines and no mnemonics, since the host
/// writes it.
/// What a button is called by those who read it out: its key and its label in one line. The label itself is
/// drawn.
[[nodiscard]] std::string spokenLabel(const Control& button);
[[nodiscard]] Control::Native* createKeyButton(Control& control, HWND parent);
/// WM_DRAWITEM.
void drawKeyButton(const Form& form, const DRAWITEMSTRUCT& item);

}  // namespace qxterm::win32
