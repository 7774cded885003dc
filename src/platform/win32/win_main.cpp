#include "app/main.h"
#include "platform/event_loop.h"
#include "platform/win32/private_font.h"
#include "platform/win32/system.h"

namespace {

/// Libraries come from the system's folder alone, never from the current one or the program's. Runs before
/// all other code of the program: that loads Windows' libraries with its first call of them.
[[gnu::constructor(101)]] void hardenLibrarySearch() {
    SetDllDirectoryA("");
    HMODULE const kernel = GetModuleHandleA("kernel32.dll");
    FARPROC const routine = kernel != nullptr ? GetProcAddress(kernel, "SetDefaultDllDirectories") : nullptr;
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    const auto setDirectories = reinterpret_cast<SetDirectories>(reinterpret_cast<void*>(routine));
    if (setDirectories != nullptr) setDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    // Wine's libraries load this one when they first draw with it, and look for it beside the program all the
    // same. What is loaded already is not looked for.
    LoadLibraryExA("msimg32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

void startControls() {
    INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES};
    InitCommonControlsEx(&wanted);
}

/// The socket library, for as long as this object lives.
class Sockets {
public:
    Sockets() {
        WSADATA details{};
        WSAStartup(MAKEWORD(2, 2), &details);
    }
    Sockets(const Sockets&) = delete;
    Sockets& operator=(const Sockets&) = delete;
    ~Sockets() { WSACleanup(); }
};

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*before*/, LPSTR /*line*/, int /*show*/) {
    SetErrorMode(SEM_FAILCRITICALERRORS);
    HeapSetInformation(nullptr, HeapEnableTerminationOnCorruption, nullptr, 0);
    startControls();
    const Sockets sockets;
    const qxterm::win32::PrivateFont font;
    qxterm::main();
    qxterm::eventLoop::run();
    return 0;
}
