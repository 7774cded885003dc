#pragma once

#include <vector>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/win32/handle.h"
#include "platform/win32/system.h"

namespace qxterm {

/// A form's window while it is loaded.
struct Form::Native {
    HWND window = nullptr;
    /// Outer size in pixels that the message hook holds the window at; 0 until it is computed.
    SIZE heldSize{};
};

/// A control's window while its form is loaded. What a kind of control needs besides is derived from this.
struct Control::Native {
    Native() = default;
    explicit Native(HWND handle) : window{handle} {}
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;
    virtual ~Native() = default;

    HWND window = nullptr;
    win32::Font font;          ///< of a control that has a font of its own
    bool fillingText = false;  ///< the program, not the user, is changing the text
};

namespace win32 {

[[nodiscard]] HINSTANCE instance();
/// Null when the form is not loaded.
[[nodiscard]] inline HWND windowOf(const Form& form) {
    return form.native != nullptr ? form.native->window : nullptr;
}
/// The form whose window this is, or null.
[[nodiscard]] Form* formOf(HWND window);
/// The control of the form whose window this is, or null.
[[nodiscard]] Control* controlOf(const Form& form, HWND window);
/// The forms that have a window, in the order in which they were loaded.
[[nodiscard]] const std::vector<Form*>& loadedForms();
/// The loaded main window, or null.
[[nodiscard]] HWND mainWindow();
/// The first control of this kind, or null.
[[nodiscard]] Control* firstOf(const Form& form, ControlKind kind);

/// Links a control with its window and gives that the control's caption, enabling and visibility.
void attachControl(Control& control, Control::Native* native);
/// Drops the natives of all controls of the form.
void detachControls(const Form& form);

// --- made by the kinds of window ---------------------------------------------------------------------------
/// The main window and its controls. Null when the system refuses.
[[nodiscard]] HWND createMainWindow(Form& form);
/// A form laid out by a dialog resource, and its controls. Null when there is no such resource.
[[nodiscard]] HWND createDialog(Form& form);
/// Carries out WM_COMMAND and WM_NOTIFY of a form's controls.
void controlCommand(const Form& form, HWND window, int id, int code);
void controlNotify(const Form& form, const NMHDR& header);

// --- modal windows -----------------------------------------------------------------------------------------
/// From now on this form alone answers. The end comes when it is destroyed.
void beginModal(Form& form);
void endModal(const Form& form);
/// Counts message boxes, under which no form answers.
void boxOpened();
void boxClosed();
/// Before a window goes: the system would take the message boxes that it owns along, unread and unanswered.
/// They become the main window's.
void keepBoxesOf(HWND owner);
/// Whether a loop of the system's own runs: that of a menu, a message box, a dragged scroll bar. The messages
/// that it waits for are its own to take.
[[nodiscard]] bool systemLoopRuns();

/// Gives the form's window this title: its caption, or the application's title while it is minimised.
void showTitle(const Form& form);
[[nodiscard]] const std::string& applicationTitle();

}  // namespace win32
}  // namespace qxterm
