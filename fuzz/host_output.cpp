#include <cstdint>
#include <string>
#include <string_view>

#include "diag/error_trap.h"
#include "platform/headless/picture_box.h"
#include "support/program.h"
#include "support/snapshot.h"
#include "support/target.h"
#include "terminal/interpreter/interpreter.h"

// Any bytes from the host, cut as the first byte says. Each input runs twice: with the quick ways for
// ordinary runs, and with a failure planned for no routine at all, which sends everything through the general
// way. Both must end in the same state, with the same window, by as many text calls.
namespace qxterm::fuzz {
namespace {

struct Outcome {
    std::string terminal;
    std::string window;
    std::uint64_t texts;
};

Outcome interpret(std::string_view text, std::uint8_t seed, bool generalWay) {
    startProgram();
    if (generalWay) planFault("no routine", errors::overflow);
    headless::clearDrawCounts();
    for (Cutter cutter{text, seed}; cutter.more();) {
        processInput(cutter.next());
        checkTerminal();
    }
    require(sends().empty(), "nothing is sent without a session");
    clearPlannedFaults();
    return {terminalState(), windowState(), headless::drawCounts().text};
}

void run(Input input) {
    Steering steering{input};
    const std::uint8_t seed = steering.byte();
    const Outcome quick = interpret(steering.rest(), seed, false);
    const Outcome general = interpret(steering.rest(), seed, true);
    require(quick.terminal == general.terminal, "both ways store the same");
    require(quick.window == general.window, "both ways draw the same");
    require(quick.texts == general.texts, "both ways draw as often");
}

const Target target{"host_output", run};

}  // namespace
}  // namespace qxterm::fuzz
