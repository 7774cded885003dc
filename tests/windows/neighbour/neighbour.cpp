// What other programs and the system do to the program under test.
//
//   neighbour hold-clipboard SECONDS    opens the clipboard, prints "held", and lets go of it at the end
//   neighbour end-session               asks the main window whether the session may end, prints "yes" or
//   "no",
//                                       and tells it what became of that; "silent" when no answer came

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* mainWindowClass = "QxtermMain";
constexpr UINT longestAnswer = 60000;  // milliseconds

int say(const char* word) {
    std::puts(word);
    std::fflush(stdout);
    return 0;
}

int holdClipboard(int seconds) {
    if (OpenClipboard(nullptr) == 0) return 1;
    say("held");
    Sleep(static_cast<DWORD>(seconds) * 1000);
    CloseClipboard();
    return 0;
}

int endSession() {
    HWND const window = FindWindowA(mainWindowClass, nullptr);
    if (window == nullptr) return 1;
    DWORD_PTR may = 0;
    if (SendMessageTimeoutA(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, longestAnswer, &may) == 0) {
        return say("silent");
    }
    DWORD_PTR ignored = 0;
    SendMessageTimeoutA(window, WM_ENDSESSION, may, 0, SMTO_NORMAL, longestAnswer, &ignored);
    return say(may != 0 ? "yes" : "no");
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view wish = count > 1 ? arguments[1] : "";
    if (wish == "hold-clipboard" && count > 2) return holdClipboard(std::atoi(arguments[2]));
    if (wish == "end-session") return endSession();
    return 2;
}
