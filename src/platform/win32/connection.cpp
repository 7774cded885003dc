#include "platform/win32/connection.h"

#include <algorithm>

#include "platform/run_time_error.h"
#include "platform/system_text.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/message_window.h"
#include "platform/win32/urgent_data.h"

namespace qxterm::win32 {

/// Place of the connection among all; its timer counts from there.
[[nodiscard]] std::size_t placeOf(const Connection& connection);

namespace {

using State = Connection::State;

constexpr std::size_t shortestRead = 1024;
/// Milliseconds without a yield that are long: the window is to answer meanwhile.
constexpr std::uint64_t longWithoutYield = 60;
/// Unread bytes from which on no more is taken from the system, so that the peer is slowed down instead.
constexpr std::size_t unreadLimit = std::size_t{256} * 1024;
constexpr std::size_t unsentLimit = std::size_t{16} * 1024 * 1024;
constexpr long socketEvents = FD_CONNECT | FD_READ | FD_OOB | FD_WRITE | FD_CLOSE;
/// In a row, without a byte read: then the handlers are left in peace until more arrives.
constexpr int idleRunsAllowed = 2;

void closeHandle(Connection& connection) {
    if (connection.handle == INVALID_SOCKET) return;
    WSAAsyncSelect(connection.handle, messageWindow(), 0, 0);
    shutdown(connection.handle, SD_SEND);
    closesocket(connection.handle);
    connection.handle = INVALID_SOCKET;
}

void setOption(SOCKET handle, int level, int option) {
    const BOOL on = TRUE;
    setsockopt(handle, level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

/// False when this address cannot be tried at all.
bool beginConnect(Connection& connection, const HostAddress& address) {
    connection.handle = socket(address.family(), SOCK_STREAM, IPPROTO_TCP);
    if (connection.handle == INVALID_SOCKET) return false;
    // Helper programs are started with handles handed down; this one is not for them.
    SetHandleInformation(reinterpret_cast<HANDLE>(connection.handle), HANDLE_FLAG_INHERIT, 0);
    setOption(connection.handle, IPPROTO_TCP, TCP_NODELAY);
    setOption(connection.handle, SOL_SOCKET, SO_KEEPALIVE);
    connection.state = State::connecting;
    armEvents(connection);
    const int result =
        connect(connection.handle, reinterpret_cast<const sockaddr*>(&address.address), address.length);
    return result == 0 || WSAGetLastError() == WSAEWOULDBLOCK;
}

void allFailed(Connection& connection) {
    const auto number = static_cast<std::int16_t>(connection.lastError);
    closeConnection(connection);
    connection.owner.onError.raise(number, socketErrorText(number));
}

/// The user comes first: whether keys, the mouse, paints or timers are waiting to be served.
bool othersWait() { return (GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER) >> 16U) != 0; }

/// Reads on when everything else in the queue has been served: a timer's message comes last of all.
void readLater(const Connection& connection) {
    SetTimer(messageWindow(), timerReceiveFirst + placeOf(connection), USER_TIMER_MINIMUM, nullptr);
}

/// Appends what has arrived, up to the place of an urgent byte; returns the number of bytes for the program.
std::size_t readOnce(Connection& connection) {
    std::string& received = connection.received;
    if (connection.taken > unreadLimit) {
        received.erase(0, connection.taken);
        connection.taken = 0;
    }
    const std::size_t before = received.size();
    const int count = readStream(connection);
    if (count < 0 && WSAGetLastError() == WSAEWOULDBLOCK) {
        if (connection.state == State::ending) connection.systemEmpty = true;
    } else if (count <= 0) {
        // The peer's end, or a fault of the line.
        connection.systemEmpty = true;
        if (connection.state == State::connected) connection.state = State::ending;
    }
    if (connection.systemEmpty) connection.synchs.ended(received);
    return received.size() - before;
}

/// Raises onDataArrival for what is in the buffer, for as long as the handlers take from it.
void announceBuffer(Connection& connection) {
    int idleRuns = 0;
    while (connection.unread() > 0 && idleRuns < idleRunsAllowed) {
        const std::uint64_t before = connection.takenEver;
        connection.owner.onDataArrival.raise(static_cast<std::int32_t>(connection.unread()));
        idleRuns = connection.takenEver == before ? idleRuns + 1 : 0;
    }
}

/// The interpreter yields at line feeds. Output that repaints the screen again and again without one is read
/// in smaller pieces, with the user's messages in between.
void adaptReadSize(Connection& connection, std::uint64_t milliseconds) {
    std::size_t& size = connection.readSize;
    if (milliseconds > longWithoutYield) {
        size = std::max(size / 2, shortestRead);
    } else if (milliseconds < longWithoutYield / 4) {
        size = std::min(size * 2, Connection::longestRead);
    }
}

void announce(Connection& connection, std::size_t arrived) {
    if (arrived == 0) return;
    ++connection.handlersRunning;
    if (connection.handlersRunning > 1) {
        connection.owner.onDataArrival.raise(static_cast<std::int32_t>(arrived));
    } else {
        startYieldWatch();
        announceBuffer(connection);
        adaptReadSize(connection, longestWithoutYield());
    }
    --connection.handlersRunning;
}

/// The peer has gone, and all that it sent has been announced.
void finish(Connection& connection) {
    if (connection.state != State::ending || !connection.systemEmpty || connection.handlersRunning > 0)
        return;
    connection.state = State::lost;
    closeHandle(connection);
    connection.owner.onClose.raise();
}

void post(const Connection& connection, WORD event) {
    PostMessageA(messageWindow(), connection.message, connection.handle, event);
}

}  // namespace

void armEvents(const Connection& connection) {
    WSAAsyncSelect(connection.handle, messageWindow(), connection.message, socketEvents);
}

void closeConnection(Connection& connection) {
    closeHandle(connection);
    connection.state = State::closed;
    connection.addresses.clear();
    connection.synchs = {};
    connection.urgentTaken = false;
    connection.received.clear();
    connection.taken = 0;
    connection.readSize = Connection::longestRead;
    connection.held = false;
    connection.systemEmpty = false;
    connection.unsent.clear();
    connection.sent = 0;
}

void tryNextAddress(Connection& connection) {
    while (connection.nextAddress < connection.addresses.size()) {
        closeHandle(connection);
        const HostAddress& address = connection.addresses[connection.nextAddress];
        ++connection.nextAddress;
        if (beginConnect(connection, address)) return;
        connection.lastError = WSAGetLastError();
    }
    allFailed(connection);
}

void receive(Connection& connection) {
    if (connection.state != State::connected && connection.state != State::ending) return;
    if (connection.unread() >= unreadLimit) {
        connection.held = true;
        return;
    }
    if (othersWait()) {
        readLater(connection);
        return;
    }
    announce(connection, readOnce(connection));
    if (connection.state != State::ending) return;
    // No further message comes for what the peer sent before it ended.
    if (connection.systemEmpty) {
        finish(connection);
    } else {
        post(connection, FD_READ);
    }
}

void readOn(Connection& connection) {
    if (!connection.held || connection.unread() >= unreadLimit) return;
    connection.held = false;
    post(connection, FD_READ);
}

void sendBytes(Connection& connection, const char* bytes, std::size_t count) {
    if (connection.unsent.size() - connection.sent + count > unsentLimit) throw RunTimeError{WSAENOBUFS};
    connection.unsent.append(bytes, count);
    sendRest(connection);
    if (connection.state == State::ending) throw RunTimeError{WSAECONNRESET};
}

void sendRest(Connection& connection) {
    constexpr std::size_t most = std::size_t{1024} * 1024;
    while (connection.state == State::connected && connection.sent < connection.unsent.size()) {
        const std::size_t rest = connection.unsent.size() - connection.sent;
        const int count = send(connection.handle, connection.unsent.data() + connection.sent,
                               static_cast<int>(std::min(rest, most)), 0);
        if (count > 0) {
            connection.sent += static_cast<std::size_t>(count);
            continue;
        }
        if (WSAGetLastError() == WSAEWOULDBLOCK) return;
        connection.state = State::ending;
        post(connection, FD_READ);
    }
    connection.unsent.clear();
    connection.sent = 0;
}

}  // namespace qxterm::win32
