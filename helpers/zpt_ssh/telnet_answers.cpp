#include "zpt_ssh/telnet_answers.h"

#include <algorithm>
#include <string_view>

namespace zpt {
namespace {

enum : std::uint8_t {
    terminalType = 24,
    subnegotiationEnd = 240,
    subnegotiation = 250,
    willDo = 251,
    wontDo = 252,
    doIt = 253,
    dontDo = 254,
    iac = 255,
};

/// What the terminal looks for as well.
constexpr std::string_view prompt = "ogin:";

// IAC SB TERMINAL-TYPE IS "QXTERM" IAC SE
constexpr std::string_view typeIs{"\xFF\xFA\x18\x00QXTERM\xFF\xF0", 12};

void append(std::string& replies, std::uint8_t verb, std::uint8_t option) {
    for (const std::uint8_t byte : {std::uint8_t{iac}, verb, option}) replies += static_cast<char>(byte);
}

}  // namespace

std::size_t TelnetAnswers::take(std::span<char> block, std::string& replies) {
    std::size_t taken = 0;
    std::size_t length = 0;
    while (taken < block.size() && !over()) {
        const char byte = block[taken++];
        if (!next(static_cast<std::uint8_t>(byte), replies)) continue;
        lookForPrompt(byte);
        block[length++] = byte;
    }
    if (taken == length) return block.size();  // nothing to move
    const auto rest = block.subspan(taken);
    std::copy(rest.begin(), rest.end(), block.begin() + static_cast<std::ptrdiff_t>(length));
    return length + rest.size();
}

bool TelnetAnswers::next(std::uint8_t byte, std::string& replies) {
    switch (state_) {
        case State::text:
            if (byte != iac) return true;
            state_ = State::command;
            break;
        case State::command: command(byte); break;
        case State::ask:
            append(replies, byte == terminalType ? willDo : wontDo, byte);
            state_ = State::text;
            break;
        case State::tell: state_ = State::text; break;
        case State::option:
            option_ = byte;
            state_ = State::parameters;
            break;
        case State::parameters:
            if (byte == iac) state_ = State::parametersCommand;
            break;
        case State::parametersCommand:
            state_ = State::parameters;  // a doubled IAC is one of the parameters' own
            if (byte != subnegotiationEnd) break;
            if (option_ == terminalType) replies += typeIs;
            state_ = State::text;
            break;
    }
    return false;
}

void TelnetAnswers::command(std::uint8_t byte) {
    switch (byte) {
        case doIt: state_ = State::ask; break;
        case subnegotiation: state_ = State::option; break;
        case willDo:
        case wontDo:
        case dontDo: state_ = State::tell; break;
        default: state_ = State::text; break;
    }
}

/// No beginning of the prompt but its first character is found again inside it.
void TelnetAnswers::lookForPrompt(char byte) {
    if (byte == prompt[promptMatched_]) {
        ++promptMatched_;
    } else {
        promptMatched_ = byte == prompt.front() ? 1 : 0;
    }
    if (promptMatched_ < prompt.size()) return;
    promptSeen_ = true;
    promptMatched_ = 0;
}

}  // namespace zpt
