#pragma once

#include <cstdint>

#include "terminal/model/line_record.h"

namespace qxterm {

/// Draws a line's dirty span on a window row and clears its dirty state. Reports as "lineOut".
void lineOut(ScreenLine& line, std::int32_t row);

}  // namespace qxterm
