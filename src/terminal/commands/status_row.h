#pragma once

#include "terminal/commands/sequence.h"

namespace qxterm {

/// x: to the status row; parameter 1 counts for nothing, parameter 2 is the column, which is not held within
/// the line.
void toStatusRow(const Parameters& parameters);

}  // namespace qxterm
