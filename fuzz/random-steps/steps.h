#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "line_source.h"
#include "model/host_bytes.h"
#include "support/whole_program.h"

namespace qxterm::fuzz {

/// What a scenario plans beside its ordinary steps.
struct Plan {
    bool faults = false;  ///< routines and calls of the platform fail now and then
    bool yields = false;  ///< commands run inside blocks of output
};

/// What the steps of all scenarios came to: that sessions really happened.
struct Tally {
    std::array<std::uint64_t, 6> sessions{};  ///< that came up, by connection type
    std::uint64_t inSession = 0;              ///< steps while one was up
    std::uint64_t inDialogs = 0;              ///< steps while a modal window was open
    std::uint64_t faults = 0;                 ///< planned
    std::uint64_t starts = 0;
};
[[nodiscard]] const Tally& tally();

/// A scenario of random commands, each chosen by what state the program is in: so that sessions of every kind
/// come up, are used and end, and dialogs are filled in. After each command what must hold is checked.
class Steps : public scenario::LineSource {
public:
    /// The same numbers give the same scenario. copy: where each line goes before it is carried out, or null.
    Steps(std::uint64_t seed, std::uint64_t scenario, std::uint32_t length, std::FILE* copy);

    bool next(std::string& line) override;
    void carriedOut() override;
    [[nodiscard]] const std::string& file() const override { return name_; }
    [[nodiscard]] std::size_t line() const override { return taken_; }

private:
    std::string choose();
    std::string setUp();
    std::string start();
    std::string inDialog();
    std::string connecting();
    std::string atTheScreen();
    std::string fromTheOtherEnd();
    std::string withTheMouse();
    std::string planned();
    std::string failing();
    std::string bytes();
    std::string profile();

    void count(std::string_view line);

    test::Choices choices_;
    bool sessionWasUp_ = false;
    Leftovers leftovers_;
    bool painted_ = false;  ///< the step that is carried out is a paint
    Plan plan_;
    std::uint32_t length_;
    std::size_t taken_ = 0;
    std::FILE* copy_;
    std::string name_ = "random steps";
};

}  // namespace qxterm::fuzz
