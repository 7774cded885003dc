#include "common/win32/console.h"

#include <algorithm>

#include "common/win32/system.h"

namespace zpt {
namespace {

constexpr std::size_t longestPath = 32768;

}  // namespace

void hardenProcess() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryA("");
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

void complain(const char* helper, std::string_view text) {
    constexpr std::size_t longestText = 1000;
    const std::string line =
        std::string{helper} + ": " + std::string{text.substr(0, std::min(text.size(), longestText))} + "\r\n";
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written,
              nullptr);
}

std::vector<std::string_view> argumentsOf(int count, char** values) {
    return {values + std::min(count, 1), values + count};
}

std::string ownFolder() {
    std::string path(longestPath, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of('\\') + 1);  // 0 without any backslash, and without a path
    return path;
}

std::string systemFolder() {
    std::string path(longestPath, '\0');
    path.resize(GetSystemDirectoryA(path.data(), static_cast<UINT>(path.size())));
    if (!path.empty()) path += '\\';
    return path;
}

}  // namespace zpt
