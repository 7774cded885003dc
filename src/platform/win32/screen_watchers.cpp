#include "platform/win32/screen_watchers.h"

#include <optional>

#include "platform/screen_reading.h"
#include "platform/win32/clock.h"
#include "platform/win32/message_window.h"
#include "platform/win32/picture_native.h"

namespace qxterm::win32 {
namespace {

constexpr std::int64_t microsecondsPerMillisecond = 1000;

ChangePacer pacer;
/// The window whose news wait for the timer; null when none do.
HWND newsOf = nullptr;

/// The caret, while the window has the keyboard.
struct Caret {
    Bitmap form;
    SIZE size{};
    std::optional<ScreenPlace> place;
};
std::optional<Caret> caret;

bool anybodyListens() {
    return IsWinEventHookInstalled(EVENT_OBJECT_VALUECHANGE) != 0 ||
           IsWinEventHookInstalled(EVENT_OBJECT_SELECTIONWITHIN) != 0;
}

std::int64_t milliseconds() { return microseconds() / microsecondsPerMillisecond; }

void announce(HWND window) {
    const ScreenChanges changes = pacer.look(screenReader.read(), milliseconds());
    for (int row = 0; row < pictureRows; ++row) {
        if (changes.rows[static_cast<std::size_t>(row)])
            NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, row + 1);
    }
    if (changes.selection) NotifyWinEvent(EVENT_OBJECT_SELECTIONWITHIN, window, OBJID_CLIENT, CHILDID_SELF);
}

void tick(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != timerNews) return;
    KillTimer(messageWindow(), timerNews);
    HWND const window = newsOf;
    newsOf = nullptr;
    if (window != nullptr && IsWindow(window) != 0 && anybodyListens()) announce(window);
}

void announceInTime(HWND window) {
    if (newsOf != nullptr) return;
    if (!anybodyListens()) {
        pacer.forget();
        return;
    }
    const std::int64_t wait = pacer.waitFrom(milliseconds());
    if (wait == 0) {
        announce(window);
        return;
    }
    static const bool subscribed = (handleMessages(WM_TIMER, WM_TIMER, tick), true);
    (void)subscribed;
    if (SetTimer(messageWindow(), timerNews, static_cast<UINT>(wait), nullptr) != 0) newsOf = window;
}

/// A caret of the cell's size. Its form is black: inverting with it changes no pixel, but the system counts
/// the caret as shown, and only such a one is followed by everybody.
void makeCaret(HWND window, const SIZE& size) {
    screenLostFocus();
    const ScreenDc screen;
    caret = Caret{Bitmap{CreateCompatibleBitmap(screen.get(), size.cx, size.cy)}, size, std::nullopt};
    {
        const MemoryDc memory{CreateCompatibleDC(screen.get())};
        const Selected selected{memory.get(), caret->form.get()};
        PatBlt(memory.get(), 0, 0, size.cx, size.cy, BLACKNESS);
    }
    CreateCaret(window, caret->form.get(), 0, 0);
    ShowCaret(window);
}

void moveCaret(const PictureBox& box) {
    if (!caret) return;
    HWND const window = box.native->window;
    const PictureState& state = stateOf(box);
    const SIZE cell{state.cellWidth, state.cellHeight};
    if (cell.cx != caret->size.cx || cell.cy != caret->size.cy) makeCaret(window, cell);
    const std::optional<ScreenPlace> place = screenReader.place();
    if (!place || place == caret->place) return;
    caret->place = place;
    SetCaretPos(place->column * cell.cx, place->row * cell.cy);
}

}  // namespace

void screenGotFocus(PictureBox& box) {
    const PictureState& state = stateOf(box);
    makeCaret(box.native->window, {state.cellWidth, state.cellHeight});
    moveCaret(box);
}

void screenLostFocus() {
    if (!caret) return;
    DestroyCaret();
    caret.reset();
}

void screenShown(PictureBox& box) {
    moveCaret(box);
    announceInTime(box.native->window);
}

}  // namespace qxterm::win32
