#include "common/win32/pump.h"

#include <algorithm>
#include <memory>

#include "common/stream.h"

namespace zpt {
namespace {

/// One direction of the pair, with its ends.
struct Direction {
    SOCKET from;
    SOCKET to;
    Stream stream;
};

bool wouldBlock() { return WSAGetLastError() == WSAEWOULDBLOCK; }

void makeReady(SOCKET handle) {
    u_long on = 1;
    ioctlsocket(handle, static_cast<long>(FIONBIO), &on);
    const int noDelay = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);
}

/// False when the connection is broken.
bool writeFrom(Direction& way) {
    const std::span<const char> waiting = way.stream.waiting();
    const int count = send(way.to, waiting.data(), static_cast<int>(waiting.size()), 0);
    if (count < 0) return wouldBlock();
    way.stream.sent(static_cast<std::size_t>(count));
    return true;
}

class Pump {
public:
    Pump(SOCKET terminal, SOCKET host, const HostFilter& filter)
        : outward_{std::make_unique<Direction>(Direction{terminal, host, {}})},
          inward_{std::make_unique<Direction>(Direction{host, terminal, {}})},
          filter_{filter} {}

    void run() {
        while (!(outward_->stream.over() && inward_->stream.over()) && turn()) {
        }
    }

private:
    bool turn() {
        FD_ZERO(&readable_);
        FD_ZERO(&writable_);
        ask(*outward_);
        ask(*inward_);
        return select(0, &readable_, &writable_, nullptr, nullptr) > 0 && serve(*outward_) && serve(*inward_);
    }

    void ask(const Direction& way) {
        if (wantsInput(way)) FD_SET(way.from, &readable_);
        if (!way.stream.waiting().empty()) FD_SET(way.to, &writable_);
    }

    /// The host is not heard while it does not take the replies to what it said before.
    [[nodiscard]] bool wantsInput(const Direction& way) const {
        if (!way.stream.wantsInput()) return false;
        return !filtered(way) || outward_->stream.space() >= longestReplies;
    }

    [[nodiscard]] bool filtered(const Direction& way) const { return &way == inward_.get() && filter_; }

    bool serve(Direction& way) {
        if (wantsInput(way) && FD_ISSET(way.from, &readable_) && !readInto(way)) return false;
        if (!way.stream.waiting().empty() && FD_ISSET(way.to, &writable_) && !writeFrom(way)) return false;
        if (way.stream.takeEnd()) shutdown(way.to, SD_SEND);
        return true;
    }

    /// False when the connection is broken.
    bool readInto(Direction& way) {
        std::span<char> room = way.stream.room();
        if (filtered(way)) room = room.first(std::min(room.size(), longestFilteredBlock));
        const int count = recv(way.from, room.data(), static_cast<int>(room.size()), 0);
        if (count < 0) return wouldBlock();
        if (count == 0) {
            way.stream.endInput();
        } else {
            take(way, room.first(static_cast<std::size_t>(count)));
        }
        return true;
    }

    void take(Direction& way, std::span<char> block) {
        if (!filtered(way)) {
            way.stream.received(block.size());
            return;
        }
        std::string replies;
        way.stream.received(filter_(block, replies));
        // A terminal that has ended its sending has nothing to answer with.
        if (outward_->stream.open()) outward_->stream.append(replies);
    }

    std::unique_ptr<Direction> outward_;
    std::unique_ptr<Direction> inward_;
    const HostFilter& filter_;
    fd_set readable_{};
    fd_set writable_{};
};

}  // namespace

void pump(SOCKET terminal, SOCKET host, const HostFilter& filter) {
    makeReady(terminal);
    makeReady(host);
    Pump{terminal, host, filter}.run();
}

}  // namespace zpt
