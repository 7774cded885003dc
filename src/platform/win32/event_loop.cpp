#include "platform/event_loop.h"

#include <utility>

#include "platform/win32/clock.h"
#include "platform/win32/dialog.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/frames.h"
#include "platform/win32/native.h"
#include "platform/win32/timers.h"

namespace qxterm {
namespace win32 {
namespace {

bool programEnding = false;
/// An interpreter in the middle of a block serves the queue.
bool yielding = false;
/// Work that the loop does while no message waits. Null while there is none.
bool (*idleWork)() = nullptr;

/// When the message queue was served last, in microseconds.
std::int64_t lastServed = 0;
/// An interpreter in the middle of a block looks at the queue no sooner than this after the last look: a look
/// costs as much as some thousand bytes of output, and what a message does is better done between two blocks.
constexpr std::int64_t longestUnserved = 25000;

bool isKeyMessage(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

/// Keys belong to the main window itself, whichever of its controls was clicked last.
void sendKeysToMain(MSG& message, HWND main) {
    if (isKeyMessage(message.message) && IsChild(main, message.hwnd) != 0) message.hwnd = main;
}

void returnFocusToMain(UINT message, HWND main) {
    if (message != WM_LBUTTONUP) return;
    HWND const focus = GetFocus();
    if (focus == nullptr || IsChild(main, focus) == 0) return;
    const Form* const form = formOf(main);
    const Control* const control = form != nullptr ? controlOf(*form, focus) : nullptr;
    if (control == nullptr || control->kind() != ControlKind::pictureBox) SetFocus(main);
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

/// What may open a menu, a dialog or a loop of the system's.
bool mayStartLoop(UINT message) {
    switch (message) {
        case WM_CLOSE:
        case WM_COMMAND:
        case WM_SYSCOMMAND:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: return true;
        default:
            return (message >= WM_NCLBUTTONDOWN && message <= WM_NCMBUTTONDBLCLK) ||
                   (message >= WM_SYSKEYDOWN && message <= WM_SYSDEADCHAR);
    }
}

/// Takes the next message that an interpreter in the middle of a block may carry out. Behind one that may
/// start a loop all wait for the block's end: the rest of the block, and all output behind it, would stand
/// for as long as the loop runs.
bool takeHarmless(MSG& message) {
    if (PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE) == 0 || mayStartLoop(message.message))
        return false;
    return PeekMessageA(&message, nullptr, message.message, message.message, PM_REMOVE) != 0;
}

/// False at the message that ends the program.
bool carryOut(MSG& message) {
    if (message.message == WM_QUIT) {
        programEnding = true;
        return false;
    }
    dispatch(message);
    return true;
}

}  // namespace

void endLoop() { programEnding = true; }

bool waitsForTheBlock(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!yielding || (message != WM_CLOSE && message != WM_SYSCOMMAND) || systemLoopRuns()) return false;
    return PostMessageA(window, message, wParam, lParam) != 0;
}

void setIdleWork(bool (*work)()) { idleWork = work; }

void waitAndDispatch() {
    MSG message{};
    lastServed = microseconds();
    if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) == 0) {
        startRefusedTimers();
        if (idleWork != nullptr && idleWork()) return;
        showPictures();
        if (GetMessageA(&message, nullptr, 0, 0) == -1) {
            programEnding = true;
            return;
        }
    }
    // In the loop of a modal form, which something in a block may have opened, nothing waits.
    const bool inBlock = std::exchange(yielding, false);
    (void)carryOut(message);
    yielding = inBlock;
}

}  // namespace win32

namespace eventLoop {

void run() {
    while (!ending() && !win32::loadedForms().empty()) win32::waitAndDispatch();
}

bool yieldDue() {
    // The clock's coarse tick is all that costs next to nothing.
    static ULONGLONG lastTick = 0;
    const ULONGLONG tick = GetTickCount64();
    if (tick == lastTick) return false;
    lastTick = tick;
    return win32::microseconds() - win32::lastServed >= win32::longestUnserved;
}

void doEvents() {
    win32::lastServed = win32::microseconds();
    // Its messages are served as soon as the block has ended.
    const bool left = win32::systemLoopRuns();
    MSG message{};
    win32::yielding = true;
    while (!left && !ending() && win32::takeHarmless(message)) {
        if (!win32::carryOut(message)) break;
    }
    win32::yielding = false;
    if (!ending()) win32::showPicturesIfDue(true);
}

void sleep(std::int32_t milliseconds) {
    if (milliseconds > 0) Sleep(static_cast<DWORD>(milliseconds));
}

bool ending() { return win32::programEnding; }

}  // namespace eventLoop
}  // namespace qxterm
