#include "config/ini_file.h"

#include "config/profile_lists.h"
#include "config/user_profile.h"
#include "diag/error_trap.h"
#include "diag/numbers.h"
#include "diag/trace_log.h"
#include "platform/profile_strings.h"

namespace qxterm {

std::int16_t g_iWindowLeft = -1;
std::int16_t g_iWindowTop = -1;
std::int16_t g_iConnectTimeout = 45;
std::int32_t g_lPortForwardStart = 3000;

std::string readSetting(std::string_view section, std::string_view key, std::string_view fallback) {
    return std::string{trimmed(getPrivateProfileString(section, key, fallback))};
}

void readIniFile() {
    trapped("readIniFile", [] {
        fillProfileNames(readSetting(settingsSection, "Profiles", ""));
        fillMruNames(readSetting(settingsSection, "Order", ""));
        setProfileChanged(false);

        const std::string window = readSetting(settingsSection, "Window", "-1 -1");
        const std::size_t blank = window.find(' ');
        g_iWindowLeft = textToInt16(std::string_view{window}.substr(0, blank));
        g_iWindowTop = textToInt16(blank == std::string::npos ? std::string_view{}
                                                              : std::string_view{window}.substr(blank));

        g_iConnectTimeout = textToInt16(readSetting(settingsSection, "timeout", "45"));
        setLogging(readSetting(settingsSection, "Logging", "0"));
    });
}

void readPortForwardStart() {
    constexpr const char* key = "PortForwardRangeStart";
    g_lPortForwardStart = textToInt32(readSetting(settingsSection, key, "3000"));
    writePrivateProfileString(settingsSection, key, std::to_string(g_lPortForwardStart));
}

void resetIniValues() {
    g_iWindowLeft = -1;
    g_iWindowTop = -1;
    g_iConnectTimeout = 45;
    g_lPortForwardStart = 3000;
}

void storeConnectTimeout(std::int16_t seconds) {
    g_iConnectTimeout = seconds;
    writePrivateProfileString(settingsSection, "timeout", std::to_string(seconds));
}

}  // namespace qxterm
