#pragma once

#include "output.h"

namespace qxterm::probe {

using scenario::Json;

/// Begins the watch when it is called first: from then on, whenever the program has shown the picture, the
/// window's pixels are compared with the picture and the picture with the records, many times a second.
/// Tells how often that was done, what was seen, and the first failure.
[[nodiscard]] Json glass();
/// Copies the window's pixels into the file "copy.ppm". Tells whether all of them can be seen.
[[nodiscard]] Json copy();
/// Something lies over parts of the picture from now on, here and there, as windows of others do; nothing any
/// more.
[[nodiscard]] Json cover();
[[nodiscard]] Json uncover();

}  // namespace qxterm::probe
