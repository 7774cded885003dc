#include "support/target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace qxterm::fuzz {
namespace {

const Target*& head() {
    static const Target* first = nullptr;
    return first;
}

}  // namespace

Target::Target(const char* name, void (*routine)(Input input)) : name_{name}, run_{routine}, next_{head()} {
    head() = this;
}

const Target* Target::first() { return head(); }

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

std::uint8_t Steering::byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t value = rest_.front();
    rest_ = rest_.subspan(1);
    return value;
}

std::string_view Steering::rest() const {
    return {reinterpret_cast<const char*>(rest_.data()), rest_.size()};
}

std::string_view Cutter::next() {
    constexpr std::uint32_t longest = 16;
    std::size_t length = text_.size();
    if (!whole_) {
        state_ = state_ * 1103515245U + 12345U;
        length = std::min<std::size_t>((state_ >> 16U) % longest + 1, length);
    }
    const std::string_view piece = text_.substr(0, length);
    text_.remove_prefix(length);
    return piece;
}

}  // namespace qxterm::fuzz
