#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qxterm {

/// The known profiles; element n - 1 is name n. Written by readIniFile and writeUserProf.
extern std::vector<std::string> profileNames;
/// How many there are. Error 6 above 32767.
[[nodiscard]] std::int16_t profileCount();

inline constexpr std::size_t mruCount = 4;
/// Index of the Profile menu's entry in front of the first recent one.
inline constexpr std::int16_t recentMenuBase = 4;
/// The most recently used profiles, most recent first; element n - 1 is name n, empty where there is none.
/// Written by readIniFile and reOrderProf.
extern std::array<std::string, mruCount> mruNames;

/// Take over a list as it stands in the file: names with blanks between them.
void fillProfileNames(std::string_view names);
/// Likewise; only the first four count.
void fillMruNames(std::string_view names);

[[nodiscard]] bool knownProfile(std::string_view name);
/// Adds a name at the end of the known ones when it is not among them, and writes the key "Profiles".
void addProfileName(const std::string& name);

/// Moves a name to the front of the recent ones (the last is dropped for a new one), writes "order" and shows
/// the list in the menu. Does nothing when it is in front already.
void reOrderProf(const std::string& name);
/// Shows the recent names in the Profile menu; while a session is up they are disabled.
void setFiles();

}  // namespace qxterm
