#include "config/profile_record.h"

#include "diag/error_trap.h"
#include "platform/display.h"

namespace qxterm {

ProfileRecord CurrentProfile;
ProfileRecord DefaultProfile;

namespace {

float fontSizeForScreen() {
    const std::int32_t pixels = display::height() / display::twipsPerPixelY();
    if (pixels < 500) return 9;
    return pixels < 700 ? 10.0F : 11.0F;
}

}  // namespace

void initDefaults() {
    trapped("initDefaults", [] {
        DefaultProfile = ProfileRecord{};
        DefaultProfile.fontSize = fontSizeForScreen();
        setCurrentProfile(DefaultProfile);
    });
}

void resetProfiles() {
    DefaultProfile = ProfileRecord{};
    setCurrentProfile(DefaultProfile);
}

void setCurrentProfile(const ProfileRecord& record) { CurrentProfile = record; }

void nameCurrentProfile(const std::string& name) { CurrentProfile.name = name; }

void setFontSize(float points) { CurrentProfile.fontSize = points; }

}  // namespace qxterm
