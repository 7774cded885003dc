#include "platform/win32/key_filter.h"

#include "platform/clipboard.h"
#include "platform/win32/guarded.h"
#include "platform/win32/native.h"

namespace qxterm::win32 {
namespace {

constexpr UINT_PTR filterNumber = 1;

const Event<std::int16_t&>* keyEvent(const Control& control) {
    switch (control.kind()) {
        case ControlKind::textBox: return &static_cast<const TextBox&>(control).onKeyPress;
        case ControlKind::listBox:
        case ControlKind::comboBox: return &static_cast<const ItemsControl&>(control).onKeyPress;
        default: return nullptr;
    }
}

bool pressesButton(WPARAM key) { return key == VK_RETURN || key == VK_ESCAPE; }

/// True when the dialog is asking about Enter or Escape.
bool asksForButtonKey(LPARAM lParam) {
    if (lParam == 0) return false;
    const MSG& message = *reinterpret_cast<const MSG*>(lParam);
    return (message.message == WM_KEYDOWN || message.message == WM_CHAR) && pressesButton(message.wParam);
}

bool held(int key) { return GetKeyState(key) < 0; }

bool pastes(WPARAM key) {
    if (held(VK_MENU)) return false;
    return (key == 'V' && held(VK_CONTROL) && !held(VK_SHIFT)) ||
           (key == VK_INSERT && held(VK_SHIFT) && !held(VK_CONTROL));
}

/// What is pasted passes the same sieve as what is typed. Keys that press buttons, and other control
/// characters, are left out.
void typePasted(const Control& control, HWND window) {
    constexpr unsigned char firstPrintable = 32;
    for (const char character : clipboard::text()) {
        const auto code = static_cast<unsigned char>(character);
        if (control.native == nullptr) return;
        if (code >= firstPrintable) SendMessageA(window, WM_CHAR, code, 0);
    }
}

LRESULT CALLBACK filterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*number*/,
                                 DWORD_PTR data) {
    const Control& control = *reinterpret_cast<const Control*>(data);
    const Event<std::int16_t&>* const event = keyEvent(control);
    const bool filtered = event != nullptr && event->connected();
    switch (message) {
        case WM_NCDESTROY: RemoveWindowSubclass(window, filterProcedure, filterNumber); break;
        case WM_GETDLGCODE:
            if (filtered && asksForButtonKey(lParam)) {
                return DefSubclassProc(window, message, wParam, lParam) | DLGC_WANTALLKEYS;
            }
            break;
        case WM_KEYDOWN:
            if (filtered && pastes(wParam)) {
                typePasted(control, window);
                return 0;
            }
            break;
        case WM_PASTE:
            if (!filtered) break;
            typePasted(control, window);
            return 0;
        case WM_CHAR:
            if (filtered) {
                auto key = static_cast<std::int16_t>(wParam & 0xFFU);
                event->raise(key);
                // The handler may have closed the dialog. The boxes themselves only beep at Enter and Escape.
                if (key == 0 || control.native == nullptr || pressesButton(static_cast<WPARAM>(key)))
                    return 0;
                wParam = static_cast<WPARAM>(key);
            }
            break;
        default: break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

void filterKeys(Control& control) {
    if (keyEvent(control) == nullptr) return;
    SetWindowSubclass(control.native->window, Guarded<filterProcedure>::call, filterNumber,
                      reinterpret_cast<DWORD_PTR>(&control));
}

}  // namespace qxterm::win32
