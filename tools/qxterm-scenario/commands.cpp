#include "commands.h"

#include <algorithm>
#include <array>

#include "output.h"
#include "platform/headless/picture_box.h"
#include "program.h"
#include "script.h"

namespace qxterm::scenario {
namespace {

std::span<const Command> commandsOf(std::size_t table) {
    switch (table) {
        case 0: return setUpCommands();
        case 1: return programCommands();
        case 2: return connectionCommands();
        case 3: return windowCommands();
        case 4: return controlCommands();
        default: return dumpCommands();
    }
}
constexpr std::size_t tables = 6;

const Command* find(std::string_view name) {
    for (std::size_t table = 0; table < tables; ++table) {
        const std::span<const Command> commands = commandsOf(table);
        const auto at = std::find_if(commands.begin(), commands.end(),
                                     [&](const Command& command) { return command.name == name; });
        if (at != commands.end()) return &*at;
    }
    return nullptr;
}

}  // namespace

ReadCommand readCommand(std::string_view line) {
    Arguments arguments{line};
    std::string name = arguments.word("a command");
    const Command* command = find(name);
    if (command == nullptr && arguments.more()) {
        name += ' ';
        name += arguments.peek();
        command = find(name);
        if (command != nullptr) (void)arguments.word("");
    }
    if (command == nullptr) throw ScriptFault{"unknown command: " + name};
    Action action = command->parse(arguments);
    arguments.end();
    return {command->setUp, std::move(action)};
}

void carryOut(const ReadCommand& command) {
    if (!command.setUp) startUnlessStarted();
    command.action();
    if (headless::paintsWaiting) headless::deliverPaints();
}

void refuse(const std::string& line) { print({{"event", "refused"}, {"what", jsonText(line)}}); }

}  // namespace qxterm::scenario
