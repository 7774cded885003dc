#include <string>

#include "model/pair.h"
#include "support/target.h"

// Host output, keys, mouse, scroll bar and time, as the input's bytes say, for the program and for its twin:
// after each of them both hold and show the same.
namespace qxterm::fuzz {
namespace {

std::string step(test::Pair& pair, Steering& steering) {
    const std::uint8_t what = steering.byte();
    switch (what) {
        case 1: return pair.tick();
        case 2: return pair.scroll(steering.byte() * 2);
        case 3: return pair.scroll(501 - steering.byte() % 40);
        case 4:
        case 5:
        case 6: {
            const int column = steering.byte() % 83;
            const int row = steering.byte() % 24;
            if (what == 4) return pair.mouseDown(column, row);
            return what == 5 ? pair.mouseMove(column, row) : pair.mouseUp(column, row);
        }
        case 7: return pair.uncovered();
        case 8: return pair.copy();
        case 9: return pair.key(steering.byte());
        case 10: return pair.character(static_cast<char>(steering.byte()));
        default: {
            // A block: so many bytes.
            std::string block;
            for (int left = what; left > 0 && !steering.rest().empty(); --left)
                block += static_cast<char>(steering.byte());
            return pair.host(block);
        }
    }
}

bool withinTheModel(std::uint8_t code) { return (code < 33 || code > 36) && code != 45; }

void run(Input input) {
    Steering steering{input};
    test::Pair pair;
    constexpr int mostSteps = 400;
    for (int steps = 0; steps < mostSteps && !steering.rest().empty() && !pair.lost(); ++steps) {
        const std::string_view rest = steering.rest();
        if (rest.size() > 1 && rest[0] == 9 && !withinTheModel(static_cast<std::uint8_t>(rest[1]))) break;
        const std::string differs = step(pair, steering);
        require(differs.empty(), differs.c_str());
    }
}

const Target target{"model", run};

}  // namespace
}  // namespace qxterm::fuzz
