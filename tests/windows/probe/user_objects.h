#pragma once

#include <cstddef>

/// What this process holds of the desktop's objects, for systems that do not count them.
namespace qxterm::probe {

/// Menus, icons and cursors of this process. The windows are counted by their threads.
[[nodiscard]] int menusAndIcons();
/// Timers of the system that run for the program's own calls of SetTimer.
[[nodiscard]] std::size_t systemTimers();

}  // namespace qxterm::probe
