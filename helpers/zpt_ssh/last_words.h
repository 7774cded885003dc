#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zpt {

/// What a client printed, as far as it is worth telling: the last line that is not blank. Any amount can be
/// fed, in any pieces; little of it is kept.
class LastWords {
public:
    /// Longest line that is kept, in bytes; of a longer one its beginning.
    static constexpr std::size_t longestLine = 300;

    void feed(std::string_view text);
    /// Control characters are left out.
    [[nodiscard]] std::string line() const;

private:
    std::string current_;
    std::string last_;
};

}  // namespace zpt
