#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/host_bytes.h"
#include "model/terminal.h"

namespace qxterm::test {

/// The program and its twin, side by side: the same happens to both. A session is up that has nothing behind
/// it, so that keys are interpreted here. Each routine returns what differs then, as one line; empty when
/// nothing does.
class Pair {
public:
    /// Starts the program anew.
    Pair();

    std::string host(std::string_view bytes);
    std::string key(int code);
    std::string character(char c);
    std::string mouseDown(int column, int row);
    std::string mouseMove(int column, int row);
    std::string mouseUp(int column, int row);
    std::string scroll(int value);
    std::string tick();
    std::string uncovered();
    std::string copy();
    /// Any of these.
    std::string randomStep(Choices& choices, const HostLimits& limits);

    /// What happened last, in the words of a scenario.
    [[nodiscard]] const std::string& happened() const { return happened_; }
    /// The twin was led where it does not know what is right: it is of no use any more.
    [[nodiscard]] bool lost() const { return lost_; }

private:
    template <class Program, class Twin>
    std::string both(Program&& program, Twin&& twin);

    model::Terminal twin_;
    bool lost_ = false;
    std::string happened_;
};

/// What differs between the program and a twin; empty when nothing does. all: the whole scrollback too, else
/// only its newest lines.
[[nodiscard]] std::string difference(const model::Terminal& twin, bool all);

}  // namespace qxterm::test
