#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "common/parsed.h"

namespace zpt {

/// What zpt_tnetd is asked for.
struct RelayRequest {
    std::uint16_t localPort = 0;    ///< where the terminal connects
    std::uint16_t forwardPort = 0;  ///< where zpt_ssh listens

    /// zpt_ssh itself listens where the terminal connects: there is nothing to relay.
    [[nodiscard]] bool idle() const { return localPort == forwardPort; }
};

/// Reads "2 LOCALPORT FORWARDPORT IPVERSION [LOGIN]". The leading 2 is the version of this order of
/// arguments.
[[nodiscard]] Parsed<RelayRequest> parseRelayRequest(const std::vector<std::string_view>& arguments);

}  // namespace zpt
