#include "platform/win32/message_window.h"

#include <vector>

#include "platform/run_time_error.h"
#include "platform/win32/guarded.h"
#include "platform/win32/native.h"

namespace qxterm::win32 {
namespace {

constexpr const char* className = "QxtermApplication";

struct Subscription {
    UINT first;
    UINT last;
    MessageHandler handler;
};

std::vector<Subscription>& subscriptions() {
    static std::vector<Subscription> all;
    return all;
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    bool handled = false;
    // A handler may subscribe further ones.
    for (std::size_t n = 0; n < subscriptions().size(); ++n) {
        const Subscription one = subscriptions()[n];
        if (message < one.first || message > one.last) continue;
        one.handler(message, wParam, lParam);
        handled = true;
    }
    return handled ? 0 : DefWindowProcA(window, message, wParam, lParam);
}

HWND create() {
    WNDCLASSA description{};
    description.lpfnWndProc = Guarded<windowProcedure>::call;
    description.hInstance = instance();
    description.lpszClassName = className;
    RegisterClassA(&description);
    HWND const window = CreateWindowExA(WS_EX_TOOLWINDOW, className, "", WS_POPUP, 0, 0, 0, 0, nullptr,
                                        nullptr, instance(), nullptr);
    // Timers, sockets and serial lines tell of themselves through it.
    if (window == nullptr) throw RunTimeError{errors::outOfMemory};
    return window;
}

}  // namespace

HWND messageWindow() {
    static HWND const window = create();
    return window;
}

void handleMessages(UINT first, UINT last, MessageHandler handler) {
    subscriptions().push_back({first, last, handler});
}

}  // namespace qxterm::win32
