#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "replay_attempt.h"
#include "trace_reader.h"

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

/// Turns a trace log into a scenario: what was connected, received and typed. Every line is a comment, or a
/// command that can be carried out.
class Replay {
public:
    /// name: of the log, for the heading.
    Replay(std::istream& log, std::string_view name);

    /// False behind the last line.
    bool next(ReplayLine& line);
    /// Lines of the log that are a trace's, so far. With none at the end the file is no trace log.
    [[nodiscard]] std::size_t linesOfTrace() const { return reader_.linesOfTrace(); }

private:
    using Kind = TraceEntry::Kind;
    using Attempt = ReplayAttempt;
    using Type = ReplayAttempt::Type;

    void readOn();
    // an attempt
    void beginAttempt(Type type, std::size_t line);
    void settle();
    void carryOut(const Attempt& attempt, bool hostGiven = true);
    void describe(const Attempt& attempt);
    void endFormerSession();
    void assumeSession(Type type, std::size_t line);
    // a session
    void happen(const TraceEntry& entry);
    void receive(const TraceEntry& entry);
    void receiveBlock(std::string_view bytes, std::size_t line);
    void flushFirstBlock();
    void send(const TraceEntry& entry);
    void countBlock(std::size_t bytes);
    [[nodiscard]] std::string sentByItself(std::string_view bytes);
    void tellUnreadEvent();
    void receiveSerial(const TraceEntry& entry);
    void carrier(bool on, std::size_t line);
    void comeUp(std::size_t line);
    void reachHost();
    void closeDialog();

    void tellBeginning(std::string_view name);
    void tellEnd();
    void command(std::string text, std::size_t line = 0);
    void setting(const char* key, std::string_view value);
    void comment(const std::string& text, std::size_t line = 0);
    void remark(const std::string& text, std::size_t line);

    TraceReader reader_;
    std::deque<ReplayLine> out_;
    bool ended_ = false;

    std::optional<Attempt> attempt_;
    std::deque<TraceEntry> held_;  ///< entries that wait for the attempt
    std::size_t heldBytes_ = 0;

    bool running_ = false;       ///< a program was started
    bool newProgram_ = false;    ///< the next session is another program's
    bool hadArrival_ = false;    ///< its socket has received
    bool otherProfile_ = false;  ///< which of the two profiles is current
    Attempt session_;
    bool atHost_ = false;  ///< the host has accepted, or the port is open
    bool dialogOpen_ = false;
    bool loopTold_ = false;   ///< of a loop the second line of its start is still to come
    bool upAwaited_ = false;  ///< the line that the session is up is still to come
    bool carrierOn_ = false;
    bool dialAwaited_ = false;
    bool loginSent_ = false;
    bool passwordSent_ = false;
    std::optional<std::string> firstBlock_;  ///< waits for the byte that follows it
    int firstPieces_ = 0;
    std::size_t firstBlockLine_ = 0;
    std::size_t openEvent_ = 0;  ///< line of a serial event whose text has not come; 0: none

    std::size_t sessions_ = 0;
    std::size_t blocks_ = 0;
    std::uint64_t bytes_ = 0;
    std::size_t remarks_ = 0;
    std::size_t unread_ = 0;  ///< serial events without a text
};

}  // namespace qxterm::scenario
