#include <string>
#include <string_view>

#include "bytes.h"
#include "commands.h"
#include "platform/hex_text.h"
#include "script.h"
#include "support/target.h"

// Any text of a scenario: each line is read as a command, and as bytes. Nothing is carried out. Bytes that
// were read come out the same when they are written as hexadecimal digits and read again.
namespace qxterm::fuzz {
namespace {

void readBytes(std::string_view line) {
    std::string bytes;
    try {
        bytes = scenario::parseBytes(line);
    } catch (const scenario::ScriptFault& fault) {
        require(!fault.message.empty(), "a fault says what is wrong");
        return;
    }
    if (bytes.empty()) return;  // "" is a token, and no digits are none
    require(scenario::parseBytes(hexText(bytes)) == bytes, "bytes can be written and read again");
}

void readLine(std::string_view line) {
    try {
        (void)scenario::readCommand(line);
    } catch (const scenario::ScriptFault& fault) {
        require(!fault.message.empty(), "a fault says what is wrong");
    }
}

void run(Input input) {
    Steering steering{input};
    std::string_view text = steering.rest();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        readBytes(line);
        readLine(line);
    }
}

const Target target{"scenario_text", run};

}  // namespace
}  // namespace qxterm::fuzz
