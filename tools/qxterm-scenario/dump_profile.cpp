#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "dumps.h"

namespace qxterm::scenario {
namespace {

/// Sizes are whole points as a rule; then they are printed as whole numbers.
Json points(float size) {
    const auto whole = static_cast<std::int32_t>(size);
    return static_cast<float>(whole) == size ? Json(whole) : Json(size);
}

}  // namespace

Json dumpProfile() {
    const ProfileRecord& profile = CurrentProfile;
    return {{"dump", "profile"},
            {"fontsize", points(profile.fontSize)},
            {"connect", profile.connectType},
            {"name", jsonText(profile.name)},
            {"host", jsonText(profile.host)},
            {"port", profile.port},
            {"commport", profile.commport},
            {"baud", profile.baud},
            {"parity", jsonText(profile.parity)},
            {"databits", profile.databits},
            {"stopBits", jsonText(profile.stopBits)},
            {"flowControl", profile.flowControl},
            {"phone", jsonText(profile.phone)},
            {"prefix", jsonText(profile.prefix)},
            {"suffix", jsonText(profile.suffix)},
            {"hangup", jsonText(profile.hangup)},
            {"reset", jsonText(profile.reset)},
            {"timeout", profile.timeout},
            {"cd_timeout", profile.cd_timeout},
            {"auto_retry", profile.auto_retry}};
}

Json dumpLists() {
    Json profiles = Json::array();
    for (const std::string& name : profileNames) profiles.push_back(jsonText(name));
    Json recent = Json::array();
    for (const std::string& name : mruNames) recent.push_back(jsonText(name));
    return {{"dump", "lists"}, {"profiles", profiles}, {"mru", recent}};
}

}  // namespace qxterm::scenario
