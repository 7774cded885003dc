#pragma once

#include <cstdint>
#include <string>

namespace qxterm::help {

/// HTML Help commands.
inline constexpr std::int32_t displayTopic = 1;
inline constexpr std::int32_t helpContext = 15;
inline constexpr std::int32_t closeAll = 18;

/// Shows help of the file; context 0 where the command has none. HTML Help is loaded when it is first used;
/// when it or the file is missing, or the file cannot be read, a message box tells so. closeAll loads nothing
/// for it.
void show(const std::string& file, std::int32_t command, std::int32_t context);

/// What the box says when the file is missing.
[[nodiscard]] inline std::string missingFile(const std::string& file) {
    return "The help file cannot be found:\r\n" + file;
}

}  // namespace qxterm::help
