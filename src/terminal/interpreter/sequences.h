#pragma once

#include "terminal/commands/sequence.h"

/// The sequences themselves: from an introducer to the verb in the tables.
namespace qxterm {

/// Bytes that begin a sequence.
namespace control {
inline constexpr unsigned char escape = 27;
inline constexpr unsigned char bracket = '[';  ///< behind the escape
inline constexpr unsigned char telnet = 255;   ///< IAC
}  // namespace control

/// Carries out an escape sequence; the position stands behind the ESC. An unknown one is the ESC alone, which
/// does nothing. Reports as "doEsc".
void doEsc(HostInput& input);

/// Carries out a control sequence; the position stands behind the "[". The sequence is carried when it is
/// unfinished or its final character is unknown. Reports as "doEscBracket": error 6 for a parameter above
/// 32767, 7 for a text of more than 1 MiB; the sequence is lost then.
void doEscBracket(HostInput& input);

/// Carries out a telnet command; the position stands behind the IAC. Reports as "doTelnet".
void doTelnet(HostInput& input);

/// The parameters of the control sequence that is being carried out.
[[nodiscard]] const Parameters& escParams();

/// The data begins with a control sequence that the block before has left over, and whose parameters have
/// been read: the first doEscBracket goes on behind them. Called by the interpreter for each block.
void resumeSequence(bool resumed);

/// Longest text of a sequence that is carried from block to block, in bytes.
inline constexpr std::size_t longestCarry = std::size_t{1} << 20U;

}  // namespace qxterm
