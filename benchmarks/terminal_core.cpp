#include "core.h"
#include "headless-session/session.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm::bench {
namespace {

class TerminalCore : public Core {
public:
    [[nodiscard]] const char* name() const override { return "qxterm"; }
    void reset() override { headless::startProgram(); }
    void feed(std::string_view block) override { processInput(block); }
};

}  // namespace

std::unique_ptr<Core> makeTerminalCore() {
    auto core = std::make_unique<TerminalCore>();
    core->reset();
    return core;
}

}  // namespace qxterm::bench
