#include "terminal/interpreter/sequences.h"

#include "diag/error_trap.h"
#include "terminal/interpreter/sequence_parser.h"
#include "terminal/interpreter/sequence_tables.h"

namespace qxterm {
namespace {

SequenceParser parser;
/// The parser has read on from the beginning of the data.
bool resumes = false;

/// The sequence is to be read again in front of the next block. The parser goes on with the byte at `from`.
[[gnu::noinline]] void carry(HostInput& input, std::size_t from) {
    parser.setReadSoFar(from - input.start);
    input.carried = false;
    ErrorTrap{"doEscBracket"}.step([&] {
        if (input.position - input.start > longestCarry) throw RunTimeError{errors::outOfMemory};
    });
    input.carried = true;
}

}  // namespace

const Parameters& escParams() { return parser.parameters(); }

void resumeSequence(bool resumed) { resumes = resumed; }

void doEsc(HostInput& input) {
    trapped("doEsc", [&] {
        if (input.atEnd()) {
            input.waitForMore();
            return;
        }
        const unsigned char byte = input.next();
        if (byte == control::bracket) {
            ++input.position;
            doEscBracket(input);
        } else if (const Verb verb = escapeVerb(byte); verb != nullptr) {
            ++input.position;
            verb(input);
        }
    });
}

void doEscBracket(HostInput& input) {
    trapped("doEscBracket", [&] {
        if (resumes && input.start == 0) [[unlikely]] {
            input.position = parser.readSoFar();
        } else {
            parser.start();
        }
        resumes = false;
        const char* const final = parser.read(input.data, input.position);
        if (final == nullptr) {
            carry(input, input.position);
            return;
        }
        const Verb verb = controlSequenceVerb(static_cast<unsigned char>(*final));
        if (verb != nullptr) {
            verb(input);
            if (!input.carried) [[likely]]
                return;
        }
        carry(input, static_cast<std::size_t>(final - input.data.data()));
    });
}

}  // namespace qxterm
