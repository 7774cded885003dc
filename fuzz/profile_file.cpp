#include <algorithm>
#include <string>
#include <string_view>

#include "config/ini_file.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "headless-session/session.h"
#include "platform/headless/profile_strings.h"
#include "support/target.h"

// Any content of "qxterm.ini": the program starts with it, reads each profile that it names, and writes one
// back.
namespace qxterm::fuzz {
namespace {

/// Reads a file's text as Windows does: sections in brackets, "key=value" lines, the first of two equal keys.
void fillIni(std::string_view text) {
    std::string section;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t equals = line.find('=');
        if (!line.empty() && line.front() == '[') {
            section =
                line.substr(1, line.find(']') == std::string_view::npos ? line.size() : line.find(']') - 1);
        } else if (equals != std::string_view::npos) {
            headless::putIni(section, line.substr(0, equals), line.substr(equals + 1));
        }
    }
}

void checkNames() {
    for (const std::string& name : profileNames) {
        require(!name.empty() && name.find(' ') == std::string::npos, "names hold no blank");
        require(name.size() < static_cast<std::size_t>(513), "names are cut at the reader's length");
    }
    for (const std::string& name : mruNames) require(name.find(' ') == std::string::npos, "recent names");
}

void run(Input input) {
    Steering steering{input};
    headless::resetAll();
    fillIni(steering.rest());
    headless::runProgram();
    checkNames();
    const std::vector<std::string> names = profileNames;
    for (const std::string& name : names) {
        readUserProf(name);
        require(CurrentProfile.name == name, "the profile has the name it was read by");
        require(CurrentProfile.fontSize >= 9 && CurrentProfile.fontSize <= 11,
                "the font size is one of three");
        require(CurrentProfile.connectType >= 0 && CurrentProfile.connectType <= 5, "the type is known");
        reOrderProf(name);
        writeUserProf();
        checkNames();
    }
}

const Target target{"profile_file", run};

}  // namespace
}  // namespace qxterm::fuzz
