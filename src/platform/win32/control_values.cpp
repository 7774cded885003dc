#include <cmath>
#include <string>

#include "platform/backend.h"
#include "platform/win32/native.h"

namespace qxterm {
namespace win32 {
namespace {

/// The text stands in the window before onChange is raised; what the box announces meanwhile is not the
/// user's.
class FillingText {
public:
    explicit FillingText(Control::Native& native) : native_{native} { native_.fillingText = true; }
    FillingText(const FillingText&) = delete;
    FillingText& operator=(const FillingText&) = delete;
    ~FillingText() { native_.fillingText = false; }

private:
    Control::Native& native_;
};

/// The messages that a list box and a combo box have under different numbers.
struct ListMessages {
    UINT clear;
    UINT add;
    UINT choose;
};

ListMessages messagesOf(const Control& list) {
    if (list.kind() == ControlKind::comboBox) return {CB_RESETCONTENT, CB_ADDSTRING, CB_SETCURSEL};
    return {LB_RESETCONTENT, LB_ADDSTRING, LB_SETCURSEL};
}

/// The tabs alone: of the page below them only its upper edge.
void fitToTabs(HWND strip) {
    RECT tab{};
    RECT area{};
    if (SendMessageA(strip, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab)) == 0) return;
    GetClientRect(strip, &area);
    SetWindowPos(strip, nullptr, 0, 0, area.right, tab.bottom + 2,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace
}  // namespace win32

using namespace win32;

void backend::valueChanged(Control& control, bool value) {
    SendMessageA(control.native->window, BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
}

void backend::textChanged(TextBox& box) {
    const FillingText filling{*box.native};
    SetWindowTextA(box.native->window, box.text().c_str());
}

void backend::textFontChanged(TextBox& box, std::string_view face, float points) {
    constexpr int pointsPerInch = 72;
    HWND const window = box.native->window;
    Font font;
    if (points > 0) {
        const ScreenDc screen;
        const auto dots = static_cast<float>(GetDeviceCaps(screen.get(), LOGPIXELSY));
        const std::string name{face};
        font = Font{CreateFontA(-static_cast<int>(std::lround(points * dots / pointsPerInch)), 0, 0, 0,
                                FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, name.c_str())};
    }
    const LRESULT dialogFont = SendMessageA(windowOf(box.form()), WM_GETFONT, 0, 0);
    const WPARAM wanted = font ? reinterpret_cast<WPARAM>(font.get()) : static_cast<WPARAM>(dialogFont);
    SendMessageA(window, WM_SETFONT, wanted, TRUE);
    box.native->font = std::move(font);  // the one before goes only when it is not in use any more
}

void backend::itemsChanged(ItemsControl& list) {
    HWND const window = list.native->window;
    const ListMessages messages = messagesOf(list);
    SendMessageA(window, WM_SETREDRAW, FALSE, 0);
    SendMessageA(window, messages.clear, 0, 0);
    for (const std::string& item : list.items()) {
        SendMessageA(window, messages.add, 0, reinterpret_cast<LPARAM>(item.c_str()));
    }
    SendMessageA(window, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window, nullptr, TRUE);
    chosenChanged(list);
}

void backend::chosenChanged(ItemsControl& list) {
    const auto index = static_cast<WPARAM>(static_cast<INT_PTR>(list.listIndex()));
    SendMessageA(list.native->window, messagesOf(list).choose, index, 0);
}

void backend::tabsChanged(TabStrip& strip) {
    HWND const window = strip.native->window;
    const auto shown = static_cast<std::size_t>(SendMessageA(window, TCM_GETITEMCOUNT, 0, 0));
    if (shown != strip.tabs().size()) {
        SendMessageA(window, TCM_DELETEALLITEMS, 0, 0);
        for (std::size_t n = 0; n < strip.tabs().size(); ++n) {
            std::string caption = strip.tabs()[n];
            TCITEMA item{};
            item.mask = TCIF_TEXT;
            item.pszText = caption.data();
            SendMessageA(window, TCM_INSERTITEMA, n, reinterpret_cast<LPARAM>(&item));
        }
        fitToTabs(window);
    }
    SendMessageA(window, TCM_SETCURSEL, static_cast<WPARAM>(strip.tab()), 0);
}

}  // namespace qxterm
