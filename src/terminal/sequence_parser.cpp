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
        char c = data[position];
        if (isDigit(c)) {
            std::int32_t value = state_ == State::inNumber ? value_ : 0;
            do {
                value = toInt16(value * 10 + (c - '0'));
                if (++position == data.size()) break;
                c = data[position];
            } while (isDigit(c));
            value_ = static_cast<std::int16_t>(value);
            state_ = State::inNumber;
            if (position == data.size()) break;
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
