#include "platform/clipboard.h"

#include <cstring>

#include "platform/run_time_error.h"
#include "platform/win32/message_window.h"

namespace qxterm::clipboard {
namespace {

/// Another program may hold the clipboard for a moment: how often, and how long between, it is tried again.
constexpr int attempts = 25;
constexpr DWORD pause = 10;  // milliseconds

/// Holds the clipboard open for the life of this object.
class Opened {
public:
    Opened() {
        for (int n = 0; n < attempts && !open_; ++n) {
            if (n > 0) Sleep(pause);
            open_ = OpenClipboard(win32::messageWindow()) != 0;
        }
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() {
        if (open_) CloseClipboard();
    }
    [[nodiscard]] bool ok() const { return open_; }

private:
    bool open_ = false;
};

void require(const Opened& opened) {
    if (!opened.ok()) throw RunTimeError{errors::permissionDenied};
}

void emptyOpened() {
    if (EmptyClipboard() == 0) throw RunTimeError{errors::permissionDenied};
}

}  // namespace

std::string text() {
    const Opened opened;
    if (!opened.ok()) return {};
    HANDLE const memory = GetClipboardData(CF_TEXT);
    const auto* const data = memory != nullptr ? static_cast<const char*>(GlobalLock(memory)) : nullptr;
    if (data == nullptr) return {};
    std::string result{data, strnlen(data, GlobalSize(memory))};
    GlobalUnlock(memory);
    return result;
}

void setText(std::string_view text) {
    const Opened opened;
    require(opened);
    emptyOpened();
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    auto* const data = memory != nullptr ? static_cast<char*>(GlobalLock(memory)) : nullptr;
    if (data != nullptr) {
        std::memcpy(data, text.data(), text.size());
        data[text.size()] = '\0';
        GlobalUnlock(memory);
        // From here on the memory is the clipboard's, unless it refuses.
        if (SetClipboardData(CF_TEXT, memory) != nullptr) return;
    }
    if (memory != nullptr) GlobalFree(memory);
    throw RunTimeError{errors::outOfMemory};
}

void clear() {
    const Opened opened;
    require(opened);
    emptyOpened();
}

bool hasText() { return IsClipboardFormatAvailable(CF_TEXT) != 0; }
bool hasAnything() { return CountClipboardFormats() > 0; }

}  // namespace qxterm::clipboard
