#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "replay_attempt.h"

namespace qxterm::scenario {

/// A line of the scenario that a log is turned into.
struct ReplayLine {
    enum class Kind : std::uint8_t {
        command,
        comment,  ///< begins with "#"
        session,  ///< a comment: a session begins
        remark,   ///< a comment: something is wrong with the log, or missing
    };
    std::string text;
    Kind kind = Kind::command;
    std::size_t logLine = 0;   ///< where it stands in the log; 0 for what belongs to no line
    std::size_t received = 0;  ///< bytes of a block that it receives
    std::size_t sent = 0;      ///< bytes that it types
};

/// The scenario that a log is turned into, line by line, and what its last line counts. Written by Replay.
class ReplayScript {
public:
    /// Hands the oldest line out; false when all have been taken.
    bool take(ReplayLine& line);

    /// The heading. name: of the log.
    void beginning(std::string_view name);
    void end();
    /// line: of the log; 0 for what belongs to none.
    void command(std::string text, std::size_t line = 0);
    void comment(const std::string& text, std::size_t line = 0);
    void remark(const std::string& text, std::size_t line);
    /// A session begins: what it is, and what of it the log cannot hold.
    void session(const ReplayAttempt& attempt);
    /// The profile of this name gets the settings with which the program connected.
    void profile(const char* name, const ReplayAttempt& attempt, bool hostGiven);

    /// The last line receives a block of so many bytes, or types them.
    void receives(std::size_t bytes);
    void types(std::size_t bytes);
    /// A serial event came without a text.
    void countUnread() { ++unread_; }

private:
    std::deque<ReplayLine> lines_;
    std::size_t sessions_ = 0;
    std::size_t blocks_ = 0;
    std::uint64_t bytes_ = 0;
    std::size_t remarks_ = 0;
    std::size_t unread_ = 0;
};

}  // namespace qxterm::scenario
