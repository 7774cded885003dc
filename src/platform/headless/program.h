#pragma once

#include <string_view>

namespace qxterm::headless {

/// The text behind the program's name on the command line.
void setCommandLine(std::string_view text);

void resetProgramService();

}  // namespace qxterm::headless
