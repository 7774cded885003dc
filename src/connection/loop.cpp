// The loop: what is typed is interpreted as if a host had sent it.

#include "connection/session.h"
#include "connection/transport.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm {
namespace {

constexpr std::int32_t patience = 1000;  // milliseconds

bool start(ErrorTrap& /*trap*/) {
    startSession(loopTransport);
    traceAttempt("g_bConnectActive is TRUE");
    sessionIsUp();
    return true;
}

}  // namespace

constinit const Transport loopTransport{
    .type = connectType::loop,
    .start = start,
    .send = processInput,
    .patience = [] { return patience; },
};

}  // namespace qxterm
