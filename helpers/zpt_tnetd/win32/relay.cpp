#include "zpt_tnetd/win32/relay.h"

#include <memory>
#include <utility>

#include "common/win32/system.h"
#include "zpt_tnetd/stream.h"

namespace zpt {
namespace {

class Socket {
public:
    Socket() = default;
    explicit Socket(SOCKET handle) : handle_{handle} {}
    Socket(Socket&& other) noexcept : handle_{std::exchange(other.handle_, INVALID_SOCKET)} {}
    Socket& operator=(Socket&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() {
        if (handle_ != INVALID_SOCKET) closesocket(handle_);
    }
    [[nodiscard]] SOCKET get() const { return handle_; }
    explicit operator bool() const { return handle_ != INVALID_SOCKET; }

private:
    SOCKET handle_ = INVALID_SOCKET;
};

void set(SOCKET handle, int level, int option) {
    const int on = 1;
    setsockopt(handle, level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

void makeNonBlocking(SOCKET handle) {
    u_long on = 1;
    ioctlsocket(handle, static_cast<long>(FIONBIO), &on);
}

sockaddr_in loopback4(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

sockaddr_in6 loopback6(std::uint16_t port) {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    address.sin6_port = htons(port);
    return address;
}

template <class Address>
Socket connected(const Address& address, int family) {
    Socket made{socket(family, SOCK_STREAM, IPPROTO_TCP)};
    if (!made || connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    return made;
}

/// The address family that the SSH connection uses is the one that its client listens with.
Socket connectForward(const RelayRequest& request) {
    if (request.ipVersion == 6) return connected(loopback6(request.forwardPort), AF_INET6);
    return connected(loopback4(request.forwardPort), AF_INET);
}

/// True when the terminal has already given up: it sends nothing before the host does, so what can be read
/// from it is its end.
bool givenUp(SOCKET terminal) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(terminal, &readable);
    timeval now{0, 0};
    if (select(0, &readable, nullptr, nullptr, &now) <= 0) return false;
    char byte = 0;
    return recv(terminal, &byte, 1, MSG_PEEK) <= 0;
}

/// The forward answers once the SSH client has logged in; until then connecting to it fails.
Socket awaitForward(const RelayRequest& request, SOCKET terminal) {
    constexpr DWORD pause = 250;  // milliseconds
    constexpr int tries = 120;
    for (int count = 0; count < tries && !givenUp(terminal); ++count) {
        if (Socket forward = connectForward(request)) return forward;
        Sleep(pause);
    }
    return {};
}

/// One direction of the pair, with its ends.
struct Direction {
    SOCKET from;
    SOCKET to;
    Stream stream;
};

bool wouldBlock() { return WSAGetLastError() == WSAEWOULDBLOCK; }

/// False when the connection is broken.
bool readInto(Direction& way) {
    const std::span<char> room = way.stream.room();
    const int count = recv(way.from, room.data(), static_cast<int>(room.size()), 0);
    if (count > 0) {
        way.stream.received(static_cast<std::size_t>(count));
    } else if (count == 0) {
        way.stream.endInput();
    } else {
        return wouldBlock();
    }
    return true;
}

bool writeFrom(Direction& way) {
    const std::span<const char> waiting = way.stream.waiting();
    const int count = send(way.to, waiting.data(), static_cast<int>(waiting.size()), 0);
    if (count < 0) return wouldBlock();
    way.stream.sent(static_cast<std::size_t>(count));
    return true;
}

class Pump {
public:
    Pump(SOCKET terminal, SOCKET forward)
        : outward_{std::make_unique<Direction>(terminal, forward)},
          inward_{std::make_unique<Direction>(forward, terminal)} {}

    /// Until both directions are over or the connection breaks.
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
        if (way.stream.wantsInput()) FD_SET(way.from, &readable_);
        if (!way.stream.waiting().empty()) FD_SET(way.to, &writable_);
    }

    bool serve(Direction& way) {
        if (way.stream.wantsInput() && FD_ISSET(way.from, &readable_) && !readInto(way)) return false;
        if (!way.stream.waiting().empty() && FD_ISSET(way.to, &writable_) && !writeFrom(way)) return false;
        if (way.stream.takeEnd()) shutdown(way.to, SD_SEND);
        return true;
    }

    std::unique_ptr<Direction> outward_;
    std::unique_ptr<Direction> inward_;
    fd_set readable_{};
    fd_set writable_{};
};

void relay(const RelayRequest& request, SOCKET terminal) {
    const Socket forward = awaitForward(request, terminal);
    if (!forward) return;
    for (SOCKET const handle : {terminal, forward.get()}) {
        makeNonBlocking(handle);
        set(handle, IPPROTO_TCP, TCP_NODELAY);
    }
    Pump{terminal, forward.get()}.run();
}

}  // namespace

void relayConnections(const RelayRequest& request) {
    const Socket listener{socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)};
    if (!listener) return;
    set(listener.get(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE);
    const sockaddr_in address = loopback4(request.localPort);
    if (bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return;
    if (listen(listener.get(), 1) != 0) return;
    for (;;) {
        const Socket terminal{accept(listener.get(), nullptr, nullptr)};
        if (terminal) relay(request, terminal.get());
    }
}

}  // namespace zpt
