#pragma once

#include "output.h"

/// What is to fail, as a test says it, and what has failed (faults/fault_table.h).
namespace qxterm::probe {

using scenario::Json;

/// {FUNCTION: [AFTER, TIMES] ...}: so many calls succeed, so many fail then. Forgets earlier plans.
void planFaults(const Json& plans);

/// {FUNCTION: [CALLS, FAILED] ...} since the plans were made, of those that were called.
[[nodiscard]] Json faults();

}  // namespace qxterm::probe
