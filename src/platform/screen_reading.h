#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/picture.h"

/// What programs that read the screen to their users are told of it, and when they are told of changes.
namespace qxterm {

/// What the screen says, as text.
struct ScreenReading {
    /// Selected columns of a row; last below first for none.
    struct Columns {
        int first = 0;
        int last = -1;
        [[nodiscard]] bool none() const { return last < first; }
        friend bool operator==(const Columns&, const Columns&) = default;
    };

    std::array<std::string, pictureRows> rows;  ///< without trailing blanks
    std::array<Columns, pictureRows> selected;
};

/// Where on the screen the user's attention is: the cursor, or the mark that keys move.
struct ScreenPlace {
    int column = 0;
    int row = 0;
    friend bool operator==(const ScreenPlace&, const ScreenPlace&) = default;
};

/// Filled at start-up with what the terminal knows.
struct ScreenReader {
    /// What the screen says now.
    ScreenReading (*read)() = [] { return ScreenReading{}; };
    /// Empty while there is no such place: the cursor is hidden or output is half way.
    std::optional<ScreenPlace> (*place)() = []() -> std::optional<ScreenPlace> { return std::nullopt; };
};
inline ScreenReader screenReader;

/// What has changed between two readings.
struct ScreenChanges {
    std::bitset<pictureRows> rows;
    bool selection = false;
};

/// When readers are told of changes, so that fast output does not flood them: at most four times a second,
/// and twenty while no more than two rows change at a time, as when somebody types.
class ChangePacer {
public:
    static constexpr std::int64_t longPause = 250;  ///< milliseconds
    static constexpr std::int64_t shortPause = 50;

    /// How long to wait before the next look; 0 when it may be now. now: milliseconds.
    [[nodiscard]] std::int64_t waitFrom(std::int64_t now) const;
    /// Looks: what has changed since the look before. The first look finds nothing new.
    ScreenChanges look(ScreenReading reading, std::int64_t now);
    /// Nobody listens: the next look is a first one.
    void forget() { last_.reset(); }

private:
    std::optional<ScreenReading> last_;
    std::int64_t lookedAt_ = 0;
    std::int64_t pause_ = 0;
};

}  // namespace qxterm
