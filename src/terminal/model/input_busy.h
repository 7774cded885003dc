#pragma once

#include <cstdint>

namespace qxterm {

/// -1 while the interpreter runs, else 0: the hold flag of timers and receive events. Written by
/// processInput, and by startTerminal for its start value.
inline std::int16_t inputBusy = 0;

}  // namespace qxterm
