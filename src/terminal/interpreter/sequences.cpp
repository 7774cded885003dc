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
[[gnu::noinline]] void carry(Sequence& sequence, std::size_t from) {
    parser.setReadSoFar(from - sequence.start);
    ErrorTrap{"doEscBracket"}.step([&] {
        if (sequence.input.position - sequence.start > longestCarry) throw RunTimeError{errors::outOfMemory};
    });
    sequence.carried = true;
}

}  // namespace

void resumeSequence(bool resumed) { resumes = resumed; }

void doEsc(Sequence& sequence) {
    trapped("doEsc", [&] {
        HostInput& input = sequence.input;
        if (input.atEnd()) {
            sequence.waitForMore();
        } else if (const Verb verb = escapeVerb(input.next()); verb != nullptr) {
            ++input.position;
            verb(sequence);
        }
    });
}

void doEscBracket(Sequence& sequence) {
    trapped("doEscBracket", [&] {
        HostInput& input = sequence.input;
        if (resumes && sequence.start == 0) [[unlikely]] {
            input.position = parser.readSoFar();
        } else {
            parser.start();
        }
        resumes = false;
        if (!parser.read(input.data, input.position)) {
            carry(sequence, input.position);
            return;
        }
        const std::size_t final = input.position - 1;
        const Verb verb = controlSequenceVerb(static_cast<unsigned char>(input.data[final]));
        Sequence whole{parser.parameters(), input, sequence.start};
        if (verb != nullptr) {
            verb(whole);
            if (!whole.carried) [[likely]]
                return;
        }
        carry(sequence, final);
    });
}

}  // namespace qxterm
