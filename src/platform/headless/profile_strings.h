#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qxterm::headless {

/// One section of "qxterm.ini", names in the spelling of the first write, everything in the order of the
/// first write.
struct IniSection {
    std::string name;
    std::vector<std::pair<std::string, std::string>> values;
};

/// "qxterm.ini", which is empty after a reset and lives in memory.
[[nodiscard]] const std::vector<IniSection>& ini();
/// Puts a value into the file without a record, as an editor would.
void putIni(std::string_view section, std::string_view key, std::string_view value);

/// The user's language code, "enu" after a reset.
void setLanguage(std::string_view code);

void resetProfileStrings();

}  // namespace qxterm::headless
