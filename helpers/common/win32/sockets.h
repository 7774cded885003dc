#pragma once

#include <cstdint>
#include <utility>

#include "common/win32/system.h"

/// Sockets of this machine's loopback addresses; nothing here is ever reachable from outside.
namespace zpt {

/// To be called before anything else here; false when the system has no sockets.
[[nodiscard]] bool startSockets();

/// Owns a socket.
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
    ~Socket() { close(); }
    [[nodiscard]] SOCKET get() const { return handle_; }
    explicit operator bool() const { return handle_ != INVALID_SOCKET; }
    void close() {
        if (handle_ != INVALID_SOCKET) closesocket(std::exchange(handle_, INVALID_SOCKET));
    }

private:
    SOCKET handle_ = INVALID_SOCKET;
};

/// The loopback address that a connection goes to: 127.0.0.1 or ::1.
enum class Loopback : std::uint8_t { four, six };

/// No socket when nothing answers there.
[[nodiscard]] Socket connectLoopback(Loopback address, std::uint16_t port);

/// A port that nothing has at this moment, chosen by the system; 0 when there is none.
[[nodiscard]] std::uint16_t freeLoopbackPort(Loopback address);

/// True when what can be read from the socket is its end: the other side has closed it. For a side that sends
/// nothing before it is spoken to.
[[nodiscard]] bool closedByPeer(SOCKET handle);

/// A port of both loopback addresses, so that "localhost" is this listener whichever of the two it means. It
/// belongs to nobody else from bind on; connections are let in from listen on.
class LoopbackListener {
public:
    /// False when another program has the port. A machine without IP version 6 has only one of the addresses.
    [[nodiscard]] bool bind(std::uint16_t port);
    [[nodiscard]] bool listen();
    /// Waits for a connection. No socket when the one that came is gone again.
    [[nodiscard]] Socket accept();

private:
    Socket four_;
    Socket six_;
};

}  // namespace zpt
