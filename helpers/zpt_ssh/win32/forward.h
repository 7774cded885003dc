#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "common/win32/sockets.h"
#include "zpt_ssh/win32/client.h"

namespace zpt {

/// The forwarded port as the terminal sees it. It is the helper's own from its start on, so that no other
/// program can stand in for it; behind it the client forwards a port that only the helper knows.
class Forward {
public:
    /// port: where the terminal connects. inner: where the client is told to listen. readiness: an event to
    /// be set when the terminal can connect, or none.
    Forward(std::uint16_t port, Loopback address, std::uint16_t inner, HANDLE readiness)
        : port_{port}, inner_{inner}, address_{address}, readiness_{readiness} {}

    /// False when another program has the port.
    [[nodiscard]] bool take() { return listener_.bind(port_); }

    /// Lets the terminal in once the client has logged in; when that takes long, before: the connection then
    /// waits for the login instead of being refused. Serves one connection after the other. Does not return;
    /// runs in a thread of its own. Ends a client that has not opened its end in time.
    [[noreturn]] void serve(Client& client);

    /// Waits until no connection is being served, or the time is over.
    void waitIdle(std::chrono::milliseconds longest);

private:
    void letIn(Client& client);
    void carry(Client& client, SOCKET terminal);
    [[nodiscard]] Socket awaitClient(Client& client, SOCKET terminal);
    void setBusy(bool busy);

    std::uint16_t port_;
    std::uint16_t inner_;
    Loopback address_;
    HANDLE readiness_;
    LoopbackListener listener_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();

    std::mutex mutex_;
    std::condition_variable idle_;
    bool busy_ = false;
};

}  // namespace zpt
