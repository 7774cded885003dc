#include "platform/socket.h"

#include <algorithm>
#include <memory>
#include <string>

#include "platform/win32/connection.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/message_window.h"
#include "platform/win32/twips.h"
#include "platform/win32/urgent_data.h"

namespace qxterm {
namespace win32 {
namespace {

using State = Connection::State;

std::vector<std::unique_ptr<Connection>>& connections() {
    static std::vector<std::unique_ptr<Connection>> all;
    return all;
}

void takeAnswer(LookUp& answer) {
    for (const auto& connection : connections()) {
        if (connection->state != State::resolving || connection->attempt != answer.token) continue;
        connection->addresses = std::move(answer.addresses);
        connection->nextAddress = 0;
        connection->lastError = answer.error;
        tryNextAddress(*connection);
        return;
    }
}

void resolved(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    for (LookUp& answer : takeLookUps()) takeAnswer(answer);
}

void connectAnswered(Connection& connection, int error) {
    if (connection.state != State::connecting) return;
    if (error != 0) {
        connection.lastError = error;
        tryNextAddress(connection);
        return;
    }
    connection.state = State::connected;
    learnAboutUrgentBytes(connection);
    connection.owner.onConnect.raise();
}

void closeAnswered(Connection& connection) {
    if (connection.state != State::connected) return;
    connection.state = State::ending;
    receive(connection);
}

void socketMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    for (const auto& connection : connections()) {
        const bool its = connection->message == message &&
                         connection->handle == static_cast<SOCKET>(wParam) &&
                         connection->handle != INVALID_SOCKET;
        if (!its) continue;
        const auto event = static_cast<UINT_PTR>(lParam);
        const int error = highWord(event);
        switch (lowWord(event)) {
            case FD_CONNECT: connectAnswered(*connection, error); break;
            case FD_READ:
            case FD_OOB: receive(*connection); break;
            case FD_WRITE: sendRest(*connection); break;
            case FD_CLOSE: closeAnswered(*connection); break;
            default: break;
        }
        return;
    }
}

/// A loop of the system's runs, or the program's own has not come to it yet.
void readingTimer(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam < timerReceiveFirst || wParam > timerReceiveLast) return;
    const std::size_t place = wParam - timerReceiveFirst;
    if (place < connections().size() && connections()[place]->more) receive(*connections()[place]);
}

bool readWaiting() {
    bool any = false;
    for (std::size_t n = 0; n < connections().size(); ++n) any = readMore(*connections()[n]) || any;
    return any;
}

Connection& connectionOf(Socket& socket) {
    if (socket.native == nullptr) {
        static const bool subscribed =
            (handleMessages(wmResolved, wmResolved, resolved),
             handleMessages(wmSocketFirst, wmSocketLast, socketMessage),
             handleMessages(WM_TIMER, WM_TIMER, readingTimer), setIdleWork(readWaiting), true);
        (void)subscribed;
        connections().push_back(std::make_unique<Connection>(socket));
        socket.native = connections().back().get();
    }
    return *socket.native;
}

}  // namespace

std::size_t placeOf(const Connection& connection) {
    const auto& all = connections();
    const auto at =
        std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.get() == &connection; });
    return static_cast<std::size_t>(at - all.begin());
}

}  // namespace win32

using namespace win32;

void Socket::connect(std::string_view host, std::uint16_t port) {
    static UINT lastMessage = wmSocketLast;
    Connection& connection = connectionOf(*this);
    closeConnection(connection);
    ++connection.attempt;
    lastMessage = lastMessage == wmSocketLast ? wmSocketFirst : lastMessage + 1;
    connection.message = lastMessage;
    connection.state = State::resolving;
    lookUp(host, port, connection.attempt);
}

void Socket::close() {
    if (native != nullptr) closeConnection(*native);
}

void Socket::send(std::span<const std::uint8_t> bytes) {
    send(std::string_view{reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void Socket::send(std::string_view text) {
    const State state = native != nullptr ? native->state : State::closed;
    if (state == State::ending || state == State::lost) throw RunTimeError{WSAECONNRESET};
    if (state != State::connected) throw RunTimeError{WSAENOTCONN};
    sendBytes(*native, text.data(), text.size());
}

std::string Socket::getData(std::int32_t count) {
    if (native == nullptr || count <= 0) return {};
    Connection& connection = *native;
    std::string result = connection.received.substr(connection.taken, static_cast<std::size_t>(count));
    connection.taken += result.size();
    connection.takenEver += result.size();
    if (connection.taken == connection.received.size()) {
        connection.received.clear();
        connection.taken = 0;
    }
    readOn(connection);
    return result;
}

bool Socket::connected() const {
    return native != nullptr && (native->state == State::connected || native->state == State::ending);
}

std::int16_t Socket::addressFamily(std::string_view host) const {
    const std::string text{host};
    in6_addr address{};  // the larger of the two
    if (inet_pton(AF_INET, text.c_str(), &address) == 1) return 4;
    if (inet_pton(AF_INET6, text.c_str(), &address) == 1) return 6;
    return 0;
}

void Socket::rearmEvents() {
    // While it is still connecting the answer must not be lost; it arrives as it is.
    if (native != nullptr && native->state == State::connected) (void)armEvents(*native);
}

}  // namespace qxterm
