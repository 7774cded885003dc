// Commands that set the stage: what stands in the file, on the clipboard and on the desk before the program
// is started.

#include <array>
#include <bitset>
#include <utility>
#include <vector>

#include "commands.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/display.h"
#include "platform/headless/failures.h"
#include "platform/headless/message_box.h"
#include "platform/headless/port_table.h"
#include "platform/headless/process.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/recorder.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "player.h"
#include "program.h"
#include "script.h"

namespace qxterm::scenario {
namespace {

constexpr std::int32_t largestScreen = 32767;        // pixels
constexpr std::int32_t largestTwipsPerPixel = 1440;  // one pixel to the inch

Action ini(Arguments& arguments) {
    const std::string section = arguments.word("SECTION");
    const std::string key = arguments.word("KEY");
    const std::string value = arguments.text();
    return [=] { headless::putIni(section, key, value); };
}

Action screen(Arguments& arguments) {
    const std::int32_t width = arguments.number("WIDTH", 1, largestScreen);
    const std::int32_t height = arguments.number("HEIGHT", 1, largestScreen);
    const std::int32_t twips = arguments.number("TWIPS", 1, largestTwipsPerPixel);
    return [=] {
        if (programRuns()) throw ScriptFault{"the screen belongs before start"};
        headless::setDisplay(width, height, static_cast<std::int16_t>(twips));
    };
}

Action language(Arguments& arguments) {
    const std::string code = arguments.word("CODE");
    return [=] { headless::setLanguage(code); };
}

Action clipboard(Arguments& arguments) {
    const std::string text = arguments.bytes();
    return [=] { headless::putOnClipboard(text); };
}

Answer answerNamed(const std::string& word) {
    constexpr std::array<std::pair<std::string_view, Answer>, 5> words{{{"OK", Answer::ok},
                                                                        {"Cancel", Answer::cancel},
                                                                        {"Yes", Answer::yes},
                                                                        {"No", Answer::no},
                                                                        {"Retry", Answer::retry}}};
    for (const auto& [name, answer] : words) {
        if (name == word) return answer;
    }
    throw ScriptFault{"an answer is OK, Cancel, Yes, No or Retry, not " + word};
}

Action answer(Arguments& arguments) {
    std::vector<Answer> answers;
    do {
        answers.push_back(answerNamed(arguments.word("an answer")));
    } while (arguments.more());
    return [=] {
        for (const Answer each : answers) headless::queueAnswer(each);
    };
}

Action fault(Arguments& arguments) {
    const std::string routine = arguments.word("ROUTINE");
    const std::int32_t number = arguments.number("NUMBER", 1, INT16_MAX);
    return [=] { planRoutineFault(routine, static_cast<std::int16_t>(number)); };
}

/// The words behind POINT: [ERROR] [after N] [times N | always | never].
headless::FailurePlan failurePlan(Arguments& arguments, const headless::PointInfo& point) {
    headless::FailurePlan plan;
    const std::string_view first = arguments.peek();
    if (!first.empty() && first.front() >= '0' && first.front() <= '9') {
        plan.error = static_cast<std::int16_t>(arguments.number("ERROR", 1, INT16_MAX));
        if (point.error == 0) throw ScriptFault{std::string{point.name} + " fails without an error number"};
    }
    while (arguments.more()) {
        const std::string word = arguments.word("");
        if (word == "after") {
            plan.after = static_cast<std::uint32_t>(arguments.number("N", 0, INT32_MAX));
        } else if (word == "times") {
            plan.times = static_cast<std::uint32_t>(arguments.number("N", 1, INT32_MAX));
        } else if (word == "always") {
            plan.times = headless::FailurePlan::always;
        } else if (word == "never") {
            plan.times = 0;
        } else {
            throw ScriptFault{"a failure is planned with after N, times N, always or never, not " + word};
        }
    }
    return plan;
}

Action fail(Arguments& arguments) {
    const std::string name = arguments.word("POINT");
    const headless::PointInfo* point = headless::pointNamed(name);
    if (point == nullptr) throw ScriptFault{"no call that can fail has this name: " + name};
    return [point, plan = failurePlan(arguments, *point)] { headless::planFailure(point->point, plan); };
}

Action socketFamily(Arguments& arguments) {
    const std::int32_t family = arguments.number("the address family", 0, 6);
    if (family != 0 && family != 4 && family != 6) throw ScriptFault{"the address family is 4, 6 or 0"};
    return [=] { headless::setAddressFamily(static_cast<std::int16_t>(family)); };
}

Action serialBusy(Arguments& arguments) {
    const bool busy = arguments.onOff();
    return [=] { headless::setPortsBusy(busy); };
}

using PortSet = std::bitset<PortTables::ports>;

std::int32_t portNumber(const std::string& text) {
    Arguments number{text};
    const std::int32_t port = number.number("N", 1, static_cast<std::int32_t>(PortTables::ports) - 1);
    number.end();
    return port;
}

/// Ports, and ranges of them ("3000-3005").
PortSet portSet(Arguments& arguments) {
    PortSet ports;
    while (arguments.more()) {
        const std::string text = arguments.word("N");
        const std::size_t hyphen = text.find('-', 1);
        const std::int32_t first = portNumber(text.substr(0, hyphen));
        const std::int32_t last = hyphen == std::string::npos ? first : portNumber(text.substr(hyphen + 1));
        for (std::int32_t port = first; port <= last; ++port) ports.set(static_cast<std::size_t>(port));
    }
    return ports;
}

Action tcpPorts(Arguments& arguments) {
    return [ports = portSet(arguments)] { headless::setTcpPorts(ports); };
}

Action udpPorts(Arguments& arguments) {
    return [ports = portSet(arguments)] { headless::setUdpPorts(ports); };
}

std::string helperName(Arguments& arguments) {
    const std::string name = arguments.word("NAME");
    if (name != "zpt_ssh" && name != "zpt_tnetd") {
        throw ScriptFault{"a helper is zpt_ssh or zpt_tnetd, not " + name};
    }
    return name;
}

Action helperFail(Arguments& arguments) {
    return [name = helperName(arguments)] { headless::failHelper(name); };
}

Action helperExit(Arguments& arguments) {
    return [name = helperName(arguments)] { headless::exitHelper(name); };
}

/// MS milliseconds after its start, or never, the client opens its forwarded port.
Action helperForward(Arguments& arguments) {
    constexpr std::int64_t never = -1;
    if (arguments.peek() == "never") {
        (void)arguments.word("");
        return [] { headless::setForwardDelay(never); };
    }
    const std::int32_t milliseconds = arguments.number("MS", 0, INT32_MAX);
    return [=] { headless::setForwardDelay(milliseconds); };
}

Action draw(Arguments& arguments) {
    const bool on = arguments.onOff();
    return [=] { headless::setRecording("draw", on); };
}

Action onYield(Arguments& arguments) {
    const std::string line = arguments.text();
    (void)readCommand(line);
    return [=] { queueForYield(line); };
}

constexpr std::array<Command, 16> commands{{
    {"ini", true, ini},
    {"screen", true, screen},
    {"language", true, language},
    {"clipboard", true, clipboard},
    {"answer", true, answer},
    {"fault", true, fault},
    {"fail", true, fail},
    {"socket family", true, socketFamily},
    {"serial busy", true, serialBusy},
    {"ports tcp", true, tcpPorts},
    {"ports udp", true, udpPorts},
    {"helper fail", true, helperFail},
    {"helper exit", true, helperExit},
    {"helper forward", true, helperForward},
    {"draw", true, draw},
    {"onyield", true, onYield},
}};

}  // namespace

std::span<const Command> setUpCommands() { return commands; }

}  // namespace qxterm::scenario
