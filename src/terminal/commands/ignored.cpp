#include "terminal/commands/ignored.h"

namespace qxterm {

void designateCharacterSet(HostInput& input) {
    constexpr std::string_view sets = "AB01}";
    if (input.atEnd()) {
        input.waitForMore();
    } else if (sets.find(input.data[input.position]) != std::string_view::npos) {
        ++input.position;
    }
}

}  // namespace qxterm
