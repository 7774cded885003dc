#include "platform/win32/connection.h"

#include <algorithm>
#include <new>

#include "platform/run_time_error.h"
#include "platform/system_text.h"
#include "platform/win32/clock.h"
#include "platform/win32/frames.h"
#include "platform/win32/message_window.h"
#include "platform/win32/urgent_data.h"

namespace qxterm::win32 {

/// Place of the connection among all; its timer counts from there.
[[nodiscard]] std::size_t placeOf(const Connection& connection);

namespace {

using State = Connection::State;

/// A read that brings so much is likely to be followed by more.
constexpr std::size_t longRead = 4096;
/// A filter between system and buffer may have kept so many bytes of earlier reads.
constexpr std::size_t longestKept = 256;
/// How long output is read and interpreted before the message queue is served again, in microseconds.
constexpr std::int64_t readingTime = 10000;
/// Milliseconds between two rounds of reading while a menu or a message box runs its own loop.
constexpr UINT readingTick = 15;
/// Unread bytes from which on no more is taken from the system, so that the peer is slowed down instead.
constexpr std::size_t unreadLimit = std::size_t{256} * 1024;
constexpr std::size_t unsentLimit = std::size_t{16} * 1024 * 1024;
constexpr long socketEvents = FD_CONNECT | FD_READ | FD_OOB | FD_WRITE | FD_CLOSE;
/// In a row, without a byte read: then the handlers are left in peace until more arrives.
constexpr int idleRunsAllowed = 2;

/// What has been sent may have been a password.
void forgetUnsent(Connection& connection) {
    SecureZeroMemory(connection.unsent.data(), connection.unsent.size());
    connection.unsent.clear();
    connection.sent = 0;
}

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
    // Nothing would ever be heard of the attempt.
    if (!armEvents(connection)) return false;
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

bool listen(const Connection& connection, long events) {
    return WSAAsyncSelect(connection.handle, messageWindow(), connection.message, events) == 0;
}

/// Reading goes on soon: the program's own loop sees to it, and in a loop of the system's a timer, whose
/// messages come last of all. False when the system has no timer.
bool goOnLater(Connection& connection) {
    connection.more = true;
    if (!connection.ticking) {
        connection.ticking =
            SetTimer(messageWindow(), timerReceiveFirst + placeOf(connection), readingTick, nullptr) != 0;
    }
    return connection.ticking;
}

/// While output flows a message for each read would cost as much as the reading.
void beQuiet(Connection& connection) {
    if (connection.quiet) return;
    connection.quiet = listen(connection, socketEvents & ~FD_READ);
}

/// All has been read: from now on the system tells of what arrives.
void waitForMore(Connection& connection) {
    connection.more = false;
    if (connection.ticking) {
        connection.ticking = false;
        KillTimer(messageWindow(), timerReceiveFirst + placeOf(connection));
    }
    if (!connection.quiet) return;
    connection.quiet = false;
    // A system that tells of nothing any more is asked again by a timer.
    if (connection.handle != INVALID_SOCKET && !listen(connection, socketEvents)) {
        connection.quiet = true;
        (void)goOnLater(connection);
    }
}

/// Whether what one read may bring can be kept: what is taken from the system must not get lost.
bool roomToRead(Connection& connection) {
    try {
        connection.received.reserve(connection.received.size() + longestRead + longestKept);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// Appends what one read returns, without the Synchs; returns the number of bytes read.
std::size_t readOnce(Connection& connection) {
    std::string& received = connection.received;
    if (connection.taken > unreadLimit) {
        received.erase(0, connection.taken);
        connection.taken = 0;
    }
    const int count = readStream(connection);
    if (count < 0 && WSAGetLastError() == WSAEWOULDBLOCK) {
        if (connection.state == State::ending) connection.systemEmpty = true;
    } else if (count <= 0) {
        // The peer's end, or a fault of the line.
        connection.systemEmpty = true;
        if (connection.state == State::connected) connection.state = State::ending;
    }
    if (connection.systemEmpty) connection.synchs.ended(received);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

/// Raises onDataArrival for what is in the buffer, for as long as the handlers take from it.
void announce(Connection& connection) {
    int idleRuns = 0;
    while (connection.unread() > 0 && idleRuns < idleRunsAllowed) {
        const std::uint64_t before = connection.takenEver;
        connection.owner.onDataArrival.raise(static_cast<std::int32_t>(connection.unread()));
        idleRuns = connection.takenEver == before ? idleRuns + 1 : 0;
    }
}

/// The peer has gone, and all that it sent has been announced.
void finish(Connection& connection) {
    if (connection.state != State::ending || !connection.systemEmpty) return;
    connection.state = State::lost;
    closeHandle(connection);
    connection.owner.onClose.raise();
}

/// As the system tells that something can be read.
void postRead(Connection& connection) {
    if (PostMessageA(messageWindow(), connection.message, connection.handle, FD_READ) == 0)
        (void)goOnLater(connection);
}

[[nodiscard]] bool mayRead(const Connection& connection) {
    return connection.state == State::connected || connection.state == State::ending;
}

/// Marks a round of reading for as long as it lasts; what arrives meanwhile waits for its end.
class Reading {
public:
    explicit Reading(Connection& connection) : connection_{connection} { connection_.reading = true; }
    ~Reading() { connection_.reading = false; }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

private:
    Connection& connection_;
};

/// Reads and announces until nothing is left, or time is up. A handler may close the connection, and even
/// connect anew.
void readForAWhile(Connection& connection) {
    const Reading reading{connection};
    const std::uint32_t attempt = connection.attempt;
    const std::int64_t end = microseconds() + readingTime;
    connection.more = false;
    for (;;) {
        if (connection.unread() >= unreadLimit) {
            waitForMore(connection);
            connection.held = true;
            return;
        }
        if (!roomToRead(connection)) {
            goOnLater(connection);
            return;
        }
        const std::size_t unread = connection.unread();
        const std::size_t count = readOnce(connection);
        if (connection.unread() > unread) {
            announce(connection);
            showPicturesIfDue(false);
        }
        if (connection.attempt != attempt || !mayRead(connection)) return;
        if (count == 0) break;
        const bool likelyAll = count < longRead && connection.state == State::connected;
        if (likelyAll && !connection.quiet && !connection.more) break;
        if (microseconds() >= end) {
            // Without a timer the system's messages have to do.
            if (goOnLater(connection)) {
                beQuiet(connection);
            } else if (connection.quiet) {
                connection.quiet = !listen(connection, socketEvents);
            }
            return;
        }
    }
    waitForMore(connection);
}

}  // namespace

bool armEvents(const Connection& connection) {
    return listen(connection, connection.quiet ? socketEvents & ~FD_READ : socketEvents);
}

void closeConnection(Connection& connection) {
    closeHandle(connection);
    waitForMore(connection);
    connection.state = State::closed;
    connection.addresses.clear();
    connection.synchs = {};
    connection.urgentTaken = false;
    connection.received.clear();
    connection.taken = 0;
    connection.held = false;
    connection.systemEmpty = false;
    forgetUnsent(connection);
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
    if (!mayRead(connection)) return;
    if (connection.reading) {
        (void)goOnLater(connection);
        return;
    }
    if (othersWait() && goOnLater(connection)) return;
    readForAWhile(connection);
    finish(connection);
}

bool readMore(Connection& connection) {
    if (!connection.more || connection.reading || !mayRead(connection)) return false;
    readForAWhile(connection);
    finish(connection);
    return true;
}

void readOn(Connection& connection) {
    if (!connection.held || connection.unread() >= unreadLimit) return;
    connection.held = false;
    postRead(connection);
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
        postRead(connection);
    }
    forgetUnsent(connection);
}

}  // namespace qxterm::win32
