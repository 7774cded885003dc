#include "platform/profile_strings.h"

#include <array>

#include "platform/win32/system.h"

namespace qxterm {
namespace {

/// Without a folder: the system looks in its own, or where the user's settings are mapped to.
constexpr const char* fileName = "qxterm.ini";

using Buffer = std::array<char, profileBufferSize>;

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
