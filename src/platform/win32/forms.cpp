#include <algorithm>
#include <string>

#include "platform/backend.h"
#include "platform/event_loop.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/message_window.h"
#include "platform/win32/native.h"
#include "platform/win32/timers.h"
#include "platform/win32/twips.h"

namespace qxterm {
namespace win32 {
namespace {

std::vector<Form*>& forms() {
    static std::vector<Form*> loaded;
    return loaded;
}

std::string& title() {
    static std::string text;
    return text;
}

void moveWindow(HWND window, const TwipsRect& to) {
    SetWindowPos(window, nullptr, pixelsX(to.left), pixelsY(to.top), pixelsX(to.width), pixelsY(to.height),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void dropNative(Form& form) {
    detachControls(form);
    std::erase(forms(), &form);
    delete form.native;
    form.native = nullptr;
}

/// Forms owned by the main window would vanish with it behind their objects' backs.
void unloadOthers(const Form& main) {
    // Each takes itself out of the list, and others perhaps.
    for (std::size_t left = forms().size(); left > 0; left = std::min(left - 1, forms().size())) {
        Form* const form = forms()[left - 1];
        if (form != &main) (void)form->unload();
    }
}

}  // namespace

HINSTANCE instance() { return GetModuleHandleA(nullptr); }

const std::vector<Form*>& loadedForms() { return forms(); }

const std::string& applicationTitle() { return title(); }

Form* formOf(HWND window) {
    const auto at = std::find_if(forms().begin(), forms().end(),
                                 [&](const Form* form) { return windowOf(*form) == window; });
    return at == forms().end() ? nullptr : *at;
}

HWND mainWindow() {
    for (const Form* form : forms()) {
        if (form->kind() == FormKind::mainWindow) return windowOf(*form);
    }
    return nullptr;
}

void showTitle(const Form& form) {
    HWND const window = windowOf(form);
    // Minimised, the window is nothing but its entry on the task bar.
    const bool onTaskBar = form.kind() == FormKind::mainWindow && IsIconic(window) != 0 && !title().empty();
    SetWindowTextA(window, onTaskBar ? title().c_str() : form.caption().c_str());
}

}  // namespace win32

using namespace win32;

void backend::createWindow(Form& form) {
    (void)messageWindow();
    form.native = new Form::Native;
    try {
        forms().push_back(&form);
        const bool isMain = form.kind() == FormKind::mainWindow;
        form.native->window = isMain ? createMainWindow(form) : createDialog(form);
        if (form.native->window == nullptr) throw RunTimeError{errors::outOfMemory};
    } catch (...) {
        if (form.native->window != nullptr) DestroyWindow(form.native->window);
        dropNative(form);
        throw;
    }
    if (form.kind() != FormKind::picture) showTitle(form);
}

void backend::destroyWindow(Form& form) {
    const bool isMain = form.kind() == FormKind::mainWindow;
    if (isMain) unloadOthers(form);
    disableTimers(form);
    endModal(form);
    HWND const window = windowOf(form);
    if (window != nullptr) {
        keepBoxesOf(window);
        DestroyWindow(window);
    }
    dropNative(form);
    if (isMain) endLoop();
}

void backend::showWindow(Form& form, bool modal) {
    if (modal) beginModal(form);
    HWND const window = windowOf(form);
    ShowWindow(window, SW_SHOW);
    if (IsIconic(window) != 0) ShowWindow(window, SW_RESTORE);
    if (form.kind() != FormKind::mainWindow && GetActiveWindow() == window) {
        HWND const focus = GetFocus();
        HWND const first = GetNextDlgTabItem(window, nullptr, FALSE);
        if (first != nullptr && (focus == nullptr || focus == window)) {
            SendMessageA(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
        }
    }
    UpdateWindow(window);
}

void backend::runModal(Form& form) {
    while (form.loaded() && !eventLoop::ending()) waitAndDispatch();
}

void backend::formCaptionChanged(Form& form, const std::string& /*caption*/) { showTitle(form); }

TwipsRect backend::formPlace(const Form& form) {
    RECT area{};
    GetWindowRect(windowOf(form), &area);
    return toTwips(area);
}

void backend::moveForm(Form& form, const TwipsRect& place) { moveWindow(windowOf(form), place); }

void backend::setFormClientSize(Form& form, std::int32_t width, std::int32_t height) {
    HWND const window = windowOf(form);
    const SIZE wanted{pixelsX(width), pixelsY(height)};
    RECT outer{0, 0, wanted.cx, wanted.cy};
    const auto style = static_cast<DWORD>(GetWindowLongPtrA(window, GWL_STYLE));
    const auto extended = static_cast<DWORD>(GetWindowLongPtrA(window, GWL_EXSTYLE));
    AdjustWindowRectEx(&outer, style, GetMenu(window) != nullptr, extended);
    SIZE size{outer.right - outer.left, outer.bottom - outer.top};
    const auto resize = [&] {
        form.native->heldSize = size;
        SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    resize();
    // A menu bar of two lines takes more than the one that was reckoned with.
    RECT client{};
    GetClientRect(window, &client);
    if (IsIconic(window) == 0 && client.bottom > 0 && client.bottom < wanted.cy) {
        size.cy += wanted.cy - client.bottom;
        resize();
    }
}

PixelRect backend::formNormalPosition(const Form& form) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(windowOf(form), &placement);
    const RECT& normal = placement.rcNormalPosition;
    // The placement counts from the work area's corner, a window's place from the screen's.
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromRect(&normal, MONITOR_DEFAULTTONEAREST), &monitor);
    const std::int32_t left = normal.left + monitor.rcWork.left - monitor.rcMonitor.left;
    const std::int32_t top = normal.top + monitor.rcWork.top - monitor.rcMonitor.top;
    return {left, top, 0, 0};
}

void backend::focusForm(Form& form) { SetFocus(windowOf(form)); }

void backend::formHookChanged(Form& /*form*/, bool /*attached*/) {}  // the window procedure asks the form

void backend::applicationTitleChanged(std::string_view text) {
    title() = text;
    SetWindowTextA(messageWindow(), title().c_str());
    for (const Form* form : forms()) {
        if (form->kind() == FormKind::mainWindow && windowOf(*form) != nullptr) showTitle(*form);
    }
}

}  // namespace qxterm
