#include "platform/win32/urgent_data.h"

#include <algorithm>
#include <array>
#include <string_view>

// The system takes the urgent byte out of the stream, and a read ends before its place, the mark. Where the
// mark is, it tells as follows; only what is said here is relied upon.
//
// Windows: SIOCATMARK answers FALSE as long as an urgent byte waits that has not been taken, wherever its
// mark is. Wine: SIOCATMARK answers FALSE when all in front of the mark has been read, whether or not the
// byte has been taken. FIONREAD counts what stands in front of the mark. A read that begins at the mark drops
// the byte. There is one mark: when another urgent byte arrives before the first one's mark has been passed,
// that one is dropped if the mark had been reached, and stays in the stream as an ordinary byte otherwise,
// taken or not. A sender that is in arrears announces a mark before its byte arrives: that takes the urgency
// of the one before it, too. Under Wine a question for the byte is then put off, where it is refused when
// there is none; where it is put off in either case it tells nothing.

namespace qxterm::win32 {
namespace {

std::size_t bytesWaiting(const Connection& connection) {
    u_long count = 0;
    const bool known = ioctlsocket(connection.handle, FIONREAD, &count) == 0;
    return known ? count : longestRead;
}

bool saysUrgent(const Connection& connection) {
    u_long none = 1;
    ioctlsocket(connection.handle, SIOCATMARK, &none);
    return none == 0;
}

enum class UrgentByte {
    none,
    announced,  ///< its mark stands, the byte itself is still under way
    waits,
};

/// What asking for the urgent byte without taking it tells.
UrgentByte askForUrgentByte(const Connection& connection) {
    char byte = 0;
    if (recv(connection.handle, &byte, 1, MSG_OOB | MSG_PEEK) == 1) return UrgentByte::waits;
    return WSAGetLastError() == WSAEWOULDBLOCK ? UrgentByte::announced : UrgentByte::none;
}

/// Whether an urgent byte waits that has not been taken, or is announced, wherever its mark is.
bool urgentByteWaits(const Connection& connection) {
    fd_set urgent;
    FD_ZERO(&urgent);
    FD_SET(connection.handle, &urgent);
    timeval atOnce{};
    if (select(0, nullptr, nullptr, &urgent, &atOnce) == 1) return true;
    return connection.tellsAnnounced && askForUrgentByte(connection) != UrgentByte::none;
}

/// Reads at most so many bytes; returns as recv does. overtaken: an urgent byte behind them has been taken
/// already.
int readOrdinary(Connection& connection, std::size_t most, bool overtaken) {
    static std::array<char, longestRead> block;
    const std::size_t size = std::min(most, block.size());
    const int count = recv(connection.handle, block.data(), static_cast<int>(size), 0);
    if (count <= 0) return count;
    connection.urgentTaken = false;
    const std::string_view arrived{block.data(), static_cast<std::size_t>(count)};
    const bool another =
        overtaken || (connection.synchs.mayHoldSynch(arrived) && urgentByteWaits(connection));
    connection.synchs.arrived(arrived, another, connection.received);
    return count;
}

/// Reads what stands in front of the mark of a byte that has been taken.
void catchUp(Connection& connection) {
    std::size_t waiting = bytesWaiting(connection);
    while (waiting > 0) {
        const int count = readOrdinary(connection, waiting, true);
        if (count <= 0) return;
        waiting -= static_cast<std::size_t>(count);
    }
}

/// Takes the urgent byte that the system tells of, if there is one.
void takeUrgentByte(Connection& connection) {
    if (!saysUrgent(connection)) return;
    const bool here = bytesWaiting(connection) == 0;
    // Under Wine another one has arrived between the two questions.
    if (!here && !saysUrgent(connection)) return;
    char byte = 0;
    if (recv(connection.handle, &byte, 1, MSG_OOB) != 1) return;
    if (!here) {
        connection.synchs.urgentAhead(byte, connection.received);
        return;
    }
    if (!saysUrgent(connection)) {
        // Under Wine another one has arrived since then. If none waits now, it is the one that was taken. If
        // the one whose mark this was had been taken before, the one taken now has become an ordinary byte.
        if (!urgentByteWaits(connection)) {
            catchUp(connection);
        } else if (connection.urgentTaken) {
            return;
        }
    }
    connection.synchs.urgentHere(byte, connection.received);
    connection.urgentTaken = true;
}

}  // namespace

void learnAboutUrgentBytes(Connection& connection) {
    connection.tellsAnnounced = askForUrgentByte(connection) == UrgentByte::none;
}

int readStream(Connection& connection) {
    takeUrgentByte(connection);
    std::size_t waiting = bytesWaiting(connection);
    if (waiting == 0) {
        // Once something stands behind a mark its byte has arrived and can be taken; then reading on drops
        // nothing.
        char next = 0;
        const int there = recv(connection.handle, &next, 1, MSG_PEEK);
        if (there <= 0) return there;
        takeUrgentByte(connection);
        waiting = bytesWaiting(connection);
    }
    const int count = readOrdinary(connection, waiting > 0 ? waiting : longestRead, false);
    // No message may come for an urgent byte behind which nothing stands.
    if (count > 0) takeUrgentByte(connection);
    return count;
}

}  // namespace qxterm::win32
