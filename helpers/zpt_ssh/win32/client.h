#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "common/win32/sockets.h"
#include "zpt_ssh/request.h"

namespace zpt {

/// An SSH client of this machine and the whole command line for it.
struct ClientCommand {
    std::string file;  ///< full path
    std::string commandLine;
};

/// The client to use: plink.exe beside the helper, else the system's own OpenSSH; nothing when there is
/// neither.
[[nodiscard]] std::optional<ClientCommand> findClient(const SshRequest& request);

/// How a client ended.
struct ClientEnd {
    std::uint32_t exitCode;
    std::string lastLine;  ///< the last line that it printed; may be empty
};

/// A client that runs: without a shell, without input, its output read and dropped but for the last line.
/// When the helper itself is ended, in whatever way, the client and what it started end too.
class Client {
public:
    Client();
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// False when it cannot be started.
    [[nodiscard]] bool start(const ClientCommand& command);
    [[nodiscard]] bool running() const;
    /// True when the client, or something that it started, listens on the TCP port of the loopback address,
    /// and nobody else; also when the system does not tell who does.
    [[nodiscard]] bool listensOn(Loopback address, std::uint16_t port) const;
    /// Ends the client.
    void end();
    /// Waits until the client has ended.
    [[nodiscard]] ClientEnd wait();

private:
    struct Process;
    std::unique_ptr<Process> process_;
};

}  // namespace zpt
