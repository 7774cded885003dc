#include "connection/session.h"

#include "config/profile_record.h"
#include "connection/transport.h"
#include "diag/trace_log.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm {

bool g_bConnectActive = false;

namespace {

/// The row of the session that was started and has not ended; null when there is none.
const Transport* row = nullptr;

}  // namespace

const Transport& sessionTransport() {
    return row != nullptr ? *row : transportOf(CurrentProfile.connectType);
}

std::int16_t g_iConnectType() { return sessionTransport().type; }

bool sessionStarted() { return row != nullptr; }

void startSession(const Transport& transport) {
    row = &transport;
    beginOutput();
}

void sessionIsUp() {
    // A control may tell of its success while it is still being asked to connect.
    row = &sessionTransport();
    g_bConnectActive = true;
}

void endSession() {
    sessionTransport().stop();
    dropWaitingBlocks();
    forgetSession();
}

void forgetSession() {
    row = nullptr;
    g_bConnectActive = false;
}

void sendTyped(std::string_view text) { sessionTransport().send(text); }

void traceAttempt(const std::string& text) { writeLog("connectPort() - " + text); }

}  // namespace qxterm
