#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zpt {

/// Answers what a telnet server asks before its login prompt. The terminal keeps to itself what comes before
/// that prompt, and answers none of it; but many a server shows no prompt until it knows the terminal's type.
///
/// The answers are the terminal's own: its type is QXTERM, every other option is refused, and what the server
/// says of itself (WILL, WONT, DONT) needs no answer. Commands are taken out of the text; once the prompt has
/// gone by everything passes untouched.
class TelnetAnswers {
public:
    /// Takes a block from the host, in any pieces. The text in it is moved to the block's beginning; returns
    /// its length. What has to be answered is appended to replies: at most 3 bytes for each of the block,
    /// and 12.
    [[nodiscard]] std::size_t take(std::span<char> block, std::string& replies);

    /// True once the login prompt has gone by.
    [[nodiscard]] bool over() const { return promptSeen_; }

private:
    enum class State : std::uint8_t {
        text,
        command,           ///< behind IAC
        ask,               ///< behind IAC DO
        tell,              ///< behind IAC WILL, WONT or DONT
        option,            ///< behind IAC SB
        parameters,        ///< behind IAC SB option
        parametersCommand  ///< behind an IAC in there
    };

    /// True for a byte of text.
    bool next(std::uint8_t byte, std::string& replies);
    void command(std::uint8_t byte);
    void lookForPrompt(char byte);

    State state_ = State::text;
    std::uint8_t option_ = 0;        ///< of the sub-negotiation that runs
    std::size_t promptMatched_ = 0;  ///< characters of the prompt that the text ends with
    bool promptSeen_ = false;
};

}  // namespace zpt
