#pragma once

#include <cstddef>
#include <deque>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "replay_attempt.h"
#include "replay_script.h"
#include "trace_reader.h"

namespace qxterm::scenario {

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
    void endFormerSession();
    void assumeSession(Type type, std::size_t line);
    // a session
    void happen(const TraceEntry& entry);
    void receive(const TraceEntry& entry);
    void receiveBlock(std::string_view bytes, std::size_t line);
    void flushFirstBlock();
    void send(const TraceEntry& entry);
    [[nodiscard]] std::string sentByItself(std::string_view bytes);
    void tellUnreadEvent();
    void receiveSerial(const TraceEntry& entry);
    void carrier(bool on, std::size_t line);
    void comeUp(std::size_t line);
    void reachHost();
    void closeDialog();

    TraceReader reader_;
    ReplayScript script_;
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
};

}  // namespace qxterm::scenario
