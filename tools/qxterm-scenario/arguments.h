#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qxterm::scenario {

/// The words of one command, taken from left to right. What does not fit raises a ScriptFault that says what
/// is wrong.
class Arguments {
public:
    explicit Arguments(std::string_view line);

    /// The whole command without the blanks around it.
    [[nodiscard]] const std::string& line() const { return line_; }
    /// True while words are left.
    [[nodiscard]] bool more() const;
    /// The next word; `what` names it for the message.
    std::string word(const char* what);
    /// The next word without taking it; empty when there is none.
    [[nodiscard]] std::string_view peek() const;
    std::int32_t number(const char* what, std::int32_t smallest, std::int32_t largest);
    /// "on" or "off".
    bool onOff();
    /// The rest as bytes.
    std::string bytes();
    /// The rest as it stands, behind one blank; empty when there is none.
    std::string text();
    /// Nothing may be left.
    void end() const;

private:
    [[nodiscard]] std::size_t wordStart() const;

    std::string line_;
    std::string original_;
    std::size_t place_ = 0;
};

}  // namespace qxterm::scenario
