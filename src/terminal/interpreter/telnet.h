#pragma once

#include <string_view>

namespace qxterm {

/// Sends the answer to a telnet command to the host, where there is a connection that takes it. Filled at
/// start-up.
inline void (*answerHost)(std::string_view bytes) = [](std::string_view) {};

}  // namespace qxterm
