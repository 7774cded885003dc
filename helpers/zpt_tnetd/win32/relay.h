#pragma once

#include "zpt_tnetd/request.h"

namespace zpt {

/// Listens on the local port of both loopback addresses and relays one connection after the other to the
/// forwarded port of this machine's loopback. Returns only when it cannot listen.
void relayConnections(const RelayRequest& request);

}  // namespace zpt
