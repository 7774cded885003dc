#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "config/connect_type.h"

namespace qxterm {

/// Name of a profile that was never saved.
inline constexpr const char* untitledName = "(untitled)";

/// A named set of connection and display settings. The values here are those of a new profile.
struct ProfileRecord {
    float fontSize = 10;  ///< points: 9, 10 or 11
    std::int16_t connectType = connectType::ssh;
    std::string name = untitledName;
    std::string host;
    std::int32_t port = 22;
    std::int16_t commport = 1;  ///< 1 is COM1
    std::int32_t baud = 9600;
    std::string parity = "n";  ///< one letter
    std::int16_t databits = 8;
    std::string stopBits = "1";
    std::int16_t flowControl = 1;  ///< 0 none, 1 XON/XOFF, 2 RTS/CTS, 3 both
    std::string phone;
    std::string prefix = "ATDT";
    std::string suffix;
    std::string hangup = "ATH";
    std::string reset = "ATZ";
    std::int16_t timeout = 45;      ///< seconds allowed for connecting
    std::int16_t cd_timeout = 300;  ///< seconds a modem's carrier may take
    bool auto_retry = false;

    friend bool operator==(const ProfileRecord&, const ProfileRecord&) = default;
};

/// The settings in use. Written by readUserProf, as far as it comes, and by the routines below.
extern ProfileRecord CurrentProfile;
/// What a new profile starts with and what stands in for keys that the file lacks. Written by initDefaults
/// and resetProfiles.
extern ProfileRecord DefaultProfile;

/// Line speeds in the order of the Options dialog's list.
inline constexpr std::array<std::int32_t, 8> baudRates{110, 300, 600, 1200, 2400, 4800, 9600, 19200};

/// Fills DefaultProfile, and CurrentProfile likewise: the font size follows from the screen's height. Called
/// by main.
void initDefaults();

/// Both records as they are before main has run.
void resetProfiles();

/// Makes the record the current profile. Called by main, New and the Options dialog.
void setCurrentProfile(const ProfileRecord& record);
/// Names the current profile. Called by main, New and the profile dialog.
void nameCurrentProfile(const std::string& name);
/// Gives the current profile a font size in points. Called by the Options dialog.
void setFontSize(float points);

}  // namespace qxterm
