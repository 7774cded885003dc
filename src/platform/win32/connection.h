#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/socket.h"
#include "platform/synch_filter.h"
#include "platform/win32/resolver.h"

namespace qxterm {

/// A socket control's connection; made with the first connect and kept for good.
struct Socket::Native {
    enum class State : std::uint8_t {
        closed,
        resolving,
        connecting,
        connected,
        ending,  ///< the peer has ended it; what it sent before is still being read
        lost,    ///< it is gone, onClose has been or is being raised
    };

    explicit Native(Socket& control) : owner{control} {}

    Socket& owner;
    State state = State::closed;
    SOCKET handle = INVALID_SOCKET;
    /// Counts the connects: look-ups and messages of an earlier one are told apart by it.
    std::uint32_t attempt = 0;
    UINT message = 0;
    std::vector<win32::HostAddress> addresses;
    std::size_t nextAddress = 0;
    int lastError = 0;

    SynchFilter synchs;           ///< between the system and received
    bool urgentTaken = false;     ///< the urgent byte whose place has been reached has been taken
    bool tellsAnnounced = false;  ///< the system tells an urgent byte under way from none
    std::string received;
    std::size_t taken = 0;        ///< bytes of received that getData has handed out
    std::uint64_t takenEver = 0;  ///< tells whether a handler has read anything
    bool reading = false;         ///< a round of reading is under way, in which handlers run
    bool more = false;            ///< reading was put off, or its time was up: it goes on soon
    bool quiet = false;        ///< the system does not announce what arrives: it is read without being told
    bool ticking = false;      ///< the timer runs that goes on reading in the system's own loops
    bool held = false;         ///< more is waiting in the system than may be kept unread here
    bool systemEmpty = false;  ///< after the peer's end: all that it sent has been read

    std::string unsent;
    std::size_t sent = 0;  ///< bytes of unsent that the system has taken

    [[nodiscard]] std::size_t unread() const { return received.size() - taken; }
};

namespace win32 {

using Connection = Socket::Native;

/// Tries the remaining addresses until one has begun to connect; onError when there is none.
void tryNextAddress(Connection& connection);
/// Drops handle and buffers; no event.
void closeConnection(Connection& connection);
/// FD_READ, FD_OOB, FD_CLOSE: reads what has arrived and announces it, for some 10 ms at the most; what is
/// left then is read as soon as the message queue has been served.
void receive(Connection& connection);
/// Goes on with reading that was interrupted. False when there was none.
[[nodiscard]] bool readMore(Connection& connection);
/// Goes on reading after the program has taken bytes out of a full buffer.
void readOn(Connection& connection);
/// Hands bytes to the system and keeps the rest. Throws as Socket::send says.
void sendBytes(Connection& connection, const char* bytes, std::size_t count);
/// FD_WRITE: the system takes bytes again.
void sendRest(Connection& connection);
/// Has the events of a connecting or connected socket delivered to the hidden window. False when the system
/// cannot.
bool armEvents(const Connection& connection);

}  // namespace win32
}  // namespace qxterm
