#include "platform/socket.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/headless/clock.h"
#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"
#include "platform/headless/socket.h"
#include "platform/hex_text.h"
#include "platform/system_text.h"

namespace qxterm {

struct Socket::Native {
    enum class Phase : std::uint8_t { closed, connecting, connected, lost };
    Phase phase = Phase::closed;
    std::string received;
    std::size_t taken = 0;      ///< bytes read since the last reset of the count
    std::uint32_t attempt = 0;  ///< counts the attempts to connect
    bool announcing = false;    ///< an arrival handler runs
    std::uint32_t rearmed = 0;  ///< counts the calls of rearmEvents
};

}  // namespace qxterm

namespace qxterm::headless {
namespace {

using Phase = Socket::Native::Phase;

std::int16_t family = usualFamily;

constexpr std::int16_t errorReset = 10054;
constexpr std::int16_t errorNotConnected = 10057;

std::vector<std::pair<Socket*, std::unique_ptr<Socket::Native>>>& sockets() {
    static std::vector<std::pair<Socket*, std::unique_ptr<Socket::Native>>> all;
    return all;
}

Socket::Native& stateOf(Socket& socket) {
    if (socket.native == nullptr) {
        sockets().emplace_back(&socket, std::make_unique<Socket::Native>());
        socket.native = sockets().back().second.get();
    }
    return *socket.native;
}

/// The attempt fails once time passes, unless the program has ended it by then.
void failLater(Socket& socket, std::int16_t number) {
    happenNext([&socket, number, attempt = stateOf(socket).attempt] {
        Socket::Native& state = stateOf(socket);
        if (state.phase != Phase::connecting || state.attempt != attempt) return;
        state.phase = Phase::closed;
        socket.onError.raise(number, socketErrorText(number));
    });
}

/// Marks an arrival handler as running for as long as it does.
class Announcing {
public:
    explicit Announcing(bool& flag) : flag_{flag} { flag_ = true; }
    ~Announcing() { flag_ = false; }
    Announcing(const Announcing&) = delete;
    Announcing& operator=(const Announcing&) = delete;

private:
    bool& flag_;
};

std::int32_t countOf(std::size_t bytes) {
    return static_cast<std::int32_t>(std::min<std::size_t>(bytes, INT32_MAX));
}

void announce(Socket& socket, Socket::Native& state) {
    const Announcing announcing{state.announcing};
    constexpr int enoughIdleRuns = 2;
    for (int idleRuns = 0; idleRuns < enoughIdleRuns && !state.received.empty();) {
        state.taken = 0;
        socket.onDataArrival.raise(countOf(state.received.size()));
        idleRuns = state.taken == 0 ? idleRuns + 1 : 0;
    }
}

}  // namespace

void socketConnects(Socket& socket) {
    stateOf(socket).phase = Phase::connected;
    socket.onConnect.raise();
}

void socketCloses(Socket& socket) {
    Socket::Native& state = stateOf(socket);
    if (state.phase != Phase::closed) state.phase = Phase::lost;
    socket.onClose.raise();
}

void socketFails(Socket& socket, std::int16_t number, std::string_view description) {
    socket.onError.raise(number, description);
}

void socketReceives(Socket& socket, std::string_view bytes) {
    Socket::Native& state = stateOf(socket);
    state.received += bytes;
    if (!state.announcing) {
        announce(socket, state);
    } else if (!bytes.empty()) {
        socket.onDataArrival.raise(countOf(bytes.size()));
    }
}

void setAddressFamily(std::int16_t number) { family = number; }

bool socketInUse(const Socket& socket) {
    return socket.native != nullptr && socket.native->phase != Phase::closed;
}

std::uint32_t timesRearmed(const Socket& socket) {
    return socket.native == nullptr ? 0 : socket.native->rearmed;
}

void resetSockets() {
    for (auto& [socket, state] : sockets()) socket->native = nullptr;
    sockets().clear();
}

}  // namespace qxterm::headless

namespace qxterm {

using headless::Phase;
using headless::stateOf;

void Socket::connect(std::string_view host, std::uint16_t port) {
    close();
    headless::record("socket", [&] {
        return headless::Fields{{"op", "connect"}, {"host", std::string{host}}, {"port", port}};
    });
    Native& state = stateOf(*this);
    state.phase = Phase::connecting;
    ++state.attempt;
    if (const auto number = headless::failure(headless::Point::socketConnect))
        headless::failLater(*this, *number);
}

void Socket::close() {
    if (native == nullptr) return;
    native->received.clear();
    if (native->phase == Phase::closed) return;
    native->phase = Phase::closed;
    headless::record("socket", [&] { return headless::Fields{{"op", "close"}}; });
}

void Socket::send(std::string_view text) {
    const Phase phase = stateOf(*this).phase;
    if (phase == Phase::lost) throw RunTimeError{headless::errorReset};
    if (phase != Phase::connected) throw RunTimeError{headless::errorNotConnected};
    headless::raiseIfPlanned(headless::Point::socketSend);
    headless::record("send", [&] { return headless::Fields{{"to", "socket"}, {"bytes", hexText(text)}}; });
}

void Socket::send(std::span<const std::uint8_t> bytes) { send(std::string(bytes.begin(), bytes.end())); }

std::string Socket::getData(std::int32_t count) {
    Native& state = stateOf(*this);
    const std::size_t length = std::min(static_cast<std::size_t>(std::max(count, 0)), state.received.size());
    std::string data = state.received.substr(0, length);
    state.received.erase(0, length);
    state.taken += length;
    return data;
}

bool Socket::connected() const { return native != nullptr && native->phase == Phase::connected; }

std::int16_t Socket::addressFamily(std::string_view /*host*/) const { return headless::family; }

void Socket::rearmEvents() { ++stateOf(*this).rearmed; }

}  // namespace qxterm
