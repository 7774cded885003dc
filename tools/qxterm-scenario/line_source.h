#pragma once

#include <cstddef>
#include <string>

namespace qxterm::scenario {

/// Where the lines of a scenario come from.
class LineSource {
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    virtual ~LineSource() = default;

    /// Takes the next line that is neither blank nor a comment. False when there is none. ScriptFault when
    /// it cannot be read.
    virtual bool next(std::string& line) = 0;
    /// Called when the line taken last has been carried out, and before the next one is taken unless that one
    /// runs inside it.
    virtual void carriedOut() {}
    /// Where the line taken last stands; lines count from 1.
    [[nodiscard]] virtual const std::string& file() const = 0;
    [[nodiscard]] virtual std::size_t line() const = 0;

    /// "FILE:LINE" of the line taken last.
    [[nodiscard]] std::string where() const { return file() + ":" + std::to_string(line()); }
};

}  // namespace qxterm::scenario
