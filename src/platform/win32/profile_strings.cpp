#include "platform/profile_strings.h"

#include <array>

#include "platform/win32/files.h"

namespace qxterm {
namespace {

/// Without a folder: the system looks in its own, or where the user's settings are mapped to.
constexpr const char* fileName = "qxterm.ini";

using Buffer = std::array<char, profileBufferSize>;

/// Where the file is unless the system maps it elsewhere; empty when that cannot be told.
std::string usualFile() {
    std::array<char, MAX_PATH> folder{};
    const UINT length = GetWindowsDirectoryA(folder.data(), static_cast<UINT>(folder.size()));
    if (length == 0 || length >= folder.size()) return {};
    return std::string{folder.data(), length} + '\\' + fileName;
}

/// The system writes all of the file behind a changed value anew. On a full disk it would end in the middle,
/// and the profiles behind that place would be gone.
bool roomToWrite() {
    constexpr ULONGLONG enough = 65536;
    static std::string file;
    if (file.empty()) file = usualFile();
    if (file.empty() || !win32::fileExists(file)) return true;
    const std::string folder = file.substr(0, file.find_last_of('\\') + 1);
    ULARGE_INTEGER room{};
    return GetDiskFreeSpaceExA(folder.c_str(), &room, nullptr, nullptr) == 0 || room.QuadPart >= enough;
}

/// Before a read. An empty value ends it at once; a read that fails leaves it.
constexpr char untouched = '\1';

std::string taken(const Buffer& buffer, DWORD length, std::string_view fallback) {
    if (length == 0 && buffer.front() == untouched) return std::string{fallback};
    return {buffer.data(), length};
}

}  // namespace

std::string getPrivateProfileString(std::string_view section, std::string_view key,
                                    std::string_view fallback) {
    Buffer buffer{untouched};
    const DWORD length = GetPrivateProfileStringA(std::string{section}.c_str(), std::string{key}.c_str(),
                                                  std::string{fallback}.c_str(), buffer.data(),
                                                  static_cast<DWORD>(buffer.size()), fileName);
    return taken(buffer, length, fallback);
}

std::string getWholePrivateProfileString(std::string_view section, std::string_view key) {
    constexpr std::size_t longest = std::size_t{1} << 20U;
    std::string value;
    for (std::size_t size = 4096;; size *= 2) {
        value.resize(size);
        const DWORD length = GetPrivateProfileStringA(std::string{section}.c_str(), std::string{key}.c_str(),
                                                      "", value.data(), static_cast<DWORD>(size), fileName);
        if (length + 1 < size || size >= longest) {
            value.resize(length);
            return value;
        }
    }
}

void writePrivateProfileString(std::string_view section, std::string_view key, std::string_view value) {
    if (!roomToWrite()) return;
    WritePrivateProfileStringA(std::string{section}.c_str(), std::string{key}.c_str(),
                               std::string{value}.c_str(), fileName);
}

std::string getProfileString(std::string_view section, std::string_view key, std::string_view fallback) {
    Buffer buffer{untouched};
    const DWORD length =
        GetProfileStringA(std::string{section}.c_str(), std::string{key}.c_str(),
                          std::string{fallback}.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()));
    return taken(buffer, length, fallback);
}

}  // namespace qxterm
