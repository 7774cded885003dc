// Stands in for the SSH client behind zpt_ssh: it listens where it is told to, greets who comes and sends
// back what it gets. "quit" ends it, with a last line and an exit code of its own. With one of zpt_ssh's own
// variables in its environment, which are not for the client, it ends at once: exit code 92.
//
//   plink ... -L 127.0.0.1:PORT:localhost:PORT ...

#include <winsock2.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "common/names.h"

namespace {

constexpr int wrongCommandLine = 90;
constexpr int cannotListen = 91;
constexpr int knowsTooMuch = 92;
constexpr int askedToEnd = 7;

void say(SOCKET to, std::string_view text) { send(to, text.data(), static_cast<int>(text.size()), 0); }

/// True when it was asked to end.
bool serve(SOCKET connection) {
    say(connection, "ready\n");
    std::array<char, 4096> block{};
    for (;;) {
        const int count = recv(connection, block.data(), static_cast<int>(block.size()), 0);
        if (count <= 0) return false;
        const std::string_view text{block.data(), static_cast<std::size_t>(count)};
        if (text == "quit\n") return true;
        say(connection, text);
    }
}

int listenOn(std::uint16_t port) {
    SOCKET const listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    own.sin_port = htons(port);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 || listen(listener, 1) != 0)
        return cannotListen;
    for (;;) {
        SOCKET const connection = accept(listener, nullptr, nullptr);
        const bool over = serve(connection);
        closesocket(connection);
        if (!over) continue;
        std::puts("the stand-in's last line");
        return askedToEnd;
    }
}

bool inEnvironment(const char* name) { return GetEnvironmentVariableA(name, nullptr, 0) != 0; }

}  // namespace

int main(int count, char** arguments) {
    if (inEnvironment(zpt::loginVariable) || inEnvironment(zpt::readyVariable)) return knowsTooMuch;
    constexpr std::string_view address = "127.0.0.1:";
    for (int place = 1; place + 1 < count; ++place) {
        const std::string_view forward{arguments[place + 1]};
        if (std::strcmp(arguments[place], "-L") != 0 || !forward.starts_with(address)) continue;
        std::uint16_t port = 0;
        std::from_chars(forward.data() + address.size(), forward.data() + forward.size(), port);
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0 ? listenOn(port) : cannotListen;
    }
    return wrongCommandLine;
}
