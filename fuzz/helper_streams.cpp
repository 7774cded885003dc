#include <algorithm>
#include <deque>
#include <string>
#include <string_view>

#include "common/stream.h"
#include "support/target.h"
#include "zpt_ssh/last_words.h"
#include "zpt_ssh/telnet_answers.h"

// What goes through the helpers: bytes between terminal and host, of any length and in any order of readings
// and writings; a telnet server's questions before the login prompt; what a client prints.
namespace qxterm::fuzz {
namespace {

/// A direction of a relay beside a queue that does the same.
class Direction {
public:
    /// The sender has this many bytes, and more of them than there is room stay with it.
    void read(std::size_t wanted) {
        if (!stream_.wantsInput()) return;
        const std::span<char> room = stream_.room();
        require(!room.empty() && room.size() <= stream_.space(), "there is room where input is wanted");
        const std::size_t length = std::min(wanted, room.size());
        for (std::size_t at = 0; at < length; ++at) room[at] = next();
        for (std::size_t at = 0; at < length; ++at) twin_.push_back(room[at]);
        stream_.received(length);
    }
    void append(std::string_view bytes) {
        if (stream_.space() < bytes.size()) return;
        stream_.append(bytes);
        twin_.insert(twin_.end(), bytes.begin(), bytes.end());
    }
    void write(std::size_t wanted) {
        const std::span<const char> waiting = stream_.waiting();
        require(std::ranges::equal(waiting, twin_), "what waits is what came, in order");
        const std::size_t length = std::min(wanted, waiting.size());
        stream_.sent(length);
        twin_.erase(twin_.begin(), twin_.begin() + static_cast<std::ptrdiff_t>(length));
    }
    void end() {
        stream_.endInput();
        ended_ = true;
    }
    void check() {
        require(stream_.open() == !ended_, "the sender's end");
        require(stream_.space() == zpt::Stream::capacity - twin_.size(), "space");
        const bool over = ended_ && twin_.empty();
        const bool told = stream_.takeEnd();
        require(told == (over && !told_), "the end is told once, when all is sent");
        told_ = told_ || told;
        require(stream_.over() == told_, "over");
    }

private:
    char next() { return static_cast<char>(counter_++ * 31); }

    zpt::Stream stream_;
    std::deque<char> twin_;
    bool ended_ = false;
    bool told_ = false;
    unsigned counter_ = 0;
};

void relay(std::string_view text) {
    Direction direction;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        constexpr std::size_t unit = 1021;  // bytes, so that pieces and the buffer's end do not meet evenly
        const auto code = static_cast<std::uint8_t>(text[at]);
        const std::size_t length = static_cast<std::uint8_t>(text[at + 1]) * (code >= 128 ? unit : 1);
        switch (code % 8) {
            case 0:
            case 1:
            case 2: direction.read(length); break;
            case 3: direction.append(text.substr(at, std::min(length, text.size() - at))); break;
            case 7:
                if (code == 7) direction.end();
                break;
            default: direction.write(length); break;
        }
        direction.check();
    }
}

struct Answered {
    std::string text;
    std::string replies;
    bool over = false;
    friend bool operator==(const Answered&, const Answered&) = default;
};

Answered answer(std::string_view text, std::uint8_t seed) {
    zpt::TelnetAnswers answers;
    Answered all;
    for (Cutter cutter{text, seed}; cutter.more();) {
        std::string block{cutter.next()};
        const std::string before = block;
        const bool wasOver = answers.over();
        std::string replies;
        const std::size_t length = answers.take(block, replies);
        require(length <= block.size(), "the text is no longer than the block");
        require(replies.size() <= before.size() * 3 + 12, "replies are no longer than announced");
        if (wasOver) require(length == block.size() && block == before && replies.empty(), "untouched");
        all.text += block.substr(0, length);
        all.replies += replies;
    }
    all.over = answers.over();
    return all;
}

/// Replies are the terminal's own, and nothing of what the host said but an option's number.
void checkReplies(std::string_view replies) {
    using namespace std::string_view_literals;
    while (!replies.empty()) {
        constexpr std::string_view type = "\xFF\xFA\x18\0QXTERM\xFF\xF0"sv;
        if (replies.starts_with(type)) {
            replies.remove_prefix(type.size());
        } else {
            require(replies.size() >= 3 && replies[0] == '\xFF' &&
                        replies[1] == (replies[2] == '\x18' ? '\xFB' : '\xFC'),
                    "an option is accepted or refused");
            replies.remove_prefix(3);
        }
    }
}

/// The last line that is not blank, found by looking at the whole text.
std::string lastLine(std::string_view text) {
    std::string last;
    std::string current;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const bool end = at == text.size();
        if (end || text[at] == '\n' || text[at] == '\r') {
            if (current.find_first_not_of(' ') != std::string::npos) last = current;
            current.clear();
        } else if (static_cast<unsigned char>(text[at]) >= ' ') {
            if (current.size() < zpt::LastWords::longestLine) current += text[at];
        }
    }
    return last;
}

void print(std::string_view text, std::uint8_t seed) {
    zpt::LastWords words;
    for (Cutter cutter{text, seed}; cutter.more();) words.feed(cutter.next());
    require(words.line() == lastLine(text), "the last line that is not blank");
}

void run(Input input) {
    Steering steering{input};
    const std::uint8_t what = steering.byte();
    const auto seed = static_cast<std::uint8_t>(steering.byte() | 1U);  // never whole
    const std::string_view text = steering.rest();
    if (what % 2 == 0) {
        relay(text);
        return;
    }
    const Answered whole = answer(text, 0);
    require(whole == answer(text, seed), "the cut changes nothing");
    checkReplies(whole.replies);
    print(text, seed);
}

const Target target{"helper_streams", run};

}  // namespace
}  // namespace qxterm::fuzz
