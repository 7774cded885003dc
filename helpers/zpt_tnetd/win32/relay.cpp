#include "zpt_tnetd/win32/relay.h"

#include "common/win32/pump.h"
#include "common/win32/sockets.h"

namespace zpt {
namespace {

constexpr DWORD pause = 250;  // milliseconds

/// The forward answers once the SSH client has logged in; until then connecting to it may fail.
Socket awaitForward(std::uint16_t port, SOCKET terminal) {
    constexpr int tries = 120;
    for (int count = 0; count < tries && !closedByPeer(terminal); ++count) {
        if (Socket forward = connectLoopback(Loopback::four, port)) return forward;
        Sleep(pause);
    }
    return {};
}

}  // namespace

void relayConnections(const RelayRequest& request) {
    LoopbackListener listener;
    if (!startSockets() || !listener.bind(request.localPort) || !listener.listen()) return;
    for (;;) {
        const Socket terminal = listener.accept();
        if (!terminal) {
            Sleep(pause);  // what is refused now may be refused for long
            continue;
        }
        const Socket forward = awaitForward(request.forwardPort, terminal.get());
        if (forward) pump(terminal.get(), forward.get());
    }
}

}  // namespace zpt
