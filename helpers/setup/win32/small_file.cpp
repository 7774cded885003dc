#include "setup/win32/small_file.h"

#include <array>

#include "common/win32/handle.h"
#include "common/win32/system.h"

namespace setup {

std::optional<std::string> readSmallFile(const std::wstring& path) {
    const zpt::Handle file = zpt::validHandle(CreateFileW(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size) || size.QuadPart > longestSettings) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD done = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr))
        return std::nullopt;
    bytes.resize(done);
    return bytes;
}

bool replaceFile(const std::wstring& path, const std::string& bytes) {
    const std::wstring half = path + L".new";
    {
        const zpt::Handle file =
            zpt::validHandle(CreateFileW(half.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD done = 0;
        if (!file || !WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) ||
            done != bytes.size()) {
            return false;
        }
    }
    return MoveFileExW(half.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

std::wstring settingsFile() {
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return std::wstring{folder.data(), length} + L"\\qxterm.ini";
}

}  // namespace setup
