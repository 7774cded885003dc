#pragma once

#include <string_view>

/// The whole program in memory, for all that runs it there: scenarios, tests, benchmarks and fuzz targets.
namespace qxterm::headless {

/// Brings platform and program to their start state; a program that runs is gone. Records go nowhere.
void resetAll();
/// The same for a program that is to be started once more: what it wrote to "qxterm.ini" stays, and so does
/// all that was prepared.
void killProgram();
/// Runs start-up with a command line, from the start state on.
void runProgram(std::string_view commandLine = {});

/// resetAll, and start-up without a profile: the main window is up.
void startProgram();
/// The same with a session over the network: the profile is of type net and the scripted peer has accepted.
void startSession();

}  // namespace qxterm::headless
