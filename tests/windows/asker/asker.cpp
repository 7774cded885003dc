// Asks the program's main window for a sign of life again and again, and prints how long it took to answer.
//
//   asker MILLISECONDS
//
// One line for each question: microseconds until the window answered, and until a window of this process did
// that has nothing else to do: what the machine and the system take. -1 for no answer within ten seconds. It
// ends when there is no such window any more.

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* mainWindowClass = "QxtermMain";
constexpr UINT longestAnswer = 10000;  // milliseconds

/// Microseconds, or -1.
long long asked(HWND window) {
    LARGE_INTEGER frequency{};
    LARGE_INTEGER before{};
    LARGE_INTEGER after{};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&before);
    DWORD_PTR ignored = 0;
    if (SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, longestAnswer, &ignored) == 0) return -1;
    QueryPerformanceCounter(&after);
    return (after.QuadPart - before.QuadPart) * 1000000 / frequency.QuadPart;
}

/// A thread with a window that nobody sees; tells its creator the window through `made`.
DWORD WINAPI answer(void* made) {
    *static_cast<HWND*>(made) =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const int pause = count > 1 ? std::atoi(arguments[1]) : 0;
    if (pause <= 0) {
        std::fputs("Usage: asker MILLISECONDS\n", stderr);
        return 2;
    }
    // Written by the thread before it answers anything.
    static HWND volatile own = nullptr;
    if (CreateThread(nullptr, 0, answer, const_cast<HWND*>(&own), 0, nullptr) == nullptr) return 1;
    while (own == nullptr) Sleep(1);
    HWND const window = FindWindowA(mainWindowClass, nullptr);
    if (window == nullptr) return 1;
    while (IsWindow(window) != 0) {
        std::printf("%lld %lld\n", asked(window), asked(own));
        std::fflush(stdout);
        Sleep(static_cast<DWORD>(pause));
    }
    return 0;
}
