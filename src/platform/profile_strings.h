#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// Size of every read's buffer, in characters; one less can be used.
inline constexpr int profileBufferSize = 513;

/// Reads a value of "qxterm.ini" (GetPrivateProfileStringA): at most 512 characters, `fallback` when file,
/// section or key is missing. Not trimmed.
[[nodiscard]] std::string getPrivateProfileString(std::string_view section, std::string_view key,
                                                  std::string_view fallback);
/// The same value whole, up to 1 MiB, empty when it is missing: for what is written back and must lose
/// nothing.
[[nodiscard]] std::string getWholePrivateProfileString(std::string_view section, std::string_view key);
/// Writes a value of "qxterm.ini". A failure is not reported.
void writePrivateProfileString(std::string_view section, std::string_view key, std::string_view value);
/// The user's international settings (GetProfileStringA).
[[nodiscard]] std::string getProfileString(std::string_view section, std::string_view key,
                                           std::string_view fallback);

}  // namespace qxterm
