#include "replay_script.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace qxterm::scenario {
namespace {

bool isNumber(std::string_view text) {
    std::int32_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && stop == text.data() + text.size();
}

}  // namespace

bool ReplayScript::take(ReplayLine& line) {
    if (lines_.empty()) return false;
    line = std::move(lines_.front());
    lines_.pop_front();
    return true;
}

void ReplayScript::beginning(std::string_view name) {
    comment("Made from the trace log " + forComment(name, 200) + " by qxterm-scenario --replay.");
    comment("It holds all that was typed, passwords too.");
    comment("");
    comment(
        "A trace log does not hold: when things happened, and so the phase of what blinks; size and place of "
        "the");
    comment(
        "window, and the font; keys that sent nothing, menus, dialogs, message boxes, scrolling back, "
        "selecting;");
    comment("how sessions ended; text that a serial line's poll has found; what was typed into a loop.");
    comment("Numbers in comments are those of the log's lines.");
    comment("");
}

void ReplayScript::end() {
    comment("");
    comment("The log ends here: sessions " + std::to_string(sessions_) + ", received blocks " +
            std::to_string(blocks_) + " with " + std::to_string(bytes_) + " bytes, remarks " +
            std::to_string(remarks_) + '.');
    if (unread_ > 0)
        comment("Serial arrivals whose text is not in the log: " + std::to_string(unread_) + '.');
}

void ReplayScript::session(const ReplayAttempt& attempt) {
    using Type = ReplayAttempt::Type;
    ++sessions_;
    std::string text = "session " + std::to_string(sessions_) + ": ";
    switch (attempt.type) {
        case Type::network: text += "telnet to " + attempt.host + " port " + attempt.port; break;
        case Type::ssh: text += "SSH to " + attempt.host + " port " + attempt.port; break;
        case Type::serial: text += "serial line COM" + attempt.commPort + ' ' + attempt.lineSettings; break;
        case Type::modem: text += "modem at COM" + attempt.commPort + ' ' + attempt.lineSettings; break;
        default: text += "loop"; break;
    }
    comment(text, attempt.line);
    lines_.back().kind = ReplayLine::Kind::session;
    if (attempt.type == Type::loop) {
        remark("what was typed into a loop is not in the log: its screens are missing", attempt.line);
    } else if (attempt.type == Type::serial || attempt.type == Type::modem) {
        remark(
            "what the program found at the port by itself, four times a second, is not in the log: text may "
            "be "
            "missing",
            attempt.line);
    } else if (attempt.type == Type::ssh && attempt.promptSeen && !attempt.login) {
        remark("the login name is not in the log", attempt.line);
    }
}

void ReplayScript::profile(const char* name, const ReplayAttempt& attempt, bool hostGiven) {
    using Type = ReplayAttempt::Type;
    const auto setting = [&](const char* key, std::string_view value) {
        command(std::string{"ini "} + name + ' ' + key + ' ' + asSetting(value));
    };
    const std::string knownHost = attempt.host.empty() ? "unknown" : attempt.host;
    switch (attempt.type) {
        case Type::network:
            setting("connect", "net");
            setting("host", hostGiven ? knownHost : "");
            if (isNumber(attempt.port)) setting("netport", attempt.port);
            break;
        case Type::ssh:
            setting("connect", "ssh");
            setting("host", hostGiven ? knownHost : "");
            if (isNumber(attempt.port)) setting("SSHnetport", attempt.port);
            break;
        case Type::serial:
        case Type::modem: {
            setting("connect", attempt.type == Type::modem ? "modem" : "serial");
            setting("commport", isNumber(attempt.commPort) ? attempt.commPort : "1");
            std::string_view rest = attempt.lineSettings;
            for (const char* key : {"baud", "parity", "databits", "stopBits"}) {
                const std::string_view value = rest.substr(0, rest.find(','));
                rest.remove_prefix(std::min(value.size() + 1, rest.size()));
                const bool digits = key[0] == 'b' || key[0] == 'd';
                if (!value.empty() && (!digits || isNumber(value))) setting(key, value);
            }
            if (attempt.flowControl) setting("flowControl", std::to_string(*attempt.flowControl));
            if (attempt.type != Type::modem) break;
            // Prefix, number and suffix are one text in the log.
            setting("reset", withoutReturn(attempt.reset.value_or("")));
            setting("prefix", attempt.dial.value_or(""));
            setting("phone", "");
            setting("suffix", "");
            setting("timeout", "999");  // no wait of the replay is longer
            break;
        }
        default: setting("connect", "loop"); break;
    }
}

void ReplayScript::receives(std::size_t bytes) {
    lines_.back().received = bytes;
    ++blocks_;
    bytes_ += bytes;
}

void ReplayScript::types(std::size_t bytes) { lines_.back().sent = bytes; }

void ReplayScript::command(std::string text, std::size_t line) {
    lines_.push_back({std::move(text), ReplayLine::Kind::command, line, 0, 0});
}

void ReplayScript::comment(const std::string& text, std::size_t line) {
    std::string whole{"#"};
    if (line != 0) whole += ' ' + std::to_string(line) + ':';
    if (!text.empty()) whole += ' ' + text;
    lines_.push_back({std::move(whole), ReplayLine::Kind::comment, line, 0, 0});
}

void ReplayScript::remark(const std::string& text, std::size_t line) {
    ++remarks_;
    lines_.push_back(
        {"# line " + std::to_string(line) + ": REMARK: " + text, ReplayLine::Kind::remark, line, 0, 0});
}

}  // namespace qxterm::scenario
