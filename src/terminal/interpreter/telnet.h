#pragma once

#include <string_view>

namespace qxterm {

/// Sends the answer to a telnet command to the host, where there is a connection that takes it. Filled by the
/// application.
inline void (*answerHost)(std::string_view bytes) = [](std::string_view) {};

}  // namespace qxterm
