#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/headless/recorder.h"

namespace qxterm::scenario {

/// Brings program and platform to their start state; called once before the first command. What the program
/// does is printed, or goes to the sink given.
void prepareProgram(headless::Sink given = nullptr);
/// Runs start-up with a command line. A program that is running already is killed first; what it wrote to
/// "qxterm.ini" stays. ScriptFault inside a modal window or a yield, where it cannot be.
void startProgram(std::string_view commandLine);
/// Plans a failure of a routine; one planned while the program does not run is met by its next run.
void planRoutineFault(const std::string& routine, std::int16_t number);
/// Starts without a profile and without printing anything, unless there was a start before.
void startUnlessStarted();

/// True from start-up to the end of the program.
[[nodiscard]] bool programRuns();

}  // namespace qxterm::scenario
