#include "common/win32/sockets.h"

namespace zpt {
namespace {

/// An address of either family, as the system's calls take it.
class Address {
public:
    Address(Loopback loopback, std::uint16_t port) {
        if (loopback == Loopback::four) {
            auto& four = reinterpret_cast<sockaddr_in&>(storage_);
            four.sin_family = AF_INET;
            four.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            four.sin_port = htons(port);
            length_ = sizeof four;
        } else {
            auto& six = reinterpret_cast<sockaddr_in6&>(storage_);
            six.sin6_family = AF_INET6;
            six.sin6_addr = IN6ADDR_LOOPBACK_INIT;
            six.sin6_port = htons(port);
            length_ = sizeof six;
        }
    }
    [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&storage_); }
    [[nodiscard]] sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage_); }
    [[nodiscard]] int length() const { return length_; }
    /// The port stands at the same place in both families.
    [[nodiscard]] std::uint16_t port() const {
        return ntohs(reinterpret_cast<const sockaddr_in&>(storage_).sin_port);
    }

private:
    sockaddr_storage storage_{};
    int length_ = 0;
};

Socket tcpSocket(Loopback loopback) {
    return Socket{socket(loopback == Loopback::four ? AF_INET : AF_INET6, SOCK_STREAM, IPPROTO_TCP)};
}

bool switchOn(const Socket& handle, int level, int option) {
    const int on = 1;
    return setsockopt(handle.get(), level, option, reinterpret_cast<const char*>(&on), sizeof on) == 0;
}

/// Bound so that nobody can share the port; no socket when that cannot be.
Socket boundSocket(Loopback loopback, std::uint16_t port) {
    Socket made = tcpSocket(loopback);
    const Address address{loopback, port};
    const bool own = made && switchOn(made, SOL_SOCKET, SO_EXCLUSIVEADDRUSE) &&
                     (loopback == Loopback::four || switchOn(made, IPPROTO_IPV6, IPV6_V6ONLY)) &&
                     ::bind(made.get(), address.get(), address.length()) == 0;
    if (!own) return {};
    return made;
}

/// What the call said that failed in boundSocket, just before.
bool addressMissing() {
    const int error = WSAGetLastError();
    return error == WSAEADDRNOTAVAIL || error == WSAEAFNOSUPPORT || error == WSAEPROTONOSUPPORT;
}

}  // namespace

bool startSockets() {
    WSADATA data{};
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

Socket connectLoopback(Loopback loopback, std::uint16_t port) {
    Socket made = tcpSocket(loopback);
    const Address address{loopback, port};
    if (!made || connect(made.get(), address.get(), address.length()) != 0) return {};
    return made;
}

std::uint16_t freeLoopbackPort(Loopback loopback) {
    const Socket taken = boundSocket(loopback, 0);
    Address address{loopback, 0};
    int length = address.length();
    if (!taken || getsockname(taken.get(), address.get(), &length) != 0) return 0;
    return address.port();
}

bool closedByPeer(SOCKET handle) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(handle, &readable);
    timeval now{0, 0};
    if (select(0, &readable, nullptr, nullptr, &now) <= 0) return false;
    char byte = 0;
    return recv(handle, &byte, 1, MSG_PEEK) <= 0;
}

bool LoopbackListener::bind(std::uint16_t port) {
    four_ = boundSocket(Loopback::four, port);
    if (!four_) return false;
    six_ = boundSocket(Loopback::six, port);
    return six_ || addressMissing();
}

bool LoopbackListener::listen() {
    return ::listen(four_.get(), 1) == 0 && (!six_ || ::listen(six_.get(), 1) == 0);
}

Socket LoopbackListener::accept() {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(four_.get(), &readable);
    if (six_) FD_SET(six_.get(), &readable);
    if (select(0, &readable, nullptr, nullptr, nullptr) <= 0) return {};
    const Socket& asked = FD_ISSET(four_.get(), &readable) ? four_ : six_;
    return Socket{::accept(asked.get(), nullptr, nullptr)};
}

}  // namespace zpt
