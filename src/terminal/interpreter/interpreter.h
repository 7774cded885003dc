#pragma once

#include <string_view>

#include "terminal/model/output_state.h"

namespace qxterm {

/// Interprets one block of host output: the one entry through which everything that the host sends reaches
/// the screen. Called by the receive handlers of the connections and, on a loop connection, by the keyboard
/// and Paste. A block that comes while another one is being interpreted waits until that one has ended.
/// Reports as "processInput"; the rest of the block is dropped then.
void processInput(std::string_view block);

/// Forgets blocks that wait. Called when a session ends: the block that is being interpreted is still shown.
void dropWaitingBlocks();

/// The output of another session begins. What waits, what was left unfinished, and the rest of a block that
/// is being interpreted go with the session before. Called when a connection is started.
void beginOutput();

}  // namespace qxterm
