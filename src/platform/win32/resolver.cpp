#include "platform/win32/resolver.h"

#include <cstring>
#include <list>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "platform/win32/message_window.h"

namespace qxterm::win32 {
namespace {

/// All that the worker needs.
struct Question {
    std::string host;
    std::string port;
    HWND receiver = nullptr;
    /// One, which becomes that of the window's thread as it is: handing it over needs no memory.
    std::list<LookUp> answer = std::list<LookUp>(1);
};

SRWLOCK answersLock = SRWLOCK_INIT;

/// What has been answered, and the window's thread has not yet taken. Never destroyed: a worker may still
/// answer while the program ends.
std::list<LookUp>& answers() {
    static auto& all = *new std::list<LookUp>;
    return all;
}

class Locked {
public:
    Locked() { AcquireSRWLockExclusive(&answersLock); }
    ~Locked() { ReleaseSRWLockExclusive(&answersLock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

void ask(const Question& question, LookUp& answer) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* found = nullptr;
    answer.error = getaddrinfo(question.host.c_str(), question.port.c_str(), &hints, &found);
    if (answer.error != 0) return;
    const std::unique_ptr<addrinfo, void(WSAAPI*)(addrinfo*)> owner{found, freeaddrinfo};
    for (const addrinfo* one = found; one != nullptr; one = one->ai_next) {
        if (one->ai_family != AF_INET && one->ai_family != AF_INET6) continue;
        if (one->ai_addrlen > sizeof(sockaddr_storage)) continue;
        HostAddress address;
        address.length = static_cast<int>(one->ai_addrlen);
        std::memcpy(&address.address, one->ai_addr, one->ai_addrlen);
        answer.addresses.push_back(address);
    }
    if (answer.addresses.empty()) answer.error = WSANO_DATA;
}

/// False when the system would not take the message.
bool announce(const Question& question) { return PostMessageA(question.receiver, wmResolved, 0, 0) != 0; }

void keep(Question& question) {
    const Locked locked;
    answers().splice(answers().end(), question.answer);
}

void send(Question& question) {
    keep(question);
    (void)announce(question);
}

DWORD WINAPI worker(void* data) {
    const std::unique_ptr<Question> question{static_cast<Question*>(data)};
    try {
        ask(*question, question->answer.front());
    } catch (const std::bad_alloc&) {
        question->answer.front().addresses.clear();
        question->answer.front().error = WSAENOBUFS;
    }
    keep(*question);
    // Nobody waits for this thread.
    constexpr int tries = 100;
    constexpr DWORD pause = 50;  // milliseconds
    for (int count = 0; count < tries && !announce(*question); ++count) Sleep(pause);
    return 0;
}

}  // namespace

void lookUp(std::string_view host, std::uint16_t port, std::uint32_t token) {
    auto question = std::make_unique<Question>();
    question->host = host;
    question->port = std::to_string(port);
    question->receiver = messageWindow();
    LookUp& answer = question->answer.front();
    answer.token = token;
    // The system's call would read a name only up to a zero byte, and an empty one as this computer.
    if (host.empty() || host.find('\0') != std::string_view::npos) {
        answer.error = WSAHOST_NOT_FOUND;
        send(*question);
        return;
    }
    if (QueueUserWorkItem(worker, question.get(), WT_EXECUTELONGFUNCTION) != 0) {
        (void)question.release();  // the worker's now
        return;
    }
    answer.error = WSAENOBUFS;
    send(*question);
}

std::list<LookUp> takeLookUps() {
    const Locked locked;
    return std::exchange(answers(), {});
}

}  // namespace qxterm::win32
