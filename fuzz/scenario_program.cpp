#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "arguments.h"
#include "commands.h"
#include "connection/transport_controls.h"
#include "line_source.h"
#include "platform/headless/socket.h"
#include "player.h"
#include "script.h"
#include "support/target.h"
#include "support/whole_program.h"

// Any text as a scenario that the whole program plays: every line that can be read is carried out, whatever
// state the lines before it have brought the program to.
namespace qxterm::fuzz {
namespace {

class Lines : public scenario::LineSource {
public:
    explicit Lines(std::string_view text) : text_{text} {}

    bool next(std::string& line) override {
        while (!text_.empty()) {
            const std::size_t end = std::min(text_.find('\n'), text_.size());
            line = text_.substr(0, end);
            text_.remove_prefix(std::min(end + 1, text_.size()));
            if (!playable(line)) continue;
            // A host cannot accept what was not asked for; the tool lets it.
            if (line.find("socket connect") != std::string::npos &&
                (line.find("onyield") != std::string::npos || !headless::socketInUse(comnet2)))
                impossible_ = true;
            leftovers_.told(line);
            return true;
        }
        return false;
    }
    void carriedOut() override {
        checkMemory();
        if (!impossible_) checkSession(leftovers_);
    }
    [[nodiscard]] const std::string& file() const override { return name_; }
    [[nodiscard]] std::size_t line() const override { return 0; }

private:
    bool playable(const std::string& line) {
        try {
            (void)scenario::readCommand(line);
            return affordable(line);
        } catch (const scenario::ScriptFault&) {
            return false;
        }
    }
    /// Time costs ticks: an hour a line would only make the fuzzer slow.
    bool affordable(const std::string& line) {
        constexpr std::int64_t longest = 120'000;  // ms, of all lines together
        const std::size_t at = line.find("wait");
        if (at == std::string::npos) return true;
        scenario::Arguments arguments{std::string_view{line}.substr(at)};
        (void)arguments.word("");
        if (!arguments.more()) return true;
        time_ += arguments.number("MS", 0, INT32_MAX);
        return time_ <= longest;
    }

    std::string_view text_;
    std::string name_ = "text";
    std::int64_t time_ = 0;
    bool impossible_ = false;
    Leftovers leftovers_;
};

void run(Input input) {
    Steering steering{input};
    Lines lines{steering.rest()};
    allowSends(Sends::anything);
    (void)scenario::playQuietly(lines, keepRecord);
}

const Target target{"scenario_program", run};

}  // namespace
}  // namespace qxterm::fuzz
