#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zpt {

/// One argument as it has to stand in a Windows command line so that the started program's run-time finds
/// exactly this text: in quotation marks where it needs them, and backslashes doubled in front of one.
[[nodiscard]] std::string quoted(std::string_view argument);

/// A whole command line: program and arguments, quoted, with single blanks between them.
[[nodiscard]] std::string commandLine(std::string_view program, const std::vector<std::string>& arguments);

}  // namespace zpt
