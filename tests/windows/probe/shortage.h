#pragma once

#include "output.h"

namespace qxterm::probe {

using scenario::Json;

/// Takes GDI objects until the system gives no more, and gives a hundred back: "taken" tells how many are
/// kept. With noObjects none are given back.
[[nodiscard]] Json fewObjects();
[[nodiscard]] Json noObjects();
[[nodiscard]] Json freeObjects();

/// The system gives the program no fonts from now on, and again.
[[nodiscard]] Json noFonts();
[[nodiscard]] Json freeFonts();

/// Reserves what address space the system still gives: "bytes". To be asked when little of it is left, since
/// each look for a block goes through all that is free.
[[nodiscard]] Json noSpace();
[[nodiscard]] Json freeSpace();

}  // namespace qxterm::probe
