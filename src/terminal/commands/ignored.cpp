#include "terminal/commands/ignored.h"

namespace qxterm {

void designateCharacterSet(Sequence& sequence) {
    constexpr std::string_view sets = "AB01}";
    HostInput& input = sequence.input;
    if (input.atEnd()) {
        sequence.waitForMore();
    } else if (sets.find(input.data[input.position]) != std::string_view::npos) {
        ++input.position;
    }
}

}  // namespace qxterm
