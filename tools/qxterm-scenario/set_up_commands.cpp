// Commands that set the stage: what stands in the file, on the clipboard and on the desk before the program
// is started.

#include <array>
#include <utility>
#include <vector>

#include "commands.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/display.h"
#include "platform/headless/message_box.h"
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

Action socketFamily(Arguments& arguments) {
    const std::int32_t family = arguments.number("the address family", 0, 6);
    if (family != 0 && family != 4 && family != 6) throw ScriptFault{"the address family is 4, 6 or 0"};
    return [=] { headless::setAddressFamily(static_cast<std::int16_t>(family)); };
}

Action serialBusy(Arguments& arguments) {
    const bool busy = arguments.onOff();
    return [=] { headless::setPortsBusy(busy); };
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

constexpr std::array<Command, 10> commands{{
    {"ini", true, ini},
    {"screen", true, screen},
    {"language", true, language},
    {"clipboard", true, clipboard},
    {"answer", true, answer},
    {"fault", true, fault},
    {"socket family", true, socketFamily},
    {"serial busy", true, serialBusy},
    {"draw", true, draw},
    {"onyield", true, onYield},
}};

}  // namespace

std::span<const Command> setUpCommands() { return commands; }

}  // namespace qxterm::scenario
