#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event.h"
#include "platform/geometry.h"

namespace qxterm {

class Control;

enum class FormKind : std::uint8_t {
    /// Caption, menu bar (resource), no sizing by the mouse; the program ends when it is unloaded.
    mainWindow,
    dialog,   ///< laid out by a dialog resource
    picture,  ///< no caption bar; sized by its own load routine (splash and About)
};

/// Shift-state mask of key and mouse events.
namespace shiftState {
inline constexpr std::int16_t shift = 1;
inline constexpr std::int16_t control = 2;
inline constexpr std::int16_t alt = 4;
}  // namespace shiftState

/// Why a window is asked to close.
enum class UnloadReason : std::int16_t { formControlMenu = 0, formCode = 1, windowsEnding = 2 };

/// A window of the program. Forms are constant-initialised program-wide objects; the native window exists
/// between load and unload. Controls add themselves to their form when they are constructed.
class Form {
public:
    /// name: as in the event handlers; resource: number of the dialog or menu resource; designed: the caption
    /// that the form has each time it loads, before its load routine runs.
    constexpr Form(const char* name, FormKind kind, int resource, const char* designed)
        : name_{name}, designed_{designed}, kind_{kind}, resource_{resource} {}
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    // --- life ----------------------------------------------------------------------------------------------
    /// Creates the window, hidden, gives form and controls their designed state and raises onLoad. Nothing
    /// when loaded.
    void load();
    /// Loads when needed and shows the window without waiting. Unloaded when it cannot be shown.
    void show();
    /// Loads when needed, shows the window on top of the others, which are disabled, and runs a nested event
    /// loop until the form is unloaded. Returns at once when the load routine has unloaded the form, and does
    /// nothing once the program is ending. prepare: run behind the loading. When that or the showing fails
    /// the form is unloaded, and the failure passes on.
    void showModal(void (*prepare)() = nullptr);
    /// Raises onQueryUnload; unless that cancels, raises onUnload and destroys the window. Nothing when not
    /// loaded. Returns false when cancelled.
    bool unload(UnloadReason reason = UnloadReason::formCode);
    [[nodiscard]] bool loaded() const { return loaded_; }
    /// True while unload runs, and with it the questions that its events ask.
    [[nodiscard]] bool unloading() const { return unloading_; }
    [[nodiscard]] bool visible() const { return visible_; }

    // --- properties ----------------------------------------------------------------------------------------
    [[nodiscard]] const char* name() const { return name_; }
    [[nodiscard]] FormKind kind() const { return kind_; }
    [[nodiscard]] int resource() const { return resource_; }
    [[nodiscard]] std::string caption() const;
    void setCaption(std::string_view text);
    /// Outer size and place in twips.
    [[nodiscard]] TwipsRect place() const;
    void move(const TwipsRect& place);
    /// Sets the outer size so that the client area (below the menu bar) gets this size in twips; the place
    /// stays.
    void setClientSize(std::int32_t width, std::int32_t height);
    /// Left and top of the normal (not minimised or maximised) position, in pixels; width and height are not
    /// set.
    [[nodiscard]] PixelRect normalPosition() const;
    /// Gives the form itself the keyboard.
    void setFocus();
    /// The controls in the order in which they were constructed, linked by Control::next.
    [[nodiscard]] Control* firstControl() const { return controls_; }
    /// The control with this name (and index in its control array, or -1), or null.
    [[nodiscard]] Control* find(std::string_view name, int index = -1) const;

    // --- events --------------------------------------------------------------------------------------------
    Event<> onLoad, onActivate, onDeactivate, onGotFocus, onUnload;
    Event<bool&, UnloadReason> onQueryUnload;
    /// Keys reach the form before any control. Virtual-key code and shift mask; character code 0 to 255.
    Event<std::int16_t, std::int16_t> onKeyDown;
    Event<std::int16_t> onKeyPress;
    /// mbResize, main window only: window messages 6 (activate; parameter 0, 1, 2) while the hook is
    /// attached.
    Event<std::int16_t> onActivateMessage;

    /// Attaches or detaches the window-message hook of the main window: it hands activation to
    /// onActivateMessage, keeps the sizing borders from sizing and holds the window at its size.
    void attachMessageHook(bool attached);

    [[nodiscard]] bool messageHookAttached() const { return hooked_; }

    struct Native;
    Native* native = nullptr;  ///< the platform's own record of the window; null while the form is not loaded

private:
    friend class Control;

    const char* name_;
    const char* designed_;
    FormKind kind_;
    int resource_;
    bool loaded_ = false;
    bool visible_ = false;
    bool hooked_ = false;
    bool unloading_ = false;
    Control* controls_ = nullptr;
    std::unique_ptr<std::string> caption_;  ///< null: the designed one
};

/// Places the form in the middle of the screen: top = (screen height - form height) / 2, left likewise, in
/// twips.
void Glb_CentreForm(Form& form);

/// The application title, shown on the task bar.
void setApplicationTitle(std::string_view title);

/// The forms that are loaded and visible, the topmost last.
[[nodiscard]] const std::vector<Form*>& visibleForms();

}  // namespace qxterm
