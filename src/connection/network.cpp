#include "connection/network.h"

#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/connection_hooks.h"
#include "connection/send.h"
#include "connection/session_state.h"
#include "connection/ssh_hooks.h"
#include "connection/transport_controls.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
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
            tellHostText(data);
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

}  // namespace

void clearReceiveState() {
    packetCount = 0;
    receiving = false;
    pendingBytes = 0;
    firstDataSeen = false;
}

void comnet2_Connect() {
    trapped("comnet2_Connect", [] {
        g_bConnectActive = true;
        tellConnected();
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
    askDisconnect();
}

void comnet2_Close() {
    trapped("comnet2_Close", [] {
        messageBox("The connection has been dropped", programTitle, Buttons::ok, Icon::information);
        askDisconnect();
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
