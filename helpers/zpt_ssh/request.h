#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/parsed.h"

namespace zpt {

/// What zpt_ssh is asked for.
struct SshRequest {
    std::uint16_t sshPort = 22;
    int ipVersion = 0;  ///< 4 or 6; 0 leaves the choice to the client
    std::uint16_t forwardPort = 0;
    std::uint16_t remotePort = 0;  ///< on the remote host's own loopback
    std::string host;
    std::string login;  ///< empty: the client's own choice
};

/// Reads "-no-antispoof -P PORT [-4|-6|-] -ssh -L PORT:localhost:PORT HOST" (the options in any order, each
/// once) and the login name, which comes by another way.
[[nodiscard]] Parsed<SshRequest> parseSshRequest(const std::vector<std::string_view>& arguments,
                                                 std::string_view login);

}  // namespace zpt
