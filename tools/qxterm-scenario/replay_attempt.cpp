#include "replay_attempt.h"

namespace qxterm::scenario {
namespace {

constexpr std::string_view willTerminalType{"\xFF\xFB\x18"};
constexpr std::string_view terminalType{"\xFF\xFA\x18\0QXTERM\xFF\xF0", 12};
constexpr std::string_view wont{"\xFF\xFC"};

bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

}  // namespace

bool isTelnetAnswer(std::string_view bytes) {
    return bytes == willTerminalType || bytes == terminalType ||
           (bytes.size() == 3 && bytes.starts_with(wont));
}

std::string asSetting(std::string_view value) {
    constexpr std::size_t longest = 500;
    std::string text;
    for (const char c : value.substr(0, longest)) {
        if (static_cast<unsigned char>(c) >= 32) text += c;
    }
    return text;
}

bool ReplayAttempt::learn(const TraceEntry& entry) {
    switch (entry.kind) {
        case TraceEntry::Kind::address: host = asSetting(entry.text); return false;
        case TraceEntry::Kind::port: port = asSetting(entry.text); return false;
        case TraceEntry::Kind::commPort:
            (commPort.empty() ? commPort : lineSettings) = asSetting(entry.text);
            return false;
        case TraceEntry::Kind::flowControl: flowControl = entry.number; return false;
        case TraceEntry::Kind::modemReset: type = Type::modem; return false;
        case TraceEntry::Kind::dialled: dial = entry.text; break;
        case TraceEntry::Kind::arrival:
            if (entry.toProcess == entry.number - 1) firstArrival = true;
            break;
        case TraceEntry::Kind::sent:
            if (type == Type::modem && !reset) reset = entry.text;
            break;
        default: break;
    }
    if (type == Type::ssh) learnOfSsh(entry);
    return true;
}

/// The login name answers the first prompt for one, the password the prompt for it.
void ReplayAttempt::learnOfSsh(const TraceEntry& entry) {
    if (entry.kind == TraceEntry::Kind::received) {
        const std::string_view text = entry.text;
        passwordAsked = holds(text, "assword:");
        promptSeen = holds(text, "ogin:") && !holds(text, "ast") && !holds(text, "SunOS");
    } else if (entry.kind == TraceEntry::Kind::sent && !isTelnetAnswer(entry.text)) {
        if (promptSeen && !login) {
            login = entry.text;
        } else if (passwordAsked && !password) {
            password = entry.text;
        }
        promptSeen = false;
        passwordAsked = false;
    }
}

bool ReplayAttempt::decidedBy(const TraceEntry& entry) const {
    switch (type) {
        case Type::network:
            return entry.kind == TraceEntry::Kind::arrival || entry.kind == TraceEntry::Kind::received ||
                   entry.kind == TraceEntry::Kind::noAddress;
        case Type::ssh: return password.has_value() || entry.kind == TraceEntry::Kind::noAddress;
        case Type::modem: return entry.kind == TraceEntry::Kind::dialled;
        default: return entry.kind != TraceEntry::Kind::remark;
    }
}

std::string withoutReturn(std::string_view text) {
    if (text.ends_with('\r')) text.remove_suffix(1);
    return std::string{text};
}

}  // namespace qxterm::scenario
