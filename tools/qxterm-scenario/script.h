#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "line_source.h"

namespace qxterm::scenario {

/// A line of a scenario that cannot be carried out. Not derived from std::exception: nothing but the tool's
/// own main catches it, also when it is raised deep inside a modal window.
struct ScriptFault {
    std::string message;
    std::string where{};  ///< "FILE:LINE", filled in by the one who knows the line
};

/// The lines of all files named on the command line, in order; each file is read when its turn comes,
/// standard input line by line.
class Script : public LineSource {
public:
    /// No file stands for standard input.
    explicit Script(std::vector<std::string> files);

    bool next(std::string& line) override;
    [[nodiscard]] const std::string& file() const override { return name_; }
    [[nodiscard]] std::size_t line() const override { return line_; }

private:
    bool openNext();
    /// The next line as it stands in the file that is being read; false at its end.
    bool takeLine(std::string& line);

    std::vector<std::string> files_;
    std::size_t nextFile_ = 0;
    std::string name_;
    std::string content_;
    bool fromInput_ = false;
    std::size_t position_ = 0;
    std::size_t line_ = 0;
};

/// True for the bytes that separate words.
[[nodiscard]] constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace qxterm::scenario
