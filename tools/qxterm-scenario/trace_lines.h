#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace qxterm::scenario {

/// A line of a log, or a piece of one that is very long.
struct TracePiece {
    std::string text;
    std::size_t number = 0;  ///< of the line, from 1
    bool begins = false;     ///< the line begins with it
    bool ended = false;      ///< a line end followed; it is not in the text
    bool crLf = false;       ///< and was a carriage return and a line feed
};

/// The lines of any bytes. A line that is longer than a piece comes in several, so that memory is bounded.
class TraceLines {
public:
    static constexpr std::size_t longestPiece = std::size_t{64} * 1024;

    explicit TraceLines(std::istream& stream);

    /// False at the end.
    bool next(TracePiece& piece);
    /// The piece that `next` will give; null at the end.
    [[nodiscard]] const TracePiece* peek();

private:
    bool read(TracePiece& piece);
    void fill();

    std::istream& stream_;
    std::vector<char> buffer_;
    std::size_t first_ = 0;
    std::size_t end_ = 0;
    std::size_t number_ = 0;
    bool insideLine_ = false;
    bool peeked_ = false;
    bool atEnd_ = false;
    TracePiece waiting_;
};

}  // namespace qxterm::scenario
