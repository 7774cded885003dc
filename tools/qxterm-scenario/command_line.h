#pragma once

#include <string>
#include <vector>

#include "player.h"
#include "replay_run.h"

namespace qxterm::scenario {

/// What the tool was called for.
struct CommandLine {
    enum class Task : std::uint8_t { play, replay, help };
    Task task = Task::play;
    std::vector<std::string> files{};  ///< to be played
    Lines lines = Lines::untold;
    ReplayOrder order{};
    std::string complaint{};  ///< what is wrong with it; empty when nothing is
};

/// Reads the words behind the program's name.
[[nodiscard]] CommandLine readCommandLine(const std::vector<std::string>& words);

/// What --help prints.
extern const char* const usage;

}  // namespace qxterm::scenario
