#include "terminal/interpreter/sequence_parser.h"

#include "platform/run_time_error.h"

namespace qxterm {

bool SequenceParser::read(std::string_view data, std::size_t& position) {
    const char* at = data.data() + position;
    const char* const end = data.data() + data.size();
    const auto stopAt = [&](const char* place) { position = static_cast<std::size_t>(place - data.data()); };
    State state = state_;
    std::int32_t value = value_;
    for (; at != end; ++at) {
        // 0 to 9 for a digit
        const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(*at)) - '0';
        if (digit <= 9) {
            value = (state == State::inNumber ? value * 10 : 0) + static_cast<std::int32_t>(digit);
            state = State::inNumber;
            if (value <= INT16_MAX) continue;
            stopAt(at + 1);
            throw RunTimeError{errors::overflow};
        }
        if (state == State::inNumber) escParams_.add(static_cast<std::int16_t>(value));
        if (*at == ';') {
            state = State::betweenNumbers;
        } else if (*at == '?' && state == State::behindBracket) {
            escParams_.setPrivateMarker();
            state = State::betweenNumbers;
        } else {
            state_ = State::betweenNumbers;
            stopAt(at + 1);
            return true;
        }
    }
    state_ = state;
    value_ = value;
    stopAt(end);
    return false;
}

}  // namespace qxterm
