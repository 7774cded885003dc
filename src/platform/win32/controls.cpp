#include <string>

#include "platform/backend.h"
#include "platform/win32/dialog.h"
#include "platform/win32/key_buttons.h"
#include "platform/win32/native.h"
#include "platform/win32/twips.h"

namespace qxterm {
namespace win32 {
namespace {

bool hasWindowText(ControlKind kind) {
    switch (kind) {
        case ControlKind::label:
        case ControlKind::frame:
        case ControlKind::button:
        case ControlKind::optionButton:
        case ControlKind::checkBox: return true;
        default: return false;
    }
}

/// A label without a background of its own has to be wiped by what lies under it.
void repaintBelow(const Control& control) {
    HWND const parent = windowOf(control.form());
    RECT area{};
    GetWindowRect(control.native->window, &area);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
    RedrawWindow(parent, &area, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

RECT areaInForm(const Control& control) {
    RECT area{};
    GetWindowRect(control.native->window, &area);
    MapWindowPoints(nullptr, windowOf(control.form()), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

}  // namespace

Control* controlOf(const Form& form, HWND window) {
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        if (control->native != nullptr && control->native->window == window) return control;
    }
    return nullptr;
}

Control* firstOf(const Form& form, ControlKind kind) {
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        if (control->kind() == kind) return control;
    }
    return nullptr;
}

void attachControl(Control& control, Control::Native* native) {
    control.native = native;
    if (hasWindowText(control.kind())) backend::captionChanged(control);
    backend::enabledChanged(control);
    backend::visibleChanged(control);
}

void detachControls(const Form& form) {
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        delete control->native;
        control->native = nullptr;
    }
}

}  // namespace win32

using namespace win32;

void backend::enabledChanged(Control& control) {
    HWND const window = control.native->window;
    // A disabled control would keep the keyboard to itself.
    if (!control.enabled() && GetFocus() == window) SetFocus(GetParent(window));
    EnableWindow(window, control.enabled());
}

void backend::visibleChanged(Control& control) {
    if (control.kind() == ControlKind::image) {
        repaintBelow(control);  // painted by its form
        return;
    }
    ShowWindow(control.native->window, control.seen() ? SW_SHOWNA : SW_HIDE);
    if (control.kind() == ControlKind::scrollBar) scrollBarChanged(static_cast<ScrollBar&>(control));
}

void backend::captionChanged(Control& control) {
    const bool keyButton =
        control.kind() == ControlKind::button && control.form().kind() == FormKind::mainWindow;
    SetWindowTextA(control.native->window, (keyButton ? spokenLabel(control) : control.caption()).c_str());
    if (control.kind() == ControlKind::label && seeThrough(static_cast<const Label&>(control))) {
        repaintBelow(control);
    } else if (control.form().kind() == FormKind::mainWindow) {
        InvalidateRect(control.native->window, nullptr, FALSE);
    }
}

TwipsRect backend::controlPlace(const Control& control) { return toTwips(areaInForm(control)); }

void backend::moveControl(Control& control, const TwipsRect& place) {
    MoveWindow(control.native->window, pixelsX(place.left), pixelsY(place.top), pixelsX(place.width),
               pixelsY(place.height), TRUE);
}

void backend::focusControl(Control& control) {
    HWND const window = control.native->window;
    if (!control.enabled() || !control.seen()) return;
    if (control.form().kind() == FormKind::mainWindow) {
        SetFocus(window);
    } else {
        SendMessageA(windowOf(control.form()), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(window), TRUE);
    }
}

void backend::textColourChanged(Label& label) { repaintBelow(label); }

}  // namespace qxterm
