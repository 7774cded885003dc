#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qxterm::fuzz {

using Input = std::span<const std::uint8_t>;

/// One fuzz target. Each file of fuzz/ defines exactly one; a fuzzer is linked with one of those files, the
/// replay program with all.
class Target {
public:
    /// name: also of the corpus folder; routine: does something with any input and ends the program by
    /// `require` when what must hold does not.
    Target(const char* name, void (*routine)(Input input));
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    [[nodiscard]] const char* name() const { return name_; }
    void run(Input input) const { run_(input); }

    /// All targets of this program.
    [[nodiscard]] static const Target* first();
    [[nodiscard]] const Target* next() const { return next_; }

private:
    const char* name_;
    void (*run_)(Input input);
    const Target* next_;
};

/// Ends the program, naming what did not hold, unless it does.
void require(bool holds, const char* what);

/// Takes the first bytes of an input for steering, and leaves the rest as content.
class Steering {
public:
    explicit Steering(Input input) : rest_{input} {}
    /// The next byte; 0 when there is none.
    std::uint8_t byte();
    /// What was not taken, one character a byte.
    [[nodiscard]] std::string_view rest() const;

private:
    Input rest_;
};

/// Cuts a text into pieces: 0 leaves it whole, any other seed makes pieces of 1 to 16 bytes that follow from
/// it.
class Cutter {
public:
    Cutter(std::string_view text, std::uint8_t seed) : text_{text}, whole_{seed == 0}, state_{seed} {}
    [[nodiscard]] bool more() const { return !text_.empty(); }
    std::string_view next();

private:
    std::string_view text_;
    bool whole_;
    std::uint32_t state_;
};

}  // namespace qxterm::fuzz
