#pragma once

namespace qxterm::bench {

/// Ends the program's run, if there is one, and starts it anew in memory, as with an empty command line: the
/// main window is up, and nothing is recorded.
void startProgram();

/// The same with a session over the network: the profile is of type net and the scripted peer has accepted.
void startSession();

}  // namespace qxterm::bench
