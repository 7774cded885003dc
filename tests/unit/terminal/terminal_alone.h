#pragma once

namespace qxterm::test {

/// The terminal by itself in memory, without connections, profiles, menus and dialogs: started, nothing
/// written on the screen. The platform is in its start state before.
void startTerminalAlone();
/// Everything of the terminal at its start values, and the platform, too.
void resetTerminalAlone();

}  // namespace qxterm::test
