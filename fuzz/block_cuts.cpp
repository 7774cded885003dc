#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/run_time_error.h"
#include "support/program.h"
#include "support/snapshot.h"
#include "support/target.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/interpreter/sequence_parser.h"

// The result never depends on how the input was cut into blocks: the parameters of one control sequence, and
// the whole terminal. Left out are what depends on it on purpose: the repeat command (it counts the places of
// a block), telnet commands without an option (the byte behind is skipped in the same block only), and text
// at columns that the status-row command has put outside the line, or a back tab whose product leaves 16 bits
// (the end of a block is one more try to store it).
namespace qxterm::fuzz {
namespace {

struct Parsed {
    std::vector<std::int16_t> parameters;
    bool marker = false;
    std::size_t position = 0;
    bool complete = false;
    bool overflow = false;

    friend bool operator==(const Parsed&, const Parsed&) = default;
};

/// Reads a sequence of which more and more is there.
Parsed parse(std::string_view text, std::uint8_t seed) {
    SequenceParser parser;
    parser.start();
    Parsed result;
    std::size_t there = 0;
    try {
        for (Cutter cutter{text, seed}; cutter.more() && !result.complete;) {
            there += cutter.next().size();
            result.complete = parser.read(text.substr(0, there), result.position) != nullptr;
        }
    } catch (const RunTimeError&) {
        result.overflow = true;
    }
    const auto values = parser.parameters().values();
    result.parameters.assign(values.begin(), values.end());
    result.marker = parser.parameters().privateMarker();
    return result;
}

/// Without the bytes of what depends on the cut.
std::string tamed(std::string_view text) {
    std::string out{text};
    int digits = 0;  // in a row, at most, of the parameters so far
    int row = 0;
    for (char& c : out) {
        const bool digit = c >= '0' && c <= '9';
        row = digit ? row + 1 : 0;
        digits = digit || c == ';' || c == '?' ? std::max(digits, row) : digits;
        if (c == 'b' || c == 'x' || (c == 'Z' && digits > 3)) c = 'a';
        if (!digit && c != ';' && c != '?') digits = 0;
        if (c == '\xff') c = '~';
    }
    return out;
}

std::string interpret(std::string_view text, std::uint8_t seed) {
    startProgram();
    for (Cutter cutter{text, seed}; cutter.more();) processInput(cutter.next());
    return terminalState();
}

void run(Input input) {
    Steering steering{input};
    const auto seed = static_cast<std::uint8_t>(steering.byte() | 1U);  // never whole
    const std::string text = tamed(steering.rest());
    require(parse(text, 0) == parse(text, seed), "parameters do not depend on the cut");
    require(interpret(text, 0) == interpret(text, seed), "the terminal does not depend on the cut");
}

const Target target{"block_cuts", run};

}  // namespace
}  // namespace qxterm::fuzz
