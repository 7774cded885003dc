#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace qxterm {

/// Parameters of the control sequence being executed, those that held at least one digit, in order. Parameter
/// 1 is element 0.
extern std::vector<std::int16_t> escParams;
/// The byte behind "[" was "?".
extern bool privateMarker;

/// Longest text of a sequence that is carried from block to block, in bytes.
inline constexpr std::int32_t longestCarry = 1 << 20;

/// Reads the parameters of one control sequence byte by byte. A sequence that a block leaves unfinished is
/// not read again from its beginning with the next block: the parser goes on where it stopped, so that the
/// cost of a sequence does not depend on how it was cut into blocks.
class SequenceParser {
public:
    /// Forgets what was read; the next byte is the one behind "[".
    void start();
    /// Reads on from data[position], 0-based, to the final character. Returns false when the data ends
    /// before; position then is the data's length. On true position stands on the final character. Error 6
    /// for a value above 32767: position stands on the digit.
    bool readParameters(std::string_view data, std::size_t& position);

    /// Bytes of the sequence, from its ESC on, that need not be read again; the caller counts them.
    [[nodiscard]] std::size_t readSoFar() const { return readSoFar_; }
    void setReadSoFar(std::size_t bytes) { readSoFar_ = bytes; }

private:
    enum class State : std::uint8_t { behindBracket, betweenNumbers, inNumber };
    /// Reads digits from data[position] on; returns false when the data ends behind them.
    bool readNumber(std::string_view data, std::size_t& position);

    State state_ = State::behindBracket;
    std::int16_t value_ = 0;
    std::size_t readSoFar_ = 0;
};

}  // namespace qxterm
