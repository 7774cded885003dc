#pragma once

#include <array>
#include <cstdint>
#include <span>
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

/// The parameters of an ordinary control sequence, which needs no state: at most eight, one digit to four
/// each, with one ";" between them, and no "?". A sequence so close to the end of the block that a longer one
/// might not stand in it is not an ordinary one either, so that no byte needs a look at the length.
class OrdinaryParameters {
public:
    /// Reads on from data[position], 0-based, the byte behind "[", to the final character. Returns false for
    /// every other sequence; position then is where it was.
    bool read(std::string_view data, std::size_t& position);

    [[nodiscard]] std::span<const std::int16_t> values() const { return {values_.data(), count_}; }

private:
    static constexpr std::size_t most = 8;
    static constexpr int mostDigits = 4;
    static constexpr std::size_t longest = most * (mostDigits + 1) + 1;

    std::array<std::int16_t, most> values_;
    std::size_t count_ = 0;
};

inline bool OrdinaryParameters::read(std::string_view data, std::size_t& position) {
    if (data.size() - position < longest) return false;
    const char* at = data.data() + position;
    // 0 to 9 for a digit
    const auto digitAt = [](const char* place) {
        return static_cast<unsigned>(static_cast<unsigned char>(*place)) - '0';
    };
    unsigned digit = digitAt(at);
    std::size_t count = 0;
    while (digit <= 9) {
        if (count == most) return false;
        unsigned value = 0;
        for (int digits = 0; digit <= 9; ++digits) {
            if (digits == mostDigits) return false;
            value = value * 10 + digit;
            digit = digitAt(++at);
        }
        values_[count++] = static_cast<std::int16_t>(value);
        if (digit != ';' - '0') break;
        digit = digitAt(++at);
        if (digit > 9) return false;
    }
    if (*at == '?' || *at == ';') return false;
    count_ = count;
    position = static_cast<std::size_t>(at - data.data());
    return true;
}

}  // namespace qxterm
