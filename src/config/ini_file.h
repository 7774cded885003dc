#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qxterm {

/// Saved place of the main window in twips, -1 -1 before it is read; a negative left means that none is
/// saved. Written by readIniFile.
extern std::int16_t g_iWindowLeft;
extern std::int16_t g_iWindowTop;
/// Seconds that a network or SSH connection may take. Written by readIniFile
/// and storeConnectTimeout.
extern std::int16_t g_iConnectTimeout;
/// First local port tried for the forward of an SSH session. Written by readPortForwardStart.
extern std::int32_t g_lPortForwardStart;

/// The file's section for the program as a whole.
inline constexpr const char* settingsSection = "Settings";

/// A value of the file: at most 512 characters are read, then blanks around them removed.
[[nodiscard]] std::string readSetting(std::string_view section, std::string_view key,
                                      std::string_view fallback);

/// Reads the section "Settings" into the profile lists and the values above, and clears g_bProfileChanged. A
/// value that is not a number (13) or too large (6) is reported, and the values behind it keep what they
/// were. Called by main.
void readIniFile();

/// Reads the start of the port range and writes it back, so that the key is in the file after the first run.
/// Error 13 or 6 when it is no 32-bit number; nothing is written then. Called by main and by the Options
/// dialog.
void readPortForwardStart();

/// The values above as they are before the file is read.
void resetIniValues();

/// Makes a time-out in seconds the one of all network and SSH connections and writes it. Called by the
/// Options dialog.
void storeConnectTimeout(std::int16_t seconds);

}  // namespace qxterm
