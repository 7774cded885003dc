#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "terminal/model/output_state.h"

/// What the reader hands to the verb of a control character or a sequence.
namespace qxterm {

/// Parameters of a control sequence: those that held at least one digit, in order, any number of them.
class Parameters {
public:
    /// Parameter n, counted from 1, or the default when there are not so many.
    [[nodiscard]] std::int16_t valueOr(std::size_t n, std::int16_t fallback) const {
        return n <= count_ ? data()[n - 1] : fallback;
    }
    [[nodiscard]] std::span<const std::int16_t> values() const { return {data(), count_}; }
    /// The byte behind "[" was "?".
    [[nodiscard]] bool privateMarker() const { return privateMarker_; }

    // --- for the parser ------------------------------------------------------------------------------------
    void clear() {
        if (count_ > few_.size()) [[unlikely]]
            std::vector<std::int16_t>{}.swap(many_);  // what an extraordinary one took is given back
        count_ = 0;
        privateMarker_ = false;
    }
    void add(std::int16_t value) {
        if (count_ < few_.size()) [[likely]] {
            few_[count_++] = value;
        } else {
            addToMany(value);
        }
    }
    void setPrivateMarker() { privateMarker_ = true; }

private:
    [[nodiscard]] const std::int16_t* data() const {
        return count_ <= few_.size() ? few_.data() : many_.data();
    }
    void addToMany(std::int16_t value);

    /// An ordinary sequence allocates nothing.
    std::array<std::int16_t, 16> few_{};
    /// All of them, while they are more than those.
    std::vector<std::int16_t> many_;
    std::uint32_t count_ = 0;
    bool privateMarker_ = false;
};

/// The output being interpreted, and the control character or sequence in it that is being carried out: what
/// the reader and the verbs share.
struct HostInput {
    std::string_view data;
    /// Those of the sequence; none for control characters and sequences of ESC and one or two bytes.
    const Parameters& parameters;
    /// Bytes consumed: the next one is data[position]. While a verb runs its final character is the last one.
    std::size_t position = 0;
    /// Place of the sequence's first byte, the introducer.
    std::size_t start = 0;
    /// Set when the sequence's text, from the introducer to the position, is to be read again in front of the
    /// next block.
    bool carried = false;
    /// Set by a verb behind which the interpreter yields to the message loop.
    bool yields = false;
    /// The stream that the data belongs to: what is left of it is dropped when another one has begun.
    std::uint32_t stream = outputStream;
    /// Bit p: the repeat command that ends at position p has gone back in this block.
    std::vector<bool> repeatedAt{};

    [[nodiscard]] bool atEnd() const { return position >= data.size(); }
    [[nodiscard]] unsigned char next() const { return static_cast<unsigned char>(data[position]); }
    /// The block ends before the sequence does.
    void waitForMore() {
        carried = true;
        position = data.size();
    }
};

/// A verb: carries one sequence out.
using Verb = void (*)(HostInput&);

/// Makes the verb of a routine that takes the input, its parameters, or nothing.
template <auto routine>
void verb(HostInput& input) {
    if constexpr (requires { routine(input); }) {
        routine(input);
    } else if constexpr (requires { routine(input.parameters); }) {
        routine(input.parameters);
    } else {
        routine();
    }
}

}  // namespace qxterm
