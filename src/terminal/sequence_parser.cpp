#include "terminal/sequence_parser.h"

#include "platform/run_time_error.h"

namespace qxterm {

std::vector<std::int16_t> escParams;
bool privateMarker = false;

namespace {

// An ordinary sequence allocates nothing; what an extraordinary one took is given back.
constexpr std::size_t ordinaryParameters = 64;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void SequenceParser::start() {
    state_ = State::behindBracket;
    privateMarker = false;
    if (escParams.capacity() > 2 * ordinaryParameters) std::vector<std::int16_t>{}.swap(escParams);
    if (escParams.capacity() == 0) escParams.reserve(ordinaryParameters);
    escParams.clear();
}

bool SequenceParser::readParameters(std::string_view data, std::size_t& position) {
    while (position < data.size()) {
        char c = data[position];
        if (isDigit(c)) {
            if (!readNumber(data, position)) return false;
            c = data[position];
        }
        if (state_ == State::inNumber) escParams.push_back(value_);
        const bool marker = state_ == State::behindBracket && c == '?';
        state_ = State::betweenNumbers;
        if (marker) {
            privateMarker = true;
        } else if (c != ';') {
            return true;
        }
        ++position;
    }
    return false;
}

bool SequenceParser::readNumber(std::string_view data, std::size_t& position) {
    std::int32_t value = state_ == State::inNumber ? value_ : 0;
    std::size_t at = position;
    for (; at < data.size() && isDigit(data[at]); ++at) {
        value = value * 10 + (data[at] - '0');
        if (value > INT16_MAX) {
            position = at;
            throw RunTimeError{errors::overflow};
        }
    }
    position = at;
    value_ = static_cast<std::int16_t>(value);
    state_ = State::inNumber;
    return at < data.size();
}

}  // namespace qxterm
