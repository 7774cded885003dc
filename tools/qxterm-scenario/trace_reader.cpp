#include "trace_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace qxterm::scenario {
namespace {

constexpr std::string_view connectHeading = "connectPort() - ";
constexpr std::string_view arrivalHeading = "comnet2_DataArrival()";
constexpr std::string_view requestHeading = "GetNetworkBytes(): Requested count=";
constexpr std::string_view receivedHeading = "BYTES>>";
constexpr std::string_view sentHeading = "BYTES<<";
constexpr std::string_view serialHeading = "Comser_OnComm() - MSCOMM_E";
constexpr std::string_view serialEventLine = "Comser_OnComm() - MSCOMM_EV_RECEIVE";
constexpr std::string_view serialTextHeading = "Comser_OnComm() - MSCOMM_EV_RECEIVE ";
constexpr std::string_view carrierLine = "Comser_OnComm() - MSCOMM_EV_CD";
constexpr std::string_view carrierOnLine = "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is TRUE";
constexpr std::string_view carrierOffLine = "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is FALSE";
constexpr std::string_view carrierTimeoutLine = "Comser_OnComm() - MSCOMM_ER_CDTO";
constexpr std::string_view dialHeading = "modemConnect() - Phone Number: ";
constexpr std::string_view helperHeading = "TerminateProcess(proc.hProcess,lErr) failed lErr=";
constexpr std::array headings{connectHeading, arrivalHeading, requestHeading, receivedHeading,
                              sentHeading,    serialHeading,  dialHeading,    helperHeading};

constexpr std::size_t dumpWidth = 32;  // bytes in a line of a dump
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isTrace(std::string_view text) {
    return std::any_of(headings.begin(), headings.end(),
                       [text](std::string_view heading) { return text.starts_with(heading); });
}

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/// Pairs of digits with a blank behind each, at most a line of a dump. A blank may be missing at the end.
struct DumpLine {
    std::string bytes;
    std::string_view rest;
};
DumpLine dumpLine(std::string_view text) {
    DumpLine line;
    while (line.bytes.size() < dumpWidth && text.size() >= 2) {
        const int high = digitValue(text[0]);
        const int low = digitValue(text[1]);
        if (high < 0 || low < 0 || (text.size() > 2 && text[2] != ' ')) break;
        line.bytes += static_cast<char>(high * 16 + low);
        text.remove_prefix(std::min<std::size_t>(3, text.size()));
    }
    line.rest = text;
    return line;
}

/// A further line of a dump: nothing but digits, and characters only behind a full line.
bool isDumpLine(std::string_view text) {
    const DumpLine line = dumpLine(text);
    return !line.bytes.empty() && (line.rest.empty() || line.bytes.size() == dumpWidth);
}

/// The number at the beginning of a text, which is cut off; none leaves the text as it is.
std::optional<std::int64_t> takeNumber(std::string_view& text) {
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

bool take(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning)) return false;
    text.remove_prefix(beginning.size());
    return true;
}

std::string counted(std::size_t number, const char* things) { return std::to_string(number) + ' ' + things; }

}  // namespace

std::string forComment(std::string_view text, std::size_t longest) {
    constexpr const char* digits = "0123456789abcdef";
    std::string shown;
    for (const char c : text.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 32 && byte < 127 && c != '\\') {
            shown += c;
        } else {
            shown += "\\x";
            shown += digits[byte >> 4U];
            shown += digits[byte & 15U];
        }
    }
    if (text.size() > longest) shown += "...";
    return shown;
}

bool TraceReader::next(TraceEntry& entry) {
    while (ready_.empty()) {
        if (ended_) return false;
        if (inSerialText_) {
            readSerialText();
        } else if (lines_.next(piece_)) {
            readLine();
        } else {
            ended_ = true;
            tellEnd();
        }
    }
    entry = std::move(ready_.front());
    ready_.pop_front();
    return true;
}

void TraceReader::add(Kind kind, std::string_view text, std::int64_t number) {
    tellForeignLines();
    if (kind != Kind::received) tellMissingBlock();
    ready_.push_back({kind, piece_.number, std::string{text}, number, 0, false});
    endsWithSerialText_ = false;
}

void TraceReader::remark(const std::string& text) {
    ready_.push_back({Kind::remark, piece_.number, text, 0, 0, false});
}

void TraceReader::readLine() {
    cut_ = !piece_.ended;
    if (piece_.ended && !lineFeedsOnly_) lineFeedsOnly_ = !piece_.crLf;
    std::string_view text = piece_.text;
    if (piece_.number == 1 && piece_.begins) take(text, byteOrderMark);
    if (!piece_.begins || !isTrace(text)) {
        addForeignLine();
        return;
    }
    ++linesOfTrace_;
    readTraceLine(text);
}

void TraceReader::readTraceLine(std::string_view text) {
    if (take(text, connectHeading)) {
        readConnectLine(text);
    } else if (take(text, arrivalHeading)) {
        readArrival(text);
    } else if (take(text, requestHeading)) {
        readRequest(text);
    } else if (take(text, receivedHeading)) {
        readDump(Kind::received, text);
    } else if (take(text, sentHeading)) {
        readDump(Kind::sent, text);
    } else if (text.starts_with(serialHeading)) {
        readSerialLine(text);
    } else if (take(text, dialHeading)) {
        add(Kind::dialled, text);
    } else {
        tellForeignLines();
        remark("a helper of an SSH session could not be ended: " + forComment(text, 200));
    }
}

void TraceReader::readConnectLine(std::string_view text) {
    constexpr std::array flows{"MSCOMM_HANDSHAKE_NONE", "MSCOMM_HANDSHAKE_XONXOFF", "MSCOMM_HANDSHAKE_RTS",
                               "MSCOMM_HANDSHAKE_RTSXONXOFF"};
    if (take(text, "Connection Type: ")) {
        if (text == "Network") return add(Kind::network);
        if (text == "SSH") return add(Kind::ssh);
        if (text == "Serial or Modem") return add(Kind::serial);
    } else if (text == "Missing network address") {
        return add(Kind::noAddress);
    } else if (take(text, "Network Address: ")) {
        return add(Kind::address, text);
    } else if (take(text, "Network Port: ")) {
        return add(Kind::port, text);
    } else if (take(text, "Communication Port: ")) {
        return add(Kind::commPort, text);
    } else if (take(text, "Flow Control: ")) {
        for (std::size_t n = 0; n < flows.size(); ++n) {
            if (text == flows[n]) return add(Kind::flowControl, {}, static_cast<std::int64_t>(n));
        }
    } else if (text == "modemConnect - MODEM_RESET") {
        return add(Kind::modemReset);
    } else if (text == "g_bConnectActive is TRUE") {
        return add(Kind::sessionUp);
    }
    addForeignLine();
}

void TraceReader::readArrival(std::string_view text) {
    if (take(text, ": processing ") || take(text, " Rentry: ")) return;
    std::string_view rest = text;
    if (!take(rest, ": ")) return addForeignLine();
    const auto announced = takeNumber(rest);
    if (!announced || !take(rest, " bytes incoming, ")) return addForeignLine();
    const auto wanted = takeNumber(rest);
    if (!wanted) return addForeignLine();
    add(Kind::arrival, {}, *announced);
    ready_.back().toProcess = *wanted;
}

void TraceReader::readRequest(std::string_view text) {
    tellForeignLines();
    tellMissingBlock();
    const auto requested = takeNumber(text);
    if (!requested || !take(text, ", actual: ")) return addForeignLine();
    announced_ = takeNumber(text);
}

void TraceReader::tellMissingBlock() {
    if (!announced_) return;
    const std::int64_t bytes = *announced_;
    announced_.reset();
    if (bytes > 0)
        remark("a block of " + counted(static_cast<std::size_t>(bytes), "bytes") + " is missing here");
}

void TraceReader::readDump(Kind kind, std::string_view digits) {
    const auto announced = kind == Kind::received ? std::exchange(announced_, std::nullopt) : std::nullopt;
    take(digits, " ");
    DumpLine line = dumpLine(digits);
    add(kind, line.bytes);
    const std::size_t heading = piece_.number;
    std::size_t total = line.bytes.size();
    bool broken = !line.rest.empty() && line.bytes.size() < dumpWidth;
    const auto complete = [&] { return announced && static_cast<std::int64_t>(total) >= *announced; };
    while (!broken && line.bytes.size() == dumpWidth && !complete()) {
        const TracePiece* following = lines_.peek();
        if (following == nullptr || !following->begins || !isDumpLine(following->text)) break;
        (void)lines_.next(piece_);
        cut_ = !piece_.ended;
        ++linesOfTrace_;
        line = dumpLine(piece_.text);
        total += line.bytes.size();
        if (ready_.back().text.size() + line.bytes.size() > longestText) {
            ready_.back().goesOn = true;
            ready_.push_back({kind, heading, {}, 0, 0, false});
        }
        ready_.back().text += line.bytes;
        broken = !line.rest.empty() && line.bytes.size() < dumpWidth;
    }
    if (broken) remark("the dump is broken off in this line");
    if (announced && static_cast<std::int64_t>(total) != *announced) {
        remark("of a block of " + std::to_string(*announced) + " bytes there are " + std::to_string(total));
    }
}

void TraceReader::readSerialLine(std::string_view text) {
    const bool eventOpen = std::exchange(eventOpen_, false);
    if (text == serialEventLine && eventOpen && cut_) {
        // The cut beginning of its text.
    } else if (text == serialEventLine) {
        add(Kind::serialEvent);
        eventOpen_ = true;
    } else if (text.starts_with(serialTextHeading)) {
        if (!eventOpen) remark("a text of the serial line without its event");
        add(Kind::serialText);
        piece_.text.erase(
            0, static_cast<std::size_t>(text.data() - piece_.text.data()) + serialTextHeading.size());
        ready_.back().text = piece_.text;
        inSerialText_ = true;
        readSerialText();
    } else if (text == carrierOnLine) {
        add(Kind::carrierOn);
    } else if (text == carrierOffLine) {
        add(Kind::carrierOff);
    } else if (text == carrierTimeoutLine) {
        add(Kind::carrierTimeout);
    } else if (text != carrierLine) {
        addForeignLine();
    }
}

bool TraceReader::serialTextEnds(const TracePiece& next) const {
    // The log writes CR LF behind each of its lines; a lone line feed was received.
    if (!next.begins || (!piece_.crLf && !lineFeedsOnly_.value_or(false))) return false;
    // The line of an event stands before each of its texts.
    return isTrace(next.text) && !next.text.starts_with(serialTextHeading);
}

/// The text may hold line ends: it goes on up to a line that is a trace's.
void TraceReader::readSerialText() {
    if (ready_.empty()) ready_.push_back({Kind::serialText, piece_.number, {}, 0, 0, false});
    for (;;) {
        cut_ = !piece_.ended;
        std::string_view lineEnd;
        if (piece_.ended) lineEnd = piece_.crLf || lineFeedsOnly_.value_or(false) ? "\r\n" : "\n";
        const TracePiece* following = lines_.peek();
        if (following == nullptr || serialTextEnds(*following)) break;
        if (following->begins && lineFeedsOnly_.value_or(false) && !toldLineFeeds_) {
            toldLineFeeds_ = true;
            ready_.push_front({Kind::remark, piece_.number,
                               "the line ends of this log were changed to line feeds: those inside of serial "
                               "text are taken for CR LF",
                               0, 0, false});
        }
        std::string& text = ready_.back().text;
        text += lineEnd;
        (void)lines_.next(piece_);
        text += piece_.text;
        if (text.size() >= TraceLines::longestPiece) {
            ready_.back().goesOn = true;
            return;
        }
    }
    inSerialText_ = false;
    endsWithSerialText_ = true;
}

void TraceReader::addForeignLine() {
    if (firstForeign_ == 0) {
        firstForeign_ = piece_.number;
        foreignText_ = piece_.text.substr(0, 80);
    }
    lastForeign_ = piece_.number;
}

void TraceReader::tellForeignLines() {
    if (firstForeign_ == 0) return;
    std::string text = "no line of a trace: ";
    if (firstForeign_ == lastForeign_) {
        text += forComment(foreignText_);
    } else {
        text = "up to line " + std::to_string(lastForeign_) +
               " no lines of a trace; the first: " + forComment(foreignText_);
    }
    ready_.push_back({Kind::remark, firstForeign_, text, 0, 0, false});
    firstForeign_ = 0;
}

void TraceReader::tellEnd() {
    tellForeignLines();
    tellMissingBlock();
    if (endsWithSerialText_) {
        remark(
            "the log ends with text from the serial line: whether a line end at its end was received cannot "
            "be "
            "told");
    }
    if (cut_) remark("the log is cut off in this line");
}

}  // namespace qxterm::scenario
