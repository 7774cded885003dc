#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A person who works with the program: starts it with a profile, connects, reads and types, selects, copies
/// and pastes, changes options, saves the profile, looks at the help, disconnects, connects anew and exits.
/// Nothing that fails keeps this person from going on.
namespace qxterm::test {

struct Use {
    std::string_view type;  ///< "net", "serial", "modem", "ssh", "loop", or "none": no profile, no session

    /// Puts the profile into "qxterm.ini".
    void prepare() const;
    /// From the start to the last disconnection but one. Ends early when the program does.
    void work() const;
    /// Connects, if need be, and has the host send a line to the top of a blank screen.
    void hostSays(std::string_view line) const;
    /// Exits; what is asked about is answered so that the program ends.
    void leave() const;
};

/// Turns of a modal window's loop that were needed at most; a window that a person cannot get rid of is
/// closed by force, and counted.
inline std::vector<std::string> windowsThatStayed;

/// Text of a screen row in the store, and of what stands on the picture, without trailing blanks.
[[nodiscard]] std::string storedRow(std::int32_t row);
[[nodiscard]] std::string drawnRow(std::int32_t row);

}  // namespace qxterm::test
