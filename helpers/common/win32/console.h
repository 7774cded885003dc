#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zpt {

/// First thing in main: DLLs come from the system's folder only, and no error box ever waits for an answer.
void hardenProcess();

/// One line on standard error, led by the helper's name. Not more than a few of them in a helper's life: when
/// the terminal has started it nobody reads the pipe behind standard error, and a full one would stop it.
void complain(const char* helper, std::string_view text);

/// The arguments behind the program's name.
[[nodiscard]] std::vector<std::string_view> argumentsOf(int count, char** values);

/// The folder of the helper's own program file and the system's folder, each with a backslash behind it;
/// empty when the system does not tell.
[[nodiscard]] std::string ownFolder();
[[nodiscard]] std::string systemFolder();

}  // namespace zpt
