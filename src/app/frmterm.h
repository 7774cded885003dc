#pragma once

namespace qxterm {

/// Connects the main window's events of its life: load, activation, closing. Called at start-up.
void connectMainWindow();

}  // namespace qxterm
