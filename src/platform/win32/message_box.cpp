#include "platform/message_box.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>

#include "platform/event_loop.h"
#include "platform/win32/native.h"

namespace qxterm {
namespace {

static_assert(static_cast<UINT>(Buttons::yesNoCancel) == MB_YESNOCANCEL &&
              static_cast<UINT>(Buttons::retryCancel) == MB_RETRYCANCEL &&
              static_cast<UINT>(Icon::information) == MB_ICONINFORMATION &&
              static_cast<int>(Answer::cancel) == IDCANCEL && static_cast<int>(Answer::no) == IDNO);

/// What a box means that was closed without an answer, with the window under it for example.
Answer refusal(Buttons buttons) {
    switch (buttons) {
        case Buttons::ok: return Answer::ok;
        case Buttons::yesNo: return Answer::no;
        case Buttons::okCancel:
        case Buttons::yesNoCancel:
        case Buttons::retryCancel: break;
    }
    return Answer::cancel;
}

HWND topmostWindow() {
    const std::vector<Form*>& shown = visibleForms();
    if (shown.empty()) return nullptr;
    HWND const window = win32::windowOf(*shown.back());
    // A box that is open already stays below the next one.
    HWND const popup = window != nullptr ? GetLastActivePopup(window) : nullptr;
    return popup != nullptr && IsWindowVisible(popup) != 0 ? popup : window;
}

/// A text for the system. Without memory for a copy it ends where the reserve does, which is longer than
/// most.
class Text {
public:
    explicit Text(std::string_view text) {
        try {
            copy_ = text;
            shown_ = copy_.c_str();
        } catch (const std::bad_alloc&) {
            const std::size_t length = std::min(text.size(), reserve_.size() - 1);
            std::copy_n(text.begin(), length, reserve_.begin());
            shown_ = reserve_.data();
        }
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() = default;
    [[nodiscard]] const char* get() const { return shown_; }

private:
    std::string copy_;
    std::array<char, 256> reserve_{};
    const char* shown_;
};

}  // namespace

Answer messageBox(std::string_view text, std::string_view title, Buttons buttons, Icon icon) {
    if (eventLoop::ending()) return refusal(buttons);
    HWND const owner = topmostWindow();
    const UINT kind =
        static_cast<UINT>(buttons) | static_cast<UINT>(icon) | (owner == nullptr ? MB_TASKMODAL : 0U);
    const Text textCopy{text};
    const Text titleCopy{title};
    win32::boxOpened();
    const int pressed = MessageBoxA(owner, textCopy.get(), titleCopy.get(), kind);
    win32::boxClosed();
    // The system would have activated the owner.
    if (owner != nullptr && IsWindow(owner) == 0) SetActiveWindow(topmostWindow());
    // Not every system says OK when Escape closes a box that has nothing else.
    return pressed == 0 || buttons == Buttons::ok ? refusal(buttons) : static_cast<Answer>(pressed);
}

}  // namespace qxterm
