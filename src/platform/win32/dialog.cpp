#include "platform/win32/dialog.h"

#include <string>

#include "platform/resource_ids.h"
#include "platform/win32/guarded.h"
#include "platform/win32/image.h"
#include "platform/win32/key_filter.h"
#include "platform/win32/native.h"
#include "platform/win32/twips.h"

namespace qxterm::win32 {
namespace {

/// Posted when the dialog has become active: its handler may move the focus, which is only then settled.
constexpr UINT wmActivated = WM_APP + 1;

void missing(const Control& control) {
    OutputDebugStringA((std::string{"the dialog of "} + control.form().name() + " lacks its control " +
                        control.name() + "\n")
                           .c_str());
}

/// A picture has its size in pixels at every resolution; so has what is written on it.
void fitToPicture(const Control& control) {
    constexpr int letterPixels = 11;
    control.native->font = Font{CreateFontA(-letterPixels, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                            DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                            DEFAULT_QUALITY, VARIABLE_PITCH | FF_SWISS, "MS Shell Dlg")};
    SendMessageA(control.native->window, WM_SETFONT, reinterpret_cast<WPARAM>(control.native->font.get()),
                 FALSE);
}

void attachAll(const Form& form, HWND window) {
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        HWND const child = GetDlgItem(window, control->id());
        if (child == nullptr) {
            missing(*control);
            continue;
        }
        Control::Native* const native =
            control->kind() == ControlKind::image ? createImage(child) : new Control::Native{child};
        attachControl(*control, native);
        filterKeys(*control);
        const bool hasText = control->kind() == ControlKind::label || control->kind() == ControlKind::button;
        if (form.kind() == FormKind::picture && hasText) fitToPicture(*control);
    }
}

/// Enter and Escape arrive as commands with these numbers. A form that has no Cancel button takes Escape for
/// OK.
void command(const Form& form, int id, int code, HWND control) {
    HWND const window = windowOf(form);
    if (id == IDCANCEL && GetDlgItem(window, IDCANCEL) == nullptr) {
        id = IDOK;
        control = nullptr;
    }
    if (control == nullptr && (id == IDOK || id == IDCANCEL)) {
        control = GetDlgItem(window, id);
        if (control == nullptr || IsWindowVisible(control) == 0 || IsWindowEnabled(control) == 0) return;
        code = BN_CLICKED;
    }
    if (control != nullptr) controlCommand(form, control, id, code);
}

/// Null: the label is drawn as usual.
INT_PTR labelColours(const Form& form, HDC dc, HWND window) {
    const Control* const control = controlOf(form, window);
    if (control == nullptr || control->kind() != ControlKind::label) return 0;
    const auto& label = static_cast<const Label&>(*control);
    if (!seeThrough(label)) return 0;
    const Rgb& colour = label.textColour;
    SetTextColor(dc,
                 label.coloured ? RGB(colour.red, colour.green, colour.blue) : GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(dc, TRANSPARENT);
    return reinterpret_cast<INT_PTR>(GetStockObject(NULL_BRUSH));
}

void activated(const Form& form, bool active) {
    if (active) {
        form.onActivate.raise();
    } else {
        form.onDeactivate.raise();
    }
}

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // The focus stays where it is until the dialog is shown.
    if (message == WM_INITDIALOG) return FALSE;
    Form* const form = formOf(window);
    if (form == nullptr) return FALSE;
    switch (message) {
        case WM_COMMAND:
            command(*form, lowWord(wParam), highWord(wParam), reinterpret_cast<HWND>(lParam));
            return TRUE;
        case WM_NOTIFY: controlNotify(*form, *reinterpret_cast<const NMHDR*>(lParam)); return FALSE;
        case WM_CTLCOLORSTATIC:
            return labelColours(*form, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
        case WM_ERASEBKGND: return paintImages(*form, reinterpret_cast<HDC>(wParam)) ? TRUE : FALSE;
        case WM_ACTIVATE: PostMessageA(window, wmActivated, lowWord(wParam) != WA_INACTIVE, 0); return FALSE;
        case wmActivated: activated(*form, wParam != 0); return TRUE;
        case WM_CLOSE: (void)form->unload(UnloadReason::formControlMenu); return TRUE;
        default: return FALSE;
    }
}

void setIcon(HWND window) {
    HICON const icon = LoadIconA(instance(), MAKEINTRESOURCEA(IDI_QXTERM));
    SendMessageA(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageA(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
}

}  // namespace

bool seeThrough(const Label& label) { return label.coloured || label.form().kind() == FormKind::picture; }

bool turnTab(const Form& form, const MSG& message) {
    if (message.message != WM_KEYDOWN || GetKeyState(VK_CONTROL) >= 0) return false;
    const bool back = message.wParam == VK_PRIOR || (message.wParam == VK_TAB && GetKeyState(VK_SHIFT) < 0);
    if (!back && message.wParam != VK_NEXT && message.wParam != VK_TAB) return false;
    auto* const strip = static_cast<TabStrip*>(firstOf(form, ControlKind::tabStrip));
    if (strip == nullptr || strip->tabs().empty()) return false;
    const auto count = static_cast<int>(strip->tabs().size());
    strip->setTab((strip->tab() + (back ? count - 1 : 1)) % count);
    // The control that had the keyboard may have gone with its tab.
    HWND const window = windowOf(form);
    HWND const focus = GetFocus();
    if (focus != nullptr && IsWindowVisible(focus) == 0) {
        HWND const first = GetNextDlgTabItem(window, strip->native->window, FALSE);
        SendMessageA(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
    }
    return true;
}

HWND createDialog(Form& form) {
    HWND const window = CreateDialogParamA(instance(), MAKEINTRESOURCEA(form.resource()), mainWindow(),
                                           Guarded<dialogProcedure>::call, 0);
    if (window == nullptr) return nullptr;
    form.native->window = window;
    setIcon(window);
    attachAll(form, window);
    return window;
}

}  // namespace qxterm::win32
