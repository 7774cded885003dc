#include "setup/win32/registry.h"

namespace setup {
namespace {

constexpr const char* mappingKey =
    R"(SOFTWARE\Microsoft\Windows NT\CurrentVersion\IniFileMapping\qxterm.ini)";

std::optional<std::string> read(HKEY root, const char* key, const char* value, DWORD types) {
    DWORD size = 0;
    if (RegGetValueA(root, key, value, types, nullptr, nullptr, &size) != ERROR_SUCCESS) return std::nullopt;
    std::string data(size, '\0');
    if (RegGetValueA(root, key, value, types, nullptr, data.data(), &size) != ERROR_SUCCESS)
        return std::nullopt;
    data.resize(size);
    return data;
}

}  // namespace

std::optional<std::string> registryBytes(HKEY root, const char* key, const char* value) {
    return read(root, key, value, RRF_RT_REG_BINARY);
}

std::optional<std::string> registryText(HKEY root, const char* key, const char* value) {
    std::optional<std::string> text = read(root, key, value, RRF_RT_REG_SZ);
    if (text) text->resize(text->find('\0') == std::string::npos ? text->size() : text->find('\0'));
    return text;
}

std::string userSettingsKey() {
    constexpr std::string_view ofUser = "USR:";
    const std::string mapping = registryText(HKEY_LOCAL_MACHINE, mappingKey, nullptr).value_or("");
    // In front of it may stand "!", "#" and "@", which change how Windows reads and writes the file beside
    // it.
    const std::size_t start = mapping.find_first_not_of("!#@");
    if (start == std::string::npos || mapping.compare(start, ofUser.size(), ofUser) != 0) return {};
    return mapping.substr(start + ofUser.size());
}

}  // namespace setup
