#pragma once

#include <optional>
#include <string>

#include "platform/win32/handle.h"

namespace qxterm::win32 {

/// Whether there is such a file; a folder is none.
[[nodiscard]] inline bool fileExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// The file, or nothing when it cannot be read or is longer than so many bytes.
[[nodiscard]] inline std::optional<std::string> wholeFile(const std::string& path, std::size_t longest) {
    const KernelHandle file = zpt::validHandle(CreateFileA(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file || GetFileSizeEx(file.get(), &size) == 0) return std::nullopt;
    if (size.QuadPart > static_cast<LONGLONG>(longest)) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(bytes.size());
    if (ReadFile(file.get(), bytes.data(), wanted, &count, nullptr) == 0 || count != wanted)
        return std::nullopt;
    return bytes;
}

/// Whether the file can be opened for reading at this moment.
[[nodiscard]] inline bool canBeRead(const std::string& path) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return static_cast<bool>(zpt::validHandle(CreateFileA(path.c_str(), GENERIC_READ, share, nullptr,
                                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

}  // namespace qxterm::win32
