#pragma once

#include <cstdint>
#include <string>

namespace qxterm {

/// The unfinished or unknown sequence at the end of what was interpreted, from its ESC or IAC on; read again
/// in front of the next block. At most 1 MiB. Written by the interpreter; a reset (commands/reset) forgets
/// it.
inline std::string carryOver;
/// The last printable character accepted, for the repeat command; empty until there was one. Written by
/// commands/printing; beginOutput and startTerminal forget it.
inline std::string lastChar;
/// Number of the session whose output is interpreted. Written by beginOutput only.
inline std::uint32_t outputStream = 0;

}  // namespace qxterm
