#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What is done around the program by its installer: settings that are brought along, files in use.
namespace setup {

/// One section of an initialisation file: its name, and its keys with their values in the file's order.
struct IniSection {
    std::string name;
    std::vector<std::pair<std::string, std::string>> values;
};

/// The sections of an initialisation file, read as Windows reads one: blanks around names and values and one
/// pair of quotation marks around a value do not count, lines that begin with ";" are comments, and of two
/// sections or keys that differ in case alone the first one counts.
[[nodiscard]] std::vector<IniSection> readIni(std::string_view text);

/// The value of a key, or null. Names are compared without regard to case.
[[nodiscard]] const std::string* valueOf(const std::vector<IniSection>& sections, std::string_view section,
                                         std::string_view key);

/// The file `present` with what `brought` has and it lacks: its own sections and keys stay as they are, whole
/// profiles are added, and their names stand behind its own in the list of profiles. A profile that both have
/// stays that of `present`.
[[nodiscard]] std::string mergedProfiles(std::string_view present, std::string_view brought);

/// Whether the text can be a file of profiles: it has a list of profiles with a name in it.
[[nodiscard]] bool namesProfiles(std::string_view text);

}  // namespace setup
