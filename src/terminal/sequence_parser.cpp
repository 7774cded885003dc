#include "terminal/sequence_parser.h"

#include "diag/checked.h"

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
    for (; position < data.size(); ++position) {
        const char c = data[position];
        if (isDigit(c)) {
            const std::int16_t before = state_ == State::inNumber ? value_ : std::int16_t{0};
            value_ = toInt16(before * 10 + (c - '0'));
            state_ = State::inNumber;
            continue;
        }
        if (state_ == State::inNumber) escParams.push_back(value_);
        if (state_ == State::behindBracket && c == '?') {
            privateMarker = true;
        } else if (c != ';') {
            state_ = State::betweenNumbers;
            return true;
        }
        state_ = State::betweenNumbers;
    }
    return false;
}

}  // namespace qxterm
