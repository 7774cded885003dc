#include <string>

#include "platform/picture_box.h"
#include "platform/resource_ids.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/guarded.h"
#include "platform/win32/key_buttons.h"
#include "platform/win32/keyboard.h"
#include "platform/win32/menus.h"
#include "platform/win32/native.h"
#include "platform/win32/picture_window.h"
#include "platform/win32/scroll_bars.h"
#include "platform/win32/twips.h"

namespace qxterm::win32 {
namespace {

constexpr const char* className = "QxtermMain";
/// Caption, system menu and minimise box: the window's size follows from the screen's font alone.
constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

/// Shows what has to be answered before the window can close.
void showOpenQuestion(HWND window) {
    MessageBeep(MB_OK);
    SetForegroundWindow(GetLastActivePopup(window));
}

void closeByUser(Form& form, HWND window) {
    if (IsWindowEnabled(window) != 0) {
        (void)form.unload(UnloadReason::formControlMenu);
    } else {
        showOpenQuestion(window);  // below a dialog or a box
    }
}

/// Whether the user's session may end as far as this program goes; it does when the window has closed. A
/// question about closing that is open already has no answer yet, and with it there may be changes to save.
bool sessionMayEnd(Form& form, HWND window) {
    if (!form.unloading()) return form.unload(UnloadReason::windowsEnding);
    showOpenQuestion(window);
    return false;
}

void activated(Form& form, WPARAM wParam) {
    const auto how = static_cast<std::int16_t>(lowWord(wParam));
    const auto tellHook = [&] {
        if (form.messageHookAttached()) form.onActivateMessage.raise(how);
    };
    if (how == WA_INACTIVE) {
        tellHook();
        form.onDeactivate.raise();
    } else {
        // The form's handler attaches the hook that is to see the message.
        form.onActivate.raise();
        tellHook();
    }
}

/// The sizing borders (10 to 17) answer as nothing.
LRESULT hitTest(const Form& form, LRESULT hit) {
    const bool sizing = hit >= HTLEFT && hit <= HTBOTTOMRIGHT;
    return form.messageHookAttached() && sizing ? HTNOWHERE : hit;
}

void holdSize(const Form& form, MINMAXINFO& limits) {
    const SIZE& size = form.native->heldSize;
    if (!form.messageHookAttached() || size.cx == 0) return;
    limits.ptMinTrackSize = {size.cx, size.cy};
    limits.ptMaxTrackSize = {size.cx, size.cy};
}

void command(const Form& form, WPARAM wParam, LPARAM lParam) {
    const int id = lowWord(wParam);
    auto* const control = reinterpret_cast<HWND>(lParam);
    if (control != nullptr) {
        controlCommand(form, control, id, highWord(wParam));
    } else {
        chooseMenuEntry(form, id);
    }
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto standard = [&] { return DefWindowProcA(window, message, wParam, lParam); };
    Form* const form = formOf(window);
    if (form == nullptr) return standard();
    if (waitsForTheBlock(window, message, wParam, lParam)) return 0;
    if (keyboardTakes(*form, message, wParam)) return 0;
    switch (message) {
        case WM_COMMAND: command(*form, wParam, lParam); return 0;
        case WM_NOTIFY: controlNotify(*form, *reinterpret_cast<const NMHDR*>(lParam)); return 0;
        case WM_DRAWITEM: drawKeyButton(*form, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)); return TRUE;
        case WM_VSCROLL: scrollByUser(*form, reinterpret_cast<HWND>(lParam), lowWord(wParam)); return 0;
        case WM_MOUSEWHEEL: wheel(*form, wParam); return 0;
        case WM_INITMENUPOPUP: openMenu(*form, reinterpret_cast<HMENU>(wParam)); return standard();
        case WM_ACTIVATE:
            activated(*form, wParam);
            if (lowWord(wParam) != WA_INACTIVE && IsIconic(window) == 0) SetFocus(window);
            return 0;
        case WM_SETFOCUS:
            form->onGotFocus.raise();
            focusScreen(*form);
            return 0;
        case WM_SIZE: showTitle(*form); return 0;
        case WM_NCHITTEST: return hitTest(*form, standard());
        case WM_GETMINMAXINFO: holdSize(*form, *reinterpret_cast<MINMAXINFO*>(lParam)); return 0;
        case WM_CLOSE: closeByUser(*form, window); return 0;
        case WM_QUERYENDSESSION: return sessionMayEnd(*form, window) ? TRUE : FALSE;
        default: return standard();
    }
}

HICON programIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(LoadImageA(instance(), MAKEINTRESOURCEA(IDI_QXTERM), IMAGE_ICON,
                                         GetSystemMetrics(widthMetric), GetSystemMetrics(heightMetric),
                                         LR_SHARED));
}

void registerClass() {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Guarded<windowProcedure>::call;
    description.hInstance = instance();
    description.hIcon = programIcon(SM_CXICON, SM_CYICON);
    description.hIconSm = programIcon(SM_CXSMICON, SM_CYSMICON);
    description.hCursor = LoadCursor(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = className;
    RegisterClassExA(&description);
}

Control::Native* createControl(Control& control, HWND parent) {
    switch (control.kind()) {
        case ControlKind::pictureBox: return createPictureWindow(static_cast<PictureBox&>(control), parent);
        case ControlKind::scrollBar: return createScrollBar(static_cast<ScrollBar&>(control), parent);
        case ControlKind::button: return createKeyButton(control, parent);
        default: return nullptr;
    }
}

/// False when the system has no window left for one of them.
bool createControls(const Form& form, HWND window) {
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        Control::Native* const native = createControl(*control, window);
        if (native == nullptr) continue;
        if (native->window == nullptr) {
            delete native;
            return false;
        }
        attachControl(*control, native);
    }
    return true;
}

}  // namespace

HWND createMainWindow(Form& form) {
    static const bool registered = (registerClass(), true);
    (void)registered;
    HMENU const menu = createMenuBar(form);
    if (menu == nullptr) return nullptr;
    HWND const window = CreateWindowExA(WS_EX_APPWINDOW, className, "", style, 0, 0, 0, 0, nullptr, menu,
                                        instance(), nullptr);
    if (window == nullptr) {
        DestroyMenu(menu);
        return nullptr;
    }
    try {
        if (createControls(form, window)) return window;
    } catch (...) {
        DestroyWindow(window);
        throw;
    }
    DestroyWindow(window);
    return nullptr;
}

}  // namespace qxterm::win32
