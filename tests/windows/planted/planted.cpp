// A library that somebody has put where a program might look for one of Windows'. When it is loaded it says
// so: a line with its own name and the program's is added to the file that QXTERM_PLANTED names. It calls
// kernel32 alone.

#include <windows.h>

#include <array>
#include <string>

namespace {

using Path = std::array<char, 1024>;

std::string fileOf(HMODULE module) {
    Path path{};
    return {path.data(), GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()))};
}

void report(HMODULE self) {
    Path file{};
    if (GetEnvironmentVariableA("QXTERM_PLANTED", file.data(), static_cast<DWORD>(file.size())) == 0) return;
    HANDLE const handle = CreateFileA(file.data(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const std::string line = fileOf(self) + " in " + fileOf(nullptr) + "\n";
    DWORD written = 0;
    WriteFile(handle, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(handle);
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) report(self);
    return TRUE;
}
