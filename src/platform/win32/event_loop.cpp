#include "platform/event_loop.h"

#include <algorithm>

#include "platform/win32/dialog.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/native.h"

namespace qxterm {
namespace win32 {
namespace {

bool programEnding = false;
/// When doEvents looked at the queue last.
ULONGLONG lastTurn = 0;
/// Since when the longest time between two such looks is kept.
ULONGLONG watchStart = 0;
ULONGLONG longestGap = 0;

ULONGLONG gapUntil(ULONGLONG now) { return now - std::max(lastTurn, watchStart); }

/// Notes that the queue is looked at now. False when this tick of the clock has seen a look already.
bool beginTurn() {
    const ULONGLONG now = GetTickCount64();
    if (now == lastTurn) return false;
    longestGap = std::max(longestGap, gapUntil(now));
    lastTurn = now;
    return true;
}

bool isKeyMessage(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

/// Keys belong to the main window itself, whichever of its controls was clicked last.
void sendKeysToMain(MSG& message, HWND main) {
    if (isKeyMessage(message.message) && IsChild(main, message.hwnd) != 0) message.hwnd = main;
}

void returnFocusToMain(UINT message, HWND main) {
    if (message != WM_LBUTTONUP) return;
    HWND const focus = GetFocus();
    if (focus != nullptr && IsChild(main, focus) != 0) SetFocus(main);
}

bool dialogTakes(MSG& message) {
    HWND const root = GetAncestor(message.hwnd, GA_ROOT);
    const Form* form = root != nullptr ? formOf(root) : nullptr;
    if (form == nullptr || form->kind() == FormKind::mainWindow) return false;
    return turnTab(*form, message) || IsDialogMessageA(root, &message) != 0;
}

void dispatch(MSG& message) {
    HWND const main = mainWindow();
    if (main != nullptr) sendKeysToMain(message, main);
    if (message.hwnd != nullptr && dialogTakes(message)) return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
    if (main != nullptr && main == mainWindow()) returnFocusToMain(message.message, main);
}

}  // namespace

void endLoop() { programEnding = true; }

void startYieldWatch() {
    watchStart = GetTickCount64();
    longestGap = 0;
}

std::uint64_t longestWithoutYield() { return std::max(longestGap, gapUntil(GetTickCount64())); }

void waitAndDispatch() {
    MSG message{};
    const BOOL got = GetMessageA(&message, nullptr, 0, 0);
    if (got == 0 || got == -1) {
        programEnding = true;
        return;
    }
    dispatch(message);
}

}  // namespace win32

namespace eventLoop {

void run() {
    while (!ending() && !win32::loadedForms().empty()) win32::waitAndDispatch();
}

void doEvents() {
    // The interpreter yields after every line feed: looking at the queue more often than the clock ticks
    // would only cost.
    if (!win32::beginTurn()) return;
    MSG message{};
    while (!ending() && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) {
            win32::endLoop();
            return;
        }
        win32::dispatch(message);
    }
}

void sleep(std::int32_t milliseconds) {
    if (milliseconds > 0) Sleep(static_cast<DWORD>(milliseconds));
}

bool ending() { return win32::programEnding; }

}  // namespace eventLoop
}  // namespace qxterm
