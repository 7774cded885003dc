#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "terminal/interpreter_state.h"

namespace qxterm {

/// What doEsc, doEscBracket and doTelnet share with the interpreter: the bytes being interpreted, a 1-based
/// position in them, and the places at which a repeat command has already sent the interpreter back.
struct Interpretation {
    std::string_view data;
    std::int32_t position = 1;
    /// The data begins with the sequence that the block before left over, whose parameters the parser has in
    /// mind.
    bool resumed = false;
    /// Set by a repeat that goes back: the interpreter yields once.
    bool wentBack = false;
    /// The stream that the data belongs to: what is left of it is dropped when another one has begun.
    std::uint32_t stream = outputStream;
    /// Bit p: the repeat whose final character stands at position p has gone back in this block.
    std::vector<bool> repeatedAt{};

    [[nodiscard]] std::int32_t length() const { return static_cast<std::int32_t>(data.size()); }
};

/// Executes a cursor position or a graphic rendition of the most frequent form, as doEsc and doEscBracket
/// would. introducer: place of the ESC, which counts from 0. Returns the place behind the sequence; the
/// introducer's, with nothing done, for whatever else begins there. Reports as "doEscBracket".
[[nodiscard]] std::size_t doOrdinarySequence(std::string_view data, std::size_t introducer);

/// Parses and executes one control sequence; the position stands on the "[" on entry and on the last byte
/// consumed on return. Returns true when the sequence's text, from its ESC to the position (or to the end of
/// the data), must be carried: it is unfinished or its final character is unknown. Reports as "doEscBracket":
/// error 6 for a parameter above 32767, 7 for a text of more than 1 MiB; the sequence is lost then.
[[nodiscard]] bool doEscBracket(Interpretation& input);

}  // namespace qxterm
