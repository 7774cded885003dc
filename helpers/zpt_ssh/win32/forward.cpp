#include "zpt_ssh/win32/forward.h"

#include <thread>

#include "common/win32/pump.h"
#include "zpt_ssh/telnet_answers.h"

namespace zpt {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

/// The terminal waits ten seconds for the port to answer. A login that fails before this time is over is a
/// connection that never came up; a slower one is a connection that ends.
constexpr auto longestClosed = 8s;
/// From the start. OpenSSH and plink give up a dead connection earlier.
constexpr auto longestLogin = 180s;
constexpr auto period = 50ms;

}  // namespace

void Forward::serve(Client& client) {
    letIn(client);
    for (;;) {
        const Socket terminal = listener_.accept();
        if (!terminal) {
            std::this_thread::sleep_for(period);
            continue;
        }
        setBusy(true);
        carry(client, terminal.get());
        setBusy(false);
    }
}

void Forward::letIn(Client& client) {
    while (!client.listensOn(address_, inner_) && steady_clock::now() - start_ < longestClosed)
        std::this_thread::sleep_for(period);
    if (!listener_.listen()) client.end();
    if (readiness_ != nullptr) SetEvent(readiness_);
}

void Forward::carry(Client& client, SOCKET terminal) {
    const Socket inner = awaitClient(client, terminal);
    if (!inner) return;
    TelnetAnswers answers;
    pump(terminal, inner.get(),
         [&](std::span<char> block, std::string& replies) { return answers.take(block, replies); });
}

Socket Forward::awaitClient(Client& client, SOCKET terminal) {
    while (client.running() && !closedByPeer(terminal)) {
        // Looked for before, because a refused connection takes its time; and after, because only then it is
        // certain who has answered.
        if (client.listensOn(address_, inner_)) {
            Socket made = connectLoopback(address_, inner_);
            if (made && client.listensOn(address_, inner_)) return made;
        }
        if (steady_clock::now() - start_ >= longestLogin) client.end();
        std::this_thread::sleep_for(period);
    }
    return {};
}

void Forward::setBusy(bool busy) {
    const std::lock_guard lock{mutex_};
    busy_ = busy;
    idle_.notify_all();
}

void Forward::waitIdle(std::chrono::milliseconds longest) {
    std::unique_lock lock{mutex_};
    idle_.wait_for(lock, longest, [this] { return !busy_; });
}

}  // namespace zpt
