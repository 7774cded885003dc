#include "replay.h"

#include <algorithm>
#include <array>
#include <utility>

#include "bytes.h"

namespace qxterm::scenario {
namespace {

/// What an attempt waits for at most: what was to come may have been cut out of the log.
constexpr std::size_t mostHeld = 2000;
constexpr std::size_t mostHeldBytes = std::size_t{4} * 1024 * 1024;

constexpr std::array profiles{"replay1", "replay2"};
constexpr const char* dialogTime = "wait 350";  // the status dialog closes so long after a session is up
constexpr const char* dialTime = "wait 1000";   // a modem is dialled so long after its reset

/// The key that sends these bytes; 0 for none.
int keyOf(std::string_view bytes) {
    if (bytes == "\x1b[D") return 37;
    if (bytes == "\x1b[A") return 38;
    if (bytes == "\x1b[C") return 39;
    if (bytes == "\x1b[B") return 40;
    return bytes == "\x7f" ? 46 : 0;
}

}  // namespace

Replay::Replay(std::istream& log, std::string_view name) : reader_{log} { script_.beginning(name); }

bool Replay::next(ReplayLine& line) {
    while (!script_.take(line)) {
        if (ended_) return false;
        readOn();
    }
    return true;
}

void Replay::readOn() {
    TraceEntry entry;
    if (!reader_.next(entry)) {
        ended_ = true;
        settle();
        flushFirstBlock();
        tellUnreadEvent();
        script_.end();
        return;
    }
    const bool begins = entry.kind == Kind::network || entry.kind == Kind::ssh || entry.kind == Kind::serial;
    if (!begins && attempt_ && attempt_->learn(entry)) {
        const bool enough = attempt_->decidedBy(entry);
        heldBytes_ += entry.text.size();
        held_.push_back(std::move(entry));
        if (enough || held_.size() >= mostHeld || heldBytes_ >= mostHeldBytes) settle();
        return;
    }
    switch (entry.kind) {
        case Kind::network: beginAttempt(Type::network, entry.line); break;
        case Kind::ssh: beginAttempt(Type::ssh, entry.line); break;
        case Kind::serial: beginAttempt(Type::serial, entry.line); break;
        default:
            if (!attempt_) happen(entry);  // else it was learnt
            break;
    }
}

// --- an attempt --------------------------------------------------------------------------------------------

void Replay::beginAttempt(Type type, std::size_t line) {
    settle();
    flushFirstBlock();
    attempt_.emplace();
    attempt_->type = type;
    attempt_->line = line;
}

void Replay::settle() {
    if (!attempt_) return;
    const Attempt attempt = std::move(*attempt_);
    attempt_.reset();
    std::deque<TraceEntry> held = std::exchange(held_, {});
    heldBytes_ = 0;
    const bool noAddress = std::any_of(held.begin(), held.end(),
                                       [](const TraceEntry& entry) { return entry.kind == Kind::noAddress; });
    carryOut(attempt, !noAddress);
    for (const TraceEntry& entry : held) happen(entry);
}

void Replay::carryOut(const Attempt& attempt, bool hostGiven) {
    const bool socket = attempt.type == Type::network || attempt.type == Type::ssh;
    const bool newProgram =
        std::exchange(newProgram_, false) || !running_ || (socket && attempt.firstArrival && hadArrival_);
    endFormerSession();
    if (hostGiven) {
        script_.session(attempt);
    } else {
        script_.comment("the profile had no host: the user was told so, and got the options", attempt.line);
    }
    if (newProgram) otherProfile_ = false;
    const char* const profile = profiles[otherProfile_ ? 1 : 0];
    if (!running_) {
        script_.command(std::string{"ini Settings Profiles "} + profiles[0] + ' ' + profiles[1]);
    }
    session_ = attempt;
    script_.profile(profile, attempt, hostGiven);
    if (newProgram) {
        if (running_)
            script_.command("click cmdCancel");  // the status dialog, should a failure have kept it open
        script_.command(std::string{"start "} + profile, attempt.line);
        hadArrival_ = false;
    } else {
        script_.command("menu profile 1", attempt.line);
        script_.command(std::string{"choose lstprof "} + (otherProfile_ ? "1" : "0"));
        script_.command("click cmd3Dconn");
    }
    running_ = true;
    otherProfile_ = !otherProfile_;
    atHost_ = attempt.type == Type::serial || attempt.type == Type::loop;
    dialogOpen_ = attempt.type != Type::ssh;
    upAwaited_ = true;
    loopTold_ = false;
    carrierOn_ = false;
    openEvent_ = 0;
    dialAwaited_ = attempt.type == Type::modem && attempt.dial.has_value();
    loginSent_ = false;
    passwordSent_ = false;
    if (hostGiven) return;
    dialogOpen_ = false;
    upAwaited_ = false;
    script_.command("click cmdCancel");
}

void Replay::closeDialog() {
    if (!dialogOpen_) return;
    dialogOpen_ = false;
    script_.command(atHost_ ? dialogTime : "click cmdCancel");
}

void Replay::endFormerSession() {
    if (!running_ || session_.type == Type::none) return;
    flushFirstBlock();
    closeDialog();
    script_.comment("the log does not tell how the session ended");
    script_.command("menu connection 1");
    session_ = {};
    atHost_ = false;
}

/// For what comes without the lines of a connection: they were cut away.
void Replay::assumeSession(Type type, std::size_t line) {
    script_.remark("the beginning of this session is not in the log", line);
    const std::string unknown{"unknown"};
    const std::string telnet{"23"};
    carryOut({.type = type, .line = line, .host = unknown, .port = telnet, .commPort = std::string{"1"}});
    comeUp(line);
}

// --- a session ---------------------------------------------------------------------------------------------

void Replay::happen(const TraceEntry& entry) {
    if (entry.kind != Kind::serialText && entry.kind != Kind::remark) tellUnreadEvent();
    switch (entry.kind) {
        case Kind::arrival:
            if (entry.toProcess != entry.number - 1) {
                hadArrival_ = true;
                break;
            }
            if (hadArrival_) {
                // Only the first arrival of a program asks for one byte less.
                script_.remark("the program was started anew here; how it connected is not in the log",
                               entry.line);
                hadArrival_ = false;
                endFormerSession();
                newProgram_ = true;
                assumeSession(Type::network, entry.line);
            }
            hadArrival_ = true;
            firstBlock_.emplace();
            firstPieces_ = 0;
            break;
        case Kind::received: receive(entry); break;
        case Kind::sent: send(entry); break;
        case Kind::serialEvent: openEvent_ = entry.line; break;
        case Kind::serialText: receiveSerial(entry); break;
        case Kind::carrierOn: carrier(true, entry.line); break;
        case Kind::carrierOff: carrier(false, entry.line); break;
        case Kind::carrierTimeout:
            if (session_.type != Type::modem) assumeSession(Type::modem, entry.line);
            script_.command("serial event 1007", entry.line);
            atHost_ = false;
            break;
        case Kind::sessionUp: comeUp(entry.line); break;
        case Kind::dialled:
            if (std::exchange(dialAwaited_, false)) script_.command(dialTime, entry.line);
            break;
        case Kind::remark: script_.remark(entry.text, entry.line); break;
        case Kind::noAddress: break;  // the attempt has told it
        default:
            script_.remark("a line about a connection whose beginning is not in the log", entry.line);
            break;
    }
}

void Replay::comeUp(std::size_t line) {
    if (session_.type == Type::loop && loopTold_) {
        loopTold_ = false;
        closeDialog();
    } else if (upAwaited_ && session_.type != Type::none && session_.type != Type::loop) {
        upAwaited_ = false;
        flushFirstBlock();
        reachHost();
        closeDialog();
    } else if (upAwaited_ && session_.type == Type::loop) {
        upAwaited_ = false;
        loopTold_ = true;
    } else {
        Attempt attempt;
        attempt.type = Type::loop;
        attempt.line = line;
        carryOut(attempt);
        upAwaited_ = false;
        loopTold_ = true;
    }
}

/// What comes from a host, or is sent to one, tells that the connection stands.
void Replay::reachHost() {
    if (atHost_) return;
    atHost_ = true;
    switch (session_.type) {
        case Type::network: script_.command("socket connect"); break;
        case Type::ssh:
            script_.command("type " + bytesText(withoutReturn(session_.login.value_or("")) + '\r' +
                                                withoutReturn(session_.password.value_or("")) + '\r'));
            script_.command("socket connect");
            script_.command(dialogTime);
            break;
        case Type::modem:
            script_.command("serial carrier on");
            carrierOn_ = true;
            break;
        default: break;
    }
}

void Replay::receive(const TraceEntry& entry) {
    if (session_.type != Type::network && session_.type != Type::ssh)
        assumeSession(Type::network, entry.line);
    if (!firstBlock_) {
        receiveBlock(entry.text, entry.line);
        return;
    }
    // The byte that the first arrival leaves behind comes with the next one: both are one block here.
    if (firstPieces_ == 0) firstBlockLine_ = entry.line;
    *firstBlock_ += entry.text;
    if (!entry.goesOn && ++firstPieces_ == 2) flushFirstBlock();
}

void Replay::flushFirstBlock() {
    if (!firstBlock_) return;
    const std::string block = std::move(*firstBlock_);
    firstBlock_.reset();
    firstPieces_ = 0;
    receiveBlock(block, firstBlockLine_);
}

void Replay::receiveBlock(std::string_view bytes, std::size_t line) {
    if (bytes.empty()) return;
    reachHost();
    script_.command("socket data " + bytesText(bytes), line);
    script_.receives(bytes.size());
}

/// What the program sends in the replay without being told to, as a comment; empty for what was typed.
std::string Replay::sentByItself(std::string_view bytes) {
    if (isTelnetAnswer(bytes)) return "answers the host: ";
    if (session_.type == Type::ssh) {
        if (session_.login == bytes && !std::exchange(loginSent_, true)) return "the login name is sent: ";
        if (session_.password == bytes && !std::exchange(passwordSent_, true))
            return "the password is sent: ";
    } else if (session_.type == Type::modem) {
        if (session_.reset == bytes) return "resets the modem: ";
        if (session_.dial && *session_.dial + '\r' == bytes) return "dials: ";
    }
    return {};
}

void Replay::send(const TraceEntry& entry) {
    const std::string byItself = sentByItself(entry.text);
    if (!byItself.empty()) {
        script_.comment(byItself + bytesText(entry.text), entry.line);
        return;
    }
    if (entry.text.empty()) return;
    if (session_.type == Type::none || session_.type == Type::loop) assumeSession(Type::network, entry.line);
    flushFirstBlock();
    reachHost();
    const std::string text = bytesText(entry.text);
    if (const int key = keyOf(entry.text); key != 0) {
        script_.command("key " + std::to_string(key), entry.line);
    } else if (entry.text.size() == 1) {
        script_.command("type " + text, entry.line);
    } else {
        script_.comment("a function key was pressed, or text was pasted", entry.line);
        script_.command("clipboard " + text, entry.line);
        script_.command("menu edit 1", entry.line);
    }
    script_.types(entry.text.size());
}

void Replay::tellUnreadEvent() {
    if (openEvent_ == 0) return;
    script_.remark("bytes that arrived here were read later, and are not in the log", openEvent_);
    openEvent_ = 0;
    script_.countUnread();
}

void Replay::receiveSerial(const TraceEntry& entry) {
    openEvent_ = 0;
    if (session_.type != Type::serial && session_.type != Type::modem)
        assumeSession(Type::serial, entry.line);
    if (entry.text.empty()) {
        script_.remark("bytes that arrived here had been read before, and are not in the log", entry.line);
        script_.countUnread();
        return;
    }
    script_.command("serial data " + bytesText(entry.text), entry.line);
    script_.receives(entry.text.size());
}

void Replay::carrier(bool on, std::size_t line) {
    if (session_.type != Type::serial && session_.type != Type::modem) assumeSession(Type::modem, line);
    if (carrierOn_ == on) {
        script_.command("serial event 5", line);
    } else {
        script_.command(on ? "serial carrier on" : "serial carrier off", line);
    }
    carrierOn_ = on;
    if (on) {
        atHost_ = true;
    } else if (session_.type == Type::modem) {
        atHost_ = false;
    }
}

}  // namespace qxterm::scenario
