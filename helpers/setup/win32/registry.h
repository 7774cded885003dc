#pragma once

#include <optional>
#include <string>

#include "common/win32/system.h"

namespace setup {

/// A value of the registry as bytes or as text, if it is there. Texts are in the system's code page.
[[nodiscard]] std::optional<std::string> registryBytes(HKEY root, const char* key, const char* value);
[[nodiscard]] std::optional<std::string> registryText(HKEY root, const char* key, const char* value);

/// The key below the current user's that the settings of qxterm.ini are mapped to, or an empty text when they
/// are not mapped to each user's own.
[[nodiscard]] std::string userSettingsKey();

}  // namespace setup
