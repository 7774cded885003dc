#include "platform/win32/keyboard.h"

namespace qxterm::win32 {
namespace {

bool held(int key) { return GetKeyState(key) < 0; }

/// Alt+F4 closes the window, F10 and Alt alone open the menu.
bool belongsToSystem(WPARAM key) {
    return key == VK_MENU || key == VK_F10 || (key == VK_F4 && held(VK_MENU));
}

}  // namespace

std::int16_t heldShifts() {
    int mask = 0;
    if (held(VK_SHIFT)) mask |= shiftState::shift;
    if (held(VK_CONTROL)) mask |= shiftState::control;
    if (held(VK_MENU)) mask |= shiftState::alt;
    return static_cast<std::int16_t>(mask);
}

bool keyboardTakes(Form& form, UINT message, WPARAM wParam) {
    switch (message) {
        case WM_KEYDOWN: form.onKeyDown.raise(static_cast<std::int16_t>(wParam), heldShifts()); return true;
        case WM_SYSKEYDOWN:
            if (!belongsToSystem(wParam))
                form.onKeyDown.raise(static_cast<std::int16_t>(wParam), heldShifts());
            return false;
        case WM_CHAR: form.onKeyPress.raise(static_cast<std::int16_t>(wParam & 0xFFU)); return true;
        default: return false;
    }
}

}  // namespace qxterm::win32
