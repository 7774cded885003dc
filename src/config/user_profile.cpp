#include "config/user_profile.h"

#include <string_view>

#include "config/ini_file.h"
#include "config/profile_hooks.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "diag/error_trap.h"
#include "diag/numbers.h"
#include "platform/profile_strings.h"

namespace qxterm {

bool g_bProfileChanged = false;
bool g_bProfileNew = false;
bool g_bSSHMode = false;

namespace {

constexpr float smallFont = 9;
constexpr float mediumFont = 10;
constexpr float largeFont = 11;

float fontSizeOf(std::string_view word) {
    if (word == "small") return smallFont;
    return word == "large" ? largeFont : mediumFont;
}

const char* wordOfFontSize(float points) {
    if (points == smallFont) return "small";
    return points == largeFont ? "large" : "medium";
}

/// Key of the TCP port, null for the types that have none.
const char* portKey(std::int16_t type) {
    if (type == connectType::net) return "netport";
    return type == connectType::ssh ? "SSHnetport" : nullptr;
}

/// Reads the keys of one section.
class Section {
public:
    explicit Section(std::string_view name) : name_{name} {}

    [[nodiscard]] std::string text(const char* key, std::string_view fallback) const {
        return readSetting(name_, key, fallback);
    }
    [[nodiscard]] std::int16_t number16(const char* key, std::int16_t fallback) const {
        return textToInt16(text(key, std::to_string(fallback)));
    }
    [[nodiscard]] std::int32_t number32(const char* key, std::int32_t fallback) const {
        return textToInt32(text(key, std::to_string(fallback)));
    }

private:
    std::string_view name_;
};

void readLineSettings(const Section& section) {
    ProfileRecord& profile = CurrentProfile;
    const ProfileRecord& fallback = DefaultProfile;
    profile.commport = section.number16("commport", fallback.commport);
    profile.baud = section.number32("baud", fallback.baud);
    profile.parity = section.text("parity", fallback.parity);
    profile.databits = section.number16("databits", fallback.databits);
    profile.stopBits = section.text("stopBits", fallback.stopBits);
    profile.flowControl = section.number16("flowControl", fallback.flowControl);
    profile.phone = section.text("phone", fallback.phone);
    profile.prefix = section.text("prefix", fallback.prefix);
    profile.suffix = section.text("suffix", fallback.suffix);
    profile.hangup = section.text("hangup", fallback.hangup);
    profile.reset = section.text("reset", fallback.reset);
    profile.timeout = section.number16("timeout", fallback.timeout);
    profile.cd_timeout = section.number16("cd_timeout", fallback.cd_timeout);
    profile.auto_retry = section.number16("auto_retry", fallback.auto_retry ? 1 : 0) != 0;
}

}  // namespace

void setProfileChanged(bool changed) { g_bProfileChanged = changed; }

void setProfileNew(bool isNew) { g_bProfileNew = isNew; }

void setSshMode(bool on) { g_bSSHMode = on; }

void readUserProf(const std::string& name) {
    trapped("readUserProf", [&] {
        const Section section{name};
        CurrentProfile.name = name;
        CurrentProfile.fontSize = fontSizeOf(section.text("Font", "medium"));
        profileHooks.resizeScreen();

        CurrentProfile.connectType = connectType::ofWord(section.text("connect", "serial"));
        if (CurrentProfile.connectType == connectType::ssh) setSshMode(true);
        profileHooks.setCaption();

        if (const char* key = portKey(CurrentProfile.connectType)) {
            CurrentProfile.host = section.text("host", DefaultProfile.host);
            CurrentProfile.port = section.number32(key, DefaultProfile.port);
        }
        readLineSettings(section);
    });
}

void writeUserProf() {
    trapped("writeUserProf", [] {
        const ProfileRecord& profile = CurrentProfile;
        const auto text = [&](const char* key, std::string_view value) {
            writePrivateProfileString(profile.name, key, value);
        };
        const auto number = [&](const char* key, std::int32_t value) { text(key, std::to_string(value)); };

        text("font", wordOfFontSize(profile.fontSize));
        if (const char* word = connectType::wordOf(profile.connectType)) text("connect", word);
        text("host", profile.host);
        if (const char* key = portKey(profile.connectType)) number(key, profile.port);
        number("commport", profile.commport);
        number("baud", profile.baud);
        text("parity", profile.parity);
        // These three are spelled otherwise than where they are read; the file's keys match whatever their
        // case.
        number("Databits", profile.databits);
        text("StopBits", profile.stopBits);
        number("FlowControl", profile.flowControl);
        text("phone", profile.phone);
        text("prefix", profile.prefix);
        text("suffix", profile.suffix);
        text("hangup", profile.hangup);
        text("reset", profile.reset);
        number("timeout", profile.timeout);
        number("cd_timeout", profile.cd_timeout);
        number("auto_retry", profile.auto_retry ? 1 : 0);
        addProfileName(profile.name);
        setProfileChanged(false);
        setProfileNew(false);
    });
}

}  // namespace qxterm
