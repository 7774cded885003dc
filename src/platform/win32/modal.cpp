#include <algorithm>

#include "platform/win32/frames.h"
#include "platform/win32/native.h"

namespace qxterm::win32 {
namespace {

std::vector<Form*>& modalForms() {
    static std::vector<Form*> open;
    return open;
}

int openBoxes = 0;

/// Under a message box no form answers, under a modal form that form alone.
void applyModality() {
    const Form* top = modalForms().empty() ? nullptr : modalForms().back();
    for (const Form* form : loadedForms()) {
        HWND const window = windowOf(*form);
        if (window == nullptr) continue;
        const bool answers = openBoxes == 0 && (top == nullptr || top == form);
        if ((IsWindowEnabled(window) != 0) != answers) EnableWindow(window, answers);
    }
}

/// Gives a window that belongs to the owner to the main window.
BOOL CALLBACK giveToMainWindow(HWND window, LPARAM owner) {
    if (GetWindow(window, GW_OWNER) == reinterpret_cast<HWND>(owner))
        SetWindowLongPtrA(window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(mainWindow()));
    return TRUE;
}

}  // namespace

void beginModal(Form& form) {
    showPictures();
    modalForms().push_back(&form);
    applyModality();
}

void endModal(const Form& form) {
    const auto at = std::find(modalForms().begin(), modalForms().end(), &form);
    if (at == modalForms().end()) return;
    modalForms().erase(at);
    // Before the window goes: the system activates another window of the program only if one is enabled.
    applyModality();
    HWND const window = windowOf(form);
    const Form* next = modalForms().empty() ? nullptr : modalForms().back();
    HWND const below = next != nullptr ? windowOf(*next) : mainWindow();
    if (below != nullptr && GetActiveWindow() == window) SetActiveWindow(below);
}

void boxOpened() {
    showPictures();
    ++openBoxes;
    applyModality();
}

void boxClosed() {
    --openBoxes;
    applyModality();
}

void keepBoxesOf(HWND owner) {
    if (openBoxes == 0 || owner == mainWindow()) return;
    EnumThreadWindows(GetCurrentThreadId(), giveToMainWindow, reinterpret_cast<LPARAM>(owner));
}

bool systemLoopRuns() {
    if (openBoxes > 0) return true;
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &thread) == 0) return false;
    constexpr DWORD modes = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
    return (thread.flags & modes) != 0 || thread.hwndCapture != nullptr;
}

}  // namespace qxterm::win32
