#include "connection/network.h"

#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/connection_hooks.h"
#include "connection/connection_manager.h"
#include "connection/send.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "connection/transport.h"
#include "connection/transport_controls.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/trace_log.h"
#include "platform/message_box.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

std::int16_t packetCount = 0;
bool receiving = false;
std::int32_t pendingBytes = 0;
bool firstDataSeen = false;

namespace {

void logArrival(std::string_view before, std::int32_t bytes, std::string_view after) {
    if (tracing()) writeLog(std::string{before} + std::to_string(bytes) + std::string{after});
}

/// Whose bytes pendingBytes counts while the receive loop runs.
struct Counted {
    std::uint32_t stream = 0;
    bool sessionUp = false;
    friend bool operator==(const Counted&, const Counted&) = default;
};
Counted counted;

/// Events inside the loop can end the session, and start another. The bytes announced until then went with
/// their connection.
void forgetBytesOfEndedSession() {
    if (counted.stream == outputStream && (!counted.sessionUp || g_bConnectActive)) return;
    counted = {outputStream, g_bConnectActive};
    pendingBytes = 0;
}

/// Reads and shows what is pending. Returns when nothing is left, or after a block that is kept off the
/// screen.
void drainSocket() {
    do {
        logArrival("comnet2_DataArrival(): processing ", pendingBytes, " bytes in loop");
        const std::string data = GetNetworkBytes(pendingBytes);
        logBytes("BYTES>>", data);
        const Counted own = counted;
        const bool shown = !g_bSSHMode || g_bLoginDone || passLoginFilter(data);
        if (shown) {
            giveWayToHost(data);
            processInput(data);
        }
        forgetBytesOfEndedSession();
        if (own == counted) pendingBytes -= static_cast<std::int32_t>(data.size());
        if (!shown || data.empty()) return;
    } while (pendingBytes > 0);
}

void receive(std::int32_t bytesTotal) {
    if (bytesTotal == -1) return;
    if (receiving) forgetBytesOfEndedSession();
    pendingBytes = toInt32(std::int64_t{pendingBytes} + bytesTotal);
    if (receiving) {
        logArrival("comnet2_DataArrival() Rentry: ", bytesTotal, " bytes incoming");
        return;
    }
    receiving = true;
    if (!firstDataSeen) {
        --pendingBytes;  // the socket announces the byte that stays behind once more
        firstDataSeen = true;
    }
    logArrival("comnet2_DataArrival(): ", bytesTotal,
               " bytes incoming, " + std::to_string(pendingBytes) + " bytes to process");
    if (packetCount < INT16_MAX) ++packetCount;
    if (g_bSSHMode && g_bLoginDone) doAttr(screenMode, 7, 0);
    counted = {outputStream, g_bConnectActive};
    drainSocket();
    receiving = false;
}

std::uint16_t socketPort(std::int32_t port) {
    if (port < 0 || port > UINT16_MAX) throw RunTimeError{errors::overflow};
    return static_cast<std::uint16_t>(port);
}

bool start(ErrorTrap& trap) {
    setSshMode(false);
    clearLoginFlags();
    traceAttempt("Connection Type: Network");
    if (!hostGiven()) return false;
    trap.step([] { comnet2.connect(CurrentProfile.host, socketPort(CurrentProfile.port)); });
    startSession(networkTransport);
    return true;
}

}  // namespace

constinit const Transport networkTransport{
    .type = connectType::net,
    .start = start,
    .stop = [] { comnet2.close(); },
    .send = sendBytes,
    .offersBreak = false,
    .waitingText = [] { return formatMsg("Opening network connection to host: %1", CurrentProfile.host); },
    .patience = connectPatience,
};

bool hostGiven() {
    const std::string& host = CurrentProfile.host;
    if (host.empty()) {
        traceAttempt("Missing network address");
        messageBox("You must specify a hostname to connect to", programTitle, Buttons::ok, Icon::information);
        connectionHooks.showOptions();
        return false;
    }
    traceAttempt("Network Address: " + host);
    traceAttempt("Network Port: " + std::to_string(CurrentProfile.port));
    return true;
}

std::int32_t connectPatience() {
    constexpr std::int32_t second = 1000;
    return g_iConnectTimeout * second;
}

void clearReceiveState() {
    packetCount = 0;
    receiving = false;
    pendingBytes = 0;
    firstDataSeen = false;
    counted = {};
}

void comnet2_Connect() {
    trapped("comnet2_Connect", [] {
        sessionIsUp();
        setConnItems(true);
        comnet2_DataArrival(-1);
    });
}

void comnet2_DataArrival(std::int32_t bytesTotal) {
    const bool runsLoop = !receiving;
    bool done = false;
    trapped("DataArrival", [&] {
        receive(bytesTotal);
        done = true;
    });
    if (done) return;
    if (runsLoop) {
        // The unread bytes go with the connection; the next one is to be received like the first.
        receiving = false;
        pendingBytes = 0;
    }
    disconnectPort();
}

void comnet2_Close() {
    trapped("comnet2_Close", [] {
        messageBox("The connection has been dropped", programTitle, Buttons::ok, Icon::information);
        disconnectPort();
    });
}

void comnet2_Error(std::int16_t /*number*/, std::string_view /*description*/) {}

std::string GetNetworkBytes(std::int32_t count) {
    std::string data;
    trapped("GetNetworkBytes", [&] {
        if (count > 0) data = comnet2.getData(count);
        if (tracing()) {
            writeLog("GetNetworkBytes(): Requested count=" + std::to_string(count) +
                     ", actual: " + std::to_string(data.size()) + " bytes");
        }
    });
    return data;
}

void sendTelnetAnswer(std::string_view bytes) {
    if (comnet2.connected()) sendBytes(bytes);
}

}  // namespace qxterm
