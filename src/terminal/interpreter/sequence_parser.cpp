#include "terminal/interpreter/sequence_parser.h"

#include "platform/run_time_error.h"

namespace qxterm {
namespace {

/// 0 to 9 for a digit, more for every other byte.
std::uint32_t digitOf(char c) { return static_cast<std::uint32_t>(static_cast<unsigned char>(c)) - '0'; }

}  // namespace

const char* SequenceParser::read(std::string_view data, std::size_t& position) {
    const char* at = data.data() + position;
    const char* const end = data.data() + data.size();
    const auto placeOf = [&](const char* byte) { return static_cast<std::size_t>(byte - data.data()); };
    State state = state_;
    std::uint32_t value = value_;
    for (; at != end; ++at) {
        std::uint32_t digit = digitOf(*at);
        if (digit <= 9 || state == State::inNumber) {
            if (state != State::inNumber) value = 0;
            state = State::inNumber;
            while (digit <= 9) {
                value = value * 10 + digit;
                ++at;
                if (value > INT16_MAX) [[unlikely]] {
                    position = placeOf(at);
                    throw RunTimeError{errors::overflow};
                }
                if (at == end) [[unlikely]]
                    break;
                digit = digitOf(*at);
            }
            if (at == end) [[unlikely]]
                break;
            escParams_.add(static_cast<std::int16_t>(value));
        }
        const char c = *at;
        if (c != ';') {
            if (c != '?' || state != State::behindBracket) {
                state_ = State::betweenNumbers;
                position = placeOf(at + 1);
                return at;
            }
            escParams_.setPrivateMarker();
        }
        state = State::betweenNumbers;
    }
    state_ = state;
    value_ = value;
    position = data.size();
    return nullptr;
}

}  // namespace qxterm
