#pragma once

namespace qxterm {

/// Start-up: sets the program-wide values, shows the splash picture, reads the configuration and loads the
/// main window. The caller then runs the event loop. A failure is reported, and the program ended, before it
/// returns.
void main();

}  // namespace qxterm
