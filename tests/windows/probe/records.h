#pragma once

#include "output.h"

namespace qxterm::probe {

using scenario::Json;

/// True while the picture must show the records: no block is being interpreted, nothing waits to be drawn,
/// drawing is not suspended.
[[nodiscard]] bool recordsStand();
/// An empty object when the picture shows what records, modes, scroll position, selection and cursor say,
/// else where it does not.
[[nodiscard]] Json recordsDifference();

}  // namespace qxterm::probe
