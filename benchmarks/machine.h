#pragma once

#include <string>

namespace qxterm::bench {

/// Number of cores and the compiler with its optimisation, for the head of the output.
[[nodiscard]] std::string machineText();

}  // namespace qxterm::bench
