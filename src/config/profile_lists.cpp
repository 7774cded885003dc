#include "config/profile_lists.h"

#include <algorithm>

#include "config/ini_file.h"
#include "config/profile_hooks.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "platform/profile_strings.h"

namespace qxterm {

std::vector<std::string> profileNames;
std::array<std::string, mruCount> mruNames;

namespace {

std::vector<std::string> splitAtBlanks(std::string_view text) {
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const std::size_t blank = text.find(' ');
        if (blank != 0) pieces.emplace_back(text.substr(0, blank));
        text = blank == std::string_view::npos ? std::string_view{} : text.substr(blank + 1);
    }
    return pieces;
}

/// Each name with one blank behind it, as the file keeps them.
template <class Names>
std::string joined(const Names& names) {
    std::string text;
    for (const std::string& name : names) text += name + ' ';
    return text;
}

bool among(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// The known names, and behind them those that only the file holds: what a read cut off, and what another
/// window of the program has added meanwhile.
std::vector<std::string> namesToKeep(const std::string& added) {
    const std::string whole = getWholePrivateProfileString(settingsSection, "Profiles");
    const std::vector<std::string> inFile = splitAtBlanks(whole);
    std::vector<std::string> names = profileNames;
    if (whole.size() >= static_cast<std::size_t>(profileBufferSize)) {
        // The last name read may be the beginning of one.
        std::erase_if(names, [&](const std::string& name) { return name != added && !among(inFile, name); });
    }
    for (const std::string& name : inFile) {
        if (!among(names, name)) names.push_back(name);
    }
    return names;
}

}  // namespace

std::int16_t profileCount() { return toInt16(static_cast<std::int64_t>(profileNames.size())); }

void fillProfileNames(std::string_view names) { profileNames = splitAtBlanks(names); }

void fillMruNames(std::string_view names) {
    std::vector<std::string> pieces = splitAtBlanks(names);
    pieces.resize(mruCount);
    std::move(pieces.begin(), pieces.end(), mruNames.begin());
}

bool knownProfile(std::string_view name) {
    return std::find(profileNames.begin(), profileNames.end(), name) != profileNames.end();
}

void addProfileName(const std::string& name) {
    if (!knownProfile(name)) profileNames.push_back(name);
    writePrivateProfileString(settingsSection, "Profiles", joined(namesToKeep(name)));
}

void reOrderProf(const std::string& name) {
    trapped("reOrderProf", [&] {
        const auto found = std::find(mruNames.begin(), mruNames.end(), name);
        if (found == mruNames.begin()) return;
        const auto gap = found != mruNames.end() ? found : mruNames.end() - 1;
        std::move_backward(mruNames.begin(), gap, gap + 1);
        mruNames.front() = name;
        writePrivateProfileString(settingsSection, "order", joined(mruNames));
        setFiles();
    });
}

void setFiles() {
    trapped("setFiles", [] {
        for (std::size_t n = 1; n <= mruCount; ++n) {
            const std::string& name = mruNames[n - 1];
            if (name.empty()) continue;
            const auto index = static_cast<std::int16_t>(recentMenuBase + static_cast<std::int16_t>(n));
            profileHooks.showRecentProfile(index, "&" + std::to_string(n) + " " + name);
        }
    });
}

}  // namespace qxterm
