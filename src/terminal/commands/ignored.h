#pragma once

#include "terminal/commands/sequence.h"

/// Sequences that are read and do nothing.
namespace qxterm {

/// ESC ( and ESC ): a character set is designated; a byte that names none is left as ordinary data.
void designateCharacterSet(HostInput& input);
inline void doNothing() {}  ///< ESC Q, R, =, >

}  // namespace qxterm
