#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "trace_lines.h"

namespace qxterm::scenario {

/// What a trace log tells, one thing at a time.
struct TraceEntry {
    enum class Kind : std::uint8_t {
        network,         ///< a network connection is opened
        ssh,             ///< an SSH connection is opened
        serial,          ///< a serial line or a modem is opened
        noAddress,       ///< the profile had no host
        address,         ///< text: the host
        port,            ///< text: the TCP port
        commPort,        ///< text: the port's number, or its line settings
        flowControl,     ///< number: 0 to 3
        modemReset,      ///< the modem's first step
        sessionUp,       ///< the status dialog closed on a session that is up
        arrival,         ///< number: bytes announced; toProcess: bytes that will be asked for
        received,        ///< text: a block from the socket
        sent,            ///< text: bytes sent
        serialEvent,     ///< bytes have arrived at the serial port
        serialText,      ///< text: what was read there
        carrierOn,       ///< the carrier came
        carrierOff,      ///< the carrier went
        carrierTimeout,  ///< no carrier in time
        dialled,         ///< text: the dial string
        remark,          ///< text: something about the log itself
    };
    Kind kind = Kind::remark;
    std::size_t line = 0;  ///< of the log, from 1
    std::string text{};
    std::int64_t number = 0;
    std::int64_t toProcess = 0;
    /// More of the same text follows in the next entry: it was too long for one.
    bool goesOn = false;
};

/// Reads a trace log ("output.txt"). Any bytes will do: what is no trace is remarked upon, and reading goes
/// on. Time is linear in the log's size, memory bounded by longestText.
class TraceReader {
public:
    /// Bytes of the longest text in one entry.
    static constexpr std::size_t longestText = std::size_t{1024} * 1024;

    explicit TraceReader(std::istream& stream) : lines_{stream} {}

    /// False at the end of the log.
    bool next(TraceEntry& entry);
    /// Lines that are a trace's, so far.
    [[nodiscard]] std::size_t linesOfTrace() const { return linesOfTrace_; }

private:
    using Kind = TraceEntry::Kind;

    void readLine();
    void readTraceLine(std::string_view text);
    void readConnectLine(std::string_view text);
    void readArrival(std::string_view text);
    void readRequest(std::string_view text);
    void readSerialLine(std::string_view text);
    void readDump(Kind kind, std::string_view digits);
    void readSerialText();
    void addForeignLine();
    void tellForeignLines();
    void tellEnd();
    void tellMissingBlock();
    void add(Kind kind, std::string_view text = {}, std::int64_t number = 0);
    void remark(const std::string& text);
    [[nodiscard]] bool serialTextEnds(const TracePiece& next) const;

    TraceLines lines_;
    TracePiece piece_;  ///< the one that is read
    std::deque<TraceEntry> ready_;
    std::size_t linesOfTrace_ = 0;
    bool ended_ = false;
    bool cut_ = false;                   ///< the line read last has no end
    std::optional<bool> lineFeedsOnly_;  ///< another program has changed the line ends
    bool toldLineFeeds_ = false;
    std::optional<std::int64_t> announced_;  ///< bytes that the next received block has
    bool eventOpen_ = false;                 ///< the line of a serial event came, its text has not
    bool inSerialText_ = false;
    bool endsWithSerialText_ = false;
    std::size_t firstForeign_ = 0;  ///< lines in a row that are no trace; 0: none
    std::size_t lastForeign_ = 0;
    std::string foreignText_;
};

/// A text in one line of a comment: what cannot be printed is escaped, and what is long cut off.
[[nodiscard]] std::string forComment(std::string_view text, std::size_t longest = 60);

}  // namespace qxterm::scenario
