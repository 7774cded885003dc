#include "zpt_tnetd/stream.h"

#include <cstring>

namespace zpt {

std::span<char> Stream::room() {
    if (begin_ == end_) {
        begin_ = end_ = 0;
    } else if (end_ == capacity && begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, count());
        end_ -= begin_;
        begin_ = 0;
    }
    return {buffer_.data() + end_, capacity - end_};
}

bool Stream::takeEnd() {
    if (!inputEnded_ || count() != 0 || endTaken_) return false;
    endTaken_ = true;
    return true;
}

}  // namespace zpt
