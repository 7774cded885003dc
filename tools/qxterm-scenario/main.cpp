// qxterm-scenario [--lines] [FILE ...]: plays scenarios, from standard input when no file is named.

#include <string>
#include <utility>
#include <vector>

#include "player.h"

int main(int argc, char** argv) {
    std::vector<std::string> files{argv + 1, argv + argc};
    auto lines = qxterm::scenario::Lines::untold;
    if (!files.empty() && files.front() == "--lines") {
        lines = qxterm::scenario::Lines::told;
        files.erase(files.begin());
    }
    return qxterm::scenario::play(std::move(files), lines);
}
