#pragma once

#include <cstdint>

#include "common/win32/handle.h"

/// Sockets of this machine's loopback addresses; nothing here is ever reachable from outside.
namespace zpt {

/// To be called before anything else here; false when the system has no sockets.
[[nodiscard]] bool startSockets();

struct SocketTraits {
    using Type = SOCKET;
    static constexpr SOCKET none = INVALID_SOCKET;
    static void release(SOCKET handle) { closesocket(handle); }
};

using Socket = Owner<SocketTraits>;

/// The loopback address that a connection goes to: 127.0.0.1 or ::1.
enum class Loopback : std::uint8_t { four, six };

/// No socket when nothing answers there.
[[nodiscard]] Socket connectLoopback(Loopback loopback, std::uint16_t port);

/// A port that nothing has at this moment, chosen by the system; 0 when there is none.
[[nodiscard]] std::uint16_t freeLoopbackPort(Loopback loopback);

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
