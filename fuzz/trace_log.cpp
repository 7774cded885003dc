#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "player.h"
#include "replay.h"
#include "script.h"
#include "support/target.h"

// Any bytes as a trace log: each line of its replay is a comment or a command that can be read, and the whole
// can be played.
namespace qxterm::fuzz {
namespace {

class Made : public scenario::LineSource {
public:
    explicit Made(std::istream& log) : replay_{log, "log"} {}

    bool next(std::string& line) override {
        scenario::ReplayLine made;
        while (replay_.next(made)) {
            require(made.text.find_first_of("\r\n") == std::string::npos, "a line is one line");
            if (made.kind == scenario::ReplayLine::Kind::command) {
                line = made.text;
                return true;
            }
            require(made.text.starts_with('#'), "what is no command is a comment");
        }
        return false;
    }
    [[nodiscard]] const std::string& file() const override { return name_; }
    [[nodiscard]] std::size_t line() const override { return 0; }

private:
    scenario::Replay replay_;
    std::string name_ = "log";
};

void ignore(const headless::Record& /*record*/) {}

void run(Input input) {
    Steering steering{input};
    std::istringstream log{std::string{steering.rest()}};
    Made made{log};
    require(scenario::playQuietly(made, ignore) == 0, "the replay of a log can be played");
}

const Target target{"trace_log", run};

}  // namespace
}  // namespace qxterm::fuzz
