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

bool boxIsOpen() { return openBoxes > 0; }

}  // namespace qxterm::win32
