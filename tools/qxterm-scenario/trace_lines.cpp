#include "trace_lines.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qxterm::scenario {

TraceLines::TraceLines(std::istream& stream) : stream_{stream}, buffer_(2 * longestPiece) {}

void TraceLines::fill() {
    if (first_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + first_, end_ - first_);
        end_ -= first_;
        first_ = 0;
    }
    while (end_ < longestPiece + 1 && stream_) {
        stream_.read(buffer_.data() + end_, static_cast<std::streamsize>(buffer_.size() - end_));
        end_ += static_cast<std::size_t>(stream_.gcount());
    }
}

bool TraceLines::read(TracePiece& piece) {
    if (end_ - first_ <= longestPiece && stream_) fill();
    if (first_ == end_) return false;
    const char* const from = buffer_.data() + first_;
    const std::size_t there = std::min(end_ - first_, longestPiece + 1);
    const auto* const feed = static_cast<const char*>(std::memchr(from, '\n', there));
    std::size_t length =
        feed != nullptr ? static_cast<std::size_t>(feed - from) : std::min(end_ - first_, longestPiece);
    piece.begins = !insideLine_;
    if (piece.begins) ++number_;
    piece.number = number_;
    piece.ended = feed != nullptr;
    piece.crLf = false;
    first_ += length + (piece.ended ? 1 : 0);
    if (length > 0 && from[length - 1] == '\r') {
        if (piece.ended) {
            --length;
            piece.crLf = true;
        } else if (length > 1 && first_ < end_) {
            --length;  // its line feed may follow
            --first_;
        }
    }
    piece.text.assign(from, length);
    insideLine_ = !piece.ended;
    return true;
}

bool TraceLines::next(TracePiece& piece) {
    if (!peeked_) return read(piece);
    if (atEnd_) return false;
    peeked_ = false;
    std::swap(piece, waiting_);
    return true;
}

const TracePiece* TraceLines::peek() {
    if (!peeked_) {
        atEnd_ = !read(waiting_);
        peeked_ = true;
    }
    return atEnd_ ? nullptr : &waiting_;
}

}  // namespace qxterm::scenario
