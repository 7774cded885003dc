#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qxterm::scenario {

/// A line of a scenario that cannot be carried out. Not derived from std::exception: nothing but the tool's
/// own main catches it, also when it is raised deep inside a modal window.
struct ScriptFault {
    std::string message;
    std::string where{};  ///< "FILE:LINE", filled in by the one who knows the line
};

/// The lines of all files named on the command line, in order; each file is read when its turn comes.
class Script {
public:
    /// No file stands for standard input.
    explicit Script(std::vector<std::string> files);

    /// Takes the next line that is neither blank nor a comment. False at the end of the last file.
    /// ScriptFault when a file cannot be read.
    bool next(std::string& line);
    /// Where the line taken last stands; lines count from 1.
    [[nodiscard]] const std::string& file() const { return name_; }
    [[nodiscard]] std::size_t line() const { return line_; }
    /// "FILE:LINE" of the line taken last.
    [[nodiscard]] std::string where() const;

private:
    bool openNext();

    std::vector<std::string> files_;
    std::size_t nextFile_ = 0;
    std::string name_;
    std::string content_;
    std::size_t position_ = 0;
    std::size_t line_ = 0;
};

/// True for the bytes that separate words.
[[nodiscard]] constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace qxterm::scenario
