// What other programs and the system do to the program under test.
//
//   neighbour hold-clipboard SECONDS   opens the clipboard, prints "held", and lets go of it at the end
//   neighbour hold-file SECONDS FILE   has the file open so that nobody else can replace or rename it, prints
//                                      "held"
//   neighbour keep-file SECONDS FILE   has the file open so that nobody else can read it either, prints
//   "held" neighbour end-session              asks the main window whether the session may end, prints "yes"
//   or
//                                      "no", and tells it what became of that; "silent" without an answer
//   neighbour cover SECONDS            has a window in front of the main window, here and there, prints
//                                      "over"
//   neighbour texts TITLE              prints the texts in the visible windows with this title, one a line
//   neighbour press TITLE CAPTION      presses the button with this caption in the visible window with this
//                                      title
//   neighbour forge                    posts the messages that the program's windows send each other, with
//                                      addresses of nothing in them, and prints "forged"

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

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

/// share: what others may do meanwhile.
int holdFile(int seconds, const char* path, DWORD share) {
    HANDLE const file =
        CreateFileA(path, GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    say("held");
    Sleep(static_cast<DWORD>(seconds) * 1000);
    CloseHandle(file);
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

std::string textOf(HWND window) {
    std::array<char, 1000> text{};
    DWORD_PTR length = 0;
    SendMessageTimeoutA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_NORMAL,
                        longestAnswer, &length);
    return text.data();
}

/// The visible windows on the desktop with this title.
std::vector<HWND> windowsWith(const char* title) {
    std::vector<HWND> found;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, nullptr, title)) != nullptr) {
        if (IsWindowVisible(window)) found.push_back(window);
    }
    return found;
}

/// The visible controls of a window.
std::vector<HWND> controlsOf(HWND window) {
    std::vector<HWND> found;
    const WNDENUMPROC collect = [](HWND control, LPARAM list) -> BOOL {
        if (IsWindowVisible(control)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(control);
        return TRUE;
    };
    EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&found));
    return found;
}

int tellTexts(const char* title) {
    for (HWND const window : windowsWith(title)) {
        for (HWND const control : controlsOf(window)) {
            const std::string text = textOf(control);
            if (!text.empty()) say(text.c_str());
        }
    }
    return 0;
}

int press(const char* title, std::string_view caption) {
    for (HWND const window : windowsWith(title)) {
        for (HWND const control : controlsOf(window)) {
            if (textOf(control) != caption || IsWindowEnabled(control) == 0) continue;
            // What follows may be a window that stays: nobody waits for it here.
            PostMessageA(control, BM_CLICK, 0, 0);
            return say("pressed");
        }
    }
    return 1;
}

/// Every private message, what the sockets send, and timers that name a routine to be called.
void forgeAt(HWND window) {
    constexpr UINT privateMessages = 0x20;
    constexpr UINT socketMessages = 0x110;
    for (const LPARAM address : {LPARAM{0}, LPARAM{1}, LPARAM{0x12345678}, LPARAM{-1}}) {
        for (const WPARAM number : {WPARAM{0}, WPARAM{1}, WPARAM{0x1001}}) {
            for (UINT n = 0; n < socketMessages; ++n) {
                if (n < privateMessages || n >= 0x100) PostMessageA(window, WM_APP + n, number, address);
            }
            if (address != 1) PostMessageA(window, WM_TIMER, number, address);
        }
    }
}

int forge() {
    HWND const main = FindWindowA(mainWindowClass, nullptr);
    HWND const hidden = FindWindowA("QxtermApplication", nullptr);
    if (main == nullptr || hidden == nullptr) return 1;
    forgeAt(hidden);
    forgeAt(main);
    for (HWND const control : controlsOf(main)) forgeAt(control);
    std::array<char, 64> bytes{};
    COPYDATASTRUCT data{1, static_cast<DWORD>(bytes.size()), bytes.data()};
    DWORD_PTR ignored = 0;
    for (HWND const window : {hidden, main}) {
        SendMessageTimeoutA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL,
                            longestAnswer, &ignored);
    }
    return say("forged");
}

/// Moves a window about over the main window, parts of it and all of it.
int cover(int seconds) {
    HWND const below = FindWindowA(mainWindowClass, nullptr);
    if (below == nullptr) return 1;
    HWND const window = CreateWindowExA(WS_EX_TOPMOST | WS_EX_NOACTIVATE, "STATIC", "", WS_POPUP | WS_VISIBLE,
                                        0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    say("over");
    constexpr DWORD betweenMoves = 40;  // milliseconds
    const DWORD moves = static_cast<DWORD>(seconds) * 1000 / betweenMoves;
    for (DWORD n = 0; n < moves; ++n) {
        RECT place{};
        GetWindowRect(below, &place);
        const int width = place.right - place.left;
        const int height = place.bottom - place.top;
        const auto part = [n](int whole, int every) { return static_cast<int>(n) * every % whole; };
        if (n % 16 == 0) {
            SetWindowPos(window, HWND_TOPMOST, place.left, place.top, width, height, SWP_NOACTIVATE);
        } else {
            SetWindowPos(window, HWND_TOPMOST, place.left + part(width, 37), place.top + part(height, 23),
                         60 + part(width / 2, 53), 40 + part(height / 2, 31), SWP_NOACTIVATE);
        }
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageA(&message);
        Sleep(betweenMoves);
    }
    DestroyWindow(window);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view wish = count > 1 ? arguments[1] : "";
    if (wish == "hold-clipboard" && count > 2) return holdClipboard(std::atoi(arguments[2]));
    if (wish == "hold-file" && count > 3)
        return holdFile(std::atoi(arguments[2]), arguments[3], FILE_SHARE_READ);
    if (wish == "keep-file" && count > 3) return holdFile(std::atoi(arguments[2]), arguments[3], 0);
    if (wish == "cover" && count > 2) return cover(std::atoi(arguments[2]));
    if (wish == "texts" && count > 2) return tellTexts(arguments[2]);
    if (wish == "press" && count > 3) return press(arguments[2], arguments[3]);
    if (wish == "end-session") return endSession();
    if (wish == "forge") return forge();
    return 2;
}
