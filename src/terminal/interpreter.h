#pragma once

#include <string_view>

#include "terminal/interpreter_state.h"

namespace qxterm {

/// Interprets one block of host output: the one entry through which everything that the host sends reaches
/// the screen. Called by the receive handlers of the connections and, on a loop connection, by the keyboard
/// and Paste. A block that comes while another one is being interpreted waits until that one has ended.
/// Reports as "processInput"; the rest of the block is dropped then.
void processInput(std::string_view block);

/// Forgets blocks that wait.
void dropWaitingBlocks();

}  // namespace qxterm
