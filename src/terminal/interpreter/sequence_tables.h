#pragma once

#include "terminal/commands/sequence.h"

/// Which verb carries out what: the three tables of the reader.
namespace qxterm {

/// The verb of a control character; null for a byte that does nothing. ESC and IAC, which begin a sequence,
/// are the reader's own.
[[nodiscard]] Verb controlVerb(unsigned char byte);
/// The verb of ESC and this byte; null when there is no such sequence.
[[nodiscard]] Verb escapeVerb(unsigned char byte);
/// The verb of a control sequence with this final character; null for an unknown one.
[[nodiscard]] Verb controlSequenceVerb(unsigned char final);

}  // namespace qxterm
