#include "common/stream.h"

#include <algorithm>
#include <cstring>

namespace zpt {

void Stream::moveToFront() {
    std::memmove(buffer_.data(), buffer_.data() + begin_, count());
    end_ -= begin_;
    begin_ = 0;
}

std::span<char> Stream::room() {
    if (begin_ == end_ || end_ == capacity) moveToFront();
    return {buffer_.data() + end_, capacity - end_};
}

void Stream::append(std::string_view bytes) {
    if (capacity - end_ < bytes.size()) moveToFront();
    std::copy(bytes.begin(), bytes.end(), buffer_.data() + end_);
    end_ += bytes.size();
}

bool Stream::takeEnd() {
    if (!inputEnded_ || count() != 0 || endTaken_) return false;
    endTaken_ = true;
    return true;
}

}  // namespace zpt
