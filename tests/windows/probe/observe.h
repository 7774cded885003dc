#pragma once

#include "output.h"
#include "platform/win32/native.h"

/// What can be seen of the program from outside its modules.
namespace qxterm::probe {

using scenario::Json;

/// Cell size in pixels, used lengths' background, cursor, scroll position, whether a block is being
/// interpreted.
[[nodiscard]] Json view();
/// Screen rectangles [left, top, width, height] in pixels: of the picture box ("picterm"), and of each loaded
/// form and its controls.
[[nodiscard]] Json places();
/// The visible top-level windows, message boxes and menus among them: class, title, rectangle, texts in them.
[[nodiscard]] Json windows();
/// Which form and which of its controls has the keyboard; empty names for none, as in a message box.
[[nodiscard]] Json focus();
/// Handles, GDI objects, windows, the desktop's objects, timers of this process; memory in bytes.
[[nodiscard]] Json resources();
/// When cells were drawn last, in seconds since 1970, and how many draws there were. The first call begins
/// the watch, which takes the place of the selection's.
[[nodiscard]] Json drawn();

}  // namespace qxterm::probe
