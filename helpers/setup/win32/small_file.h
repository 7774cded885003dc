#pragma once

#include <optional>
#include <string>

namespace setup {

/// Settings are never longer, in bytes.
inline constexpr unsigned longestSettings = 256 * 1024;

/// The whole file, if it can be read and is no longer than settings are.
[[nodiscard]] std::optional<std::string> readSmallFile(const std::wstring& path);

/// Puts the file in the place of the one that is there, in one step: nobody ever sees half of it.
[[nodiscard]] bool replaceFile(const std::wstring& path, const std::string& bytes);

/// qxterm.ini in the Windows folder, that of the machine also where users have folders of their own.
[[nodiscard]] std::wstring settingsFile();

}  // namespace setup
