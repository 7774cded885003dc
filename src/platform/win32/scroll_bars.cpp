#include "platform/win32/scroll_bars.h"

#include <algorithm>

#include "platform/backend.h"
#include "platform/win32/message_window.h"
#include "platform/win32/native.h"

namespace qxterm {
namespace win32 {
namespace {

struct ScrollBarNative : Control::Native {
    using Native::Native;
    bool waiting = false;  ///< the native bar has to be told when the queue gets to it
    bool told = false;
    int minimum = 0;
    int maximum = 0;
    int page = 0;
    int value = 0;
};

ScrollBarNative& nativeOf(ScrollBar& bar) { return static_cast<ScrollBarNative&>(*bar.native); }

void tell(ScrollBar& bar) {
    ScrollBarNative& native = nativeOf(bar);
    native.waiting = false;
    if (!bar.seen()) return;  // told when it is shown
    const int page = std::max<int>(bar.largeChange(), 1);
    const bool same = native.told && native.minimum == bar.minimum() && native.maximum == bar.maximum() &&
                      native.page == page && native.value == bar.value();
    if (same) return;
    native.told = true;
    native.minimum = bar.minimum();
    native.maximum = bar.maximum();
    native.page = page;
    native.value = bar.value();
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMin = native.minimum;
    // The bar's own range covers the page that stands at its last position, too.
    info.nMax = native.maximum + page - 1;
    info.nPage = static_cast<UINT>(page);
    info.nPos = native.value;
    SetScrollInfo(native.window, SB_CTL, &info, TRUE);
}

void tellAll(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    for (const Form* form : loadedForms()) {
        for (Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (control->kind() != ControlKind::scrollBar || control->native == nullptr) continue;
            auto& bar = static_cast<ScrollBar&>(*control);
            if (nativeOf(bar).waiting) tell(bar);
        }
    }
}

int trackPosition(HWND window) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(window, SB_CTL, &info);
    return info.nTrackPos;
}

void moveTo(ScrollBar& bar, int value, bool dragging) {
    bar.userMoved(static_cast<std::int16_t>(std::clamp<int>(value, bar.minimum(), bar.maximum())), dragging);
}

}  // namespace

Control::Native* createScrollBar(ScrollBar& bar, HWND parent) {
    static const bool subscribed = (handleMessages(wmScrollBars, wmScrollBars, tellAll), true);
    (void)subscribed;
    HWND const window =
        CreateWindowExA(0, "SCROLLBAR", "Scrollback", WS_CHILD | WS_CLIPSIBLINGS | SBS_VERT, 0, 0,
                        GetSystemMetrics(SM_CXVSCROLL), 0, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(bar.id())), instance(), nullptr);
    return new ScrollBarNative{window};
}

void scrollByUser(const Form& form, HWND window, int code) {
    Control* const control = controlOf(form, window);
    if (control == nullptr || control->kind() != ControlKind::scrollBar) return;
    auto& bar = static_cast<ScrollBar&>(*control);
    switch (code) {
        case SB_LINEUP: moveTo(bar, bar.value() - bar.smallChange(), false); break;
        case SB_LINEDOWN: moveTo(bar, bar.value() + bar.smallChange(), false); break;
        case SB_PAGEUP: moveTo(bar, bar.value() - bar.largeChange(), false); break;
        case SB_PAGEDOWN: moveTo(bar, bar.value() + bar.largeChange(), false); break;
        case SB_TOP: moveTo(bar, bar.minimum(), false); break;
        case SB_BOTTOM: moveTo(bar, bar.maximum(), false); break;
        case SB_THUMBTRACK: moveTo(bar, trackPosition(window), true); break;
        case SB_THUMBPOSITION: moveTo(bar, trackPosition(window), false); break;
        default: break;
    }
}

}  // namespace win32

void backend::scrollBarChanged(ScrollBar& bar) {
    win32::ScrollBarNative& native = win32::nativeOf(bar);
    if (native.waiting) return;
    native.waiting = PostMessageA(win32::messageWindow(), win32::wmScrollBars, 0, 0) != 0;
    if (!native.waiting) win32::tell(bar);
}

}  // namespace qxterm
