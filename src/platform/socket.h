#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/event.h"

namespace qxterm {

class Form;

/// The socket control: one TCP connection, driven by the window's messages.
///
/// Announcing: outside an onDataArrival handler the control raises onDataArrival with the number of bytes in
/// the receive buffer, and again, with the number then in it, for as long as the handler returns with bytes
/// unread; it stops when two runs in a row have read nothing. While a handler runs it raises onDataArrival
/// with the number of newly arrived bytes only; on Windows nothing is read while one runs.
class Socket {
public:
    constexpr Socket(Form& form, const char* name) : form_{form}, name_{name} {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// Starts to connect; returns at once. The host's addresses (IPv4 and IPv6) are tried in turn; onConnect
    /// or onError follows. A connection that exists is closed first.
    void connect(std::string_view host, std::uint16_t port);
    /// Ends connection or attempt; unread bytes are dropped; no event. Harmless when closed.
    void close();
    /// Sends all bytes, keeping what the system does not take at once. Error 10054 when a connection was
    /// lost, 10057 when there is none.
    void send(std::span<const std::uint8_t> bytes);
    void send(std::string_view text);
    /// The next count received bytes, fewer when fewer are there.
    [[nodiscard]] std::string getData(std::int32_t count);
    /// True from onConnect until close or until the peer is gone.
    [[nodiscard]] bool connected() const;
    /// 4 or 6 when the host is such an address itself; 0 for a name, whose look-up is left to whoever
    /// connects.
    [[nodiscard]] std::int16_t addressFamily(std::string_view host) const;
    [[nodiscard]] const char* name() const { return name_; }
    [[nodiscard]] Form& form() const { return form_; }
    /// Re-arms the socket's messages to the window (done at each activation). Loses nothing, repeats nothing.
    void rearmEvents();

    Event<> onConnect, onClose;
    Event<std::int32_t> onDataArrival;
    Event<std::int16_t, std::string_view> onError;

    struct Native;
    Native* native = nullptr;

private:
    Form& form_;
    const char* name_;
};

}  // namespace qxterm
