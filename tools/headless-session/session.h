#pragma once

/// Starting the whole program in memory, for tools that feed it: the benchmarks and the fuzz targets.
namespace qxterm::headless {

/// Ends the program's run, if there is one, and starts it anew as with an empty command line: the main window
/// is up.
void startProgram();

/// The same with a session over the network: the profile is of type net and the scripted peer has accepted.
void startSession();

}  // namespace qxterm::headless
