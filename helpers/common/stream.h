#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace zpt {

/// One direction of a relayed connection: bytes that came in and wait to go out, in order. It holds a limited
/// number of them; while it is full nothing more is read, and the sender feels the receiver's pace.
class Stream {
public:
    static constexpr std::size_t capacity = 65536;

    /// True while more may be read from the sender.
    [[nodiscard]] bool wantsInput() const { return !inputEnded_ && count() < capacity; }
    /// How much more it can hold.
    [[nodiscard]] std::size_t space() const { return capacity - count(); }
    /// Where to read to; not empty while input is wanted.
    [[nodiscard]] std::span<char> room();
    void received(std::size_t bytes) { end_ += bytes; }
    /// Bytes that come from elsewhere than the sender. There has to be space for them.
    void append(std::string_view bytes);
    /// The sender will send no more.
    void endInput() { inputEnded_ = true; }

    /// What waits to go out.
    [[nodiscard]] std::span<const char> waiting() const { return {buffer_.data() + begin_, count()}; }
    void sent(std::size_t bytes) { begin_ += bytes; }
    /// True once, when the sender has ended and all is sent: the receiver is now to be told.
    [[nodiscard]] bool takeEnd();
    /// False once the sender has ended.
    [[nodiscard]] bool open() const { return !inputEnded_; }
    /// Nothing will ever go this way any more, and the receiver knows.
    [[nodiscard]] bool over() const { return endTaken_; }

private:
    void moveToFront();
    [[nodiscard]] std::size_t count() const { return end_ - begin_; }

    std::array<char, capacity> buffer_{};
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool inputEnded_ = false;
    bool endTaken_ = false;
};

}  // namespace zpt
