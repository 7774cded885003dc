#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "arguments.h"

namespace qxterm::scenario {

/// What a command does, once its arguments have been read.
using Action = std::function<void()>;

/// One command. `parse` reads all arguments and does nothing yet, so that of a malformed line nothing is
/// done.
struct Command {
    std::string_view name;  ///< one word, or two ("socket data")
    bool setUp;             ///< does not start the program
    Action (*parse)(Arguments& arguments);
};

/// The commands by subject; each table stands in the file that carries its commands out.
std::span<const Command> setUpCommands();
std::span<const Command> programCommands();
std::span<const Command> connectionCommands();
std::span<const Command> windowCommands();
std::span<const Command> controlCommands();
std::span<const Command> dumpCommands();

/// A command that was read and can be carried out at any time.
struct ReadCommand {
    bool setUp;
    Action action;
};
/// ScriptFault for an unknown command or a malformed argument.
[[nodiscard]] ReadCommand readCommand(std::string_view line);

/// Carries a command out as the next thing that happens to the program, which is started first unless it is a
/// set-up command; then paints what waits to be painted.
void carryOut(const ReadCommand& command);

/// Prints that a command is about something that cannot be used now.
void refuse(const std::string& line);

}  // namespace qxterm::scenario
