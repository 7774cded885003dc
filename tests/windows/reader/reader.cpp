// What a Windows program needs at least to receive a host's output: it connects, reads, and forgets what it
// has read.
//
//   reader ADDRESS PORT

#include <winsock2.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr std::size_t blockSize = 65536;  // bytes asked for at once

int readAll(SOCKET connection) {
    std::vector<char> block(blockSize);
    int received = 0;
    do {
        received = recv(connection, block.data(), static_cast<int>(block.size()), 0);
    } while (received > 0);
    return received == 0 ? 0 : 1;
}

int connectAndRead(const char* address, const char* port) {
    SOCKET const connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (connection == INVALID_SOCKET) return 1;
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_addr.s_addr = inet_addr(address);
    peer.sin_port = htons(static_cast<u_short>(std::atoi(port)));
    if (connect(connection, reinterpret_cast<const sockaddr*>(&peer), sizeof(peer)) != 0) return 1;
    return readAll(connection);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("Usage: reader ADDRESS PORT\n", stderr);
        return 2;
    }
    WSADATA data{};
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return 1;
    return connectAndRead(arguments[1], arguments[2]);
}
