#pragma once

#include <string>

#include "output.h"
#include "terminal/model/line_record.h"

namespace qxterm::scenario {

/// The 80 characters of a line.
[[nodiscard]] std::string lineText(const ScreenLine& line);
/// The 80 attribute words of a line, by column.
[[nodiscard]] Json lineAttrs(const ScreenLine& line);

}  // namespace qxterm::scenario
