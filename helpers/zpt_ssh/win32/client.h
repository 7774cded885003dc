#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

/// Runs the client until it ends: without a shell, without input, its output read and dropped but for the
/// last line. When the helper itself is ended, in whatever way, the client and what it started end too.
/// Nothing when it cannot be started.
[[nodiscard]] std::optional<ClientEnd> runClient(const ClientCommand& command);

}  // namespace zpt
