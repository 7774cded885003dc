#include <string>

#include "common/names.h"
#include "common/win32/console.h"
#include "common/win32/system.h"
#include "zpt_tnetd/request.h"
#include "zpt_tnetd/win32/relay.h"

namespace {

constexpr int wrongCommandLine = 2;
constexpr int cannotListen = 3;

/// Before all other code: what watches the stack calls the system, too.
[[gnu::constructor(101)]] void hardenFirst() { zpt::hardenProcess(); }

}  // namespace

int main(int count, char** values) {
    const auto parsed = zpt::parseRelayRequest(zpt::argumentsOf(count, values));
    if (!parsed.good()) {
        zpt::complain(zpt::relayHelper, parsed.complaint);
        return wrongCommandLine;
    }
    // It lives until the terminal ends it, as the record of a session that is up.
    if (parsed.request.idle()) Sleep(INFINITE);
    zpt::relayConnections(parsed.request);
    zpt::complain(zpt::relayHelper,
                  "port " + std::to_string(parsed.request.localPort) + " cannot be listened on");
    return cannotListen;
}
