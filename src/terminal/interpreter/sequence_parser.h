#pragma once

#include <cstdint>
#include <string_view>

#include "terminal/commands/sequence.h"

namespace qxterm {

/// Reads the parameters of one control sequence. A sequence that a block leaves unfinished is not read again
/// from its beginning with the next block: the parser goes on where it stopped, so that the cost of a
/// sequence does not depend on how it was cut into blocks.
class SequenceParser {
public:
    /// Forgets what was read; the next byte is the one behind "[".
    void start() {
        state_ = State::behindBracket;
        escParams_.clear();
    }
    /// Reads on from data[position] to the final character, and returns its place; position then stands
    /// behind it. Returns null when the data ends before; position then is the data's length. Error 6 for a
    /// value above 32767: position stands behind the digit that was too much.
    [[nodiscard]] const char* read(std::string_view data, std::size_t& position);

    [[nodiscard]] const Parameters& parameters() const { return escParams_; }

    /// Bytes of a carried sequence, from its ESC on, that need not be read again; the caller counts them.
    [[nodiscard]] std::size_t readSoFar() const { return readSoFar_; }
    void setReadSoFar(std::size_t bytes) { readSoFar_ = bytes; }

private:
    enum class State : std::uint8_t { behindBracket, betweenNumbers, inNumber };

    Parameters escParams_;
    State state_ = State::behindBracket;
    std::uint32_t value_ = 0;  ///< of the number being read
    std::size_t readSoFar_ = 0;
};

}  // namespace qxterm
