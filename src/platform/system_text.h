#pragma once

#include <cstdint>
#include <string>

namespace qxterm {

/// The system's description of a socket error number, without a line end.
[[nodiscard]] std::string socketErrorText(std::int16_t number);

}  // namespace qxterm
