#include "connection/status_dialog.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "config/ini_file.h"
#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/serial_line.h"
#include "connection/session_state.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "platform/controls.h"
#include "platform/resource_ids.h"
#include "platform/timer.h"

namespace qxterm {

constinit Form frmConn{"frmConn", FormKind::dialog, IDD_FRMCONN, "Connection"};

namespace {

Label lblConn{frmConn, "lblConn", IDC_LBLCONN};
Button cmdCancel{frmConn, "cmdCancel", IDC_CONN_CANCEL, {.caption = "Cancel"}};
constinit Timer tmrConn{frmConn, "tmrConn"};
/// The dialog closes at the next tick.
bool finished = false;
/// Milliseconds left before the attempt counts as timed out.
std::int32_t remainingMs = 0;

// Milliseconds.
constexpr std::int32_t waitingPeriod = 100;
constexpr std::int32_t timedOutPeriod = 1000;
constexpr std::int32_t establishedPeriod = 250;
constexpr std::int32_t loopTime = 1000;
constexpr std::int32_t second = 1000;

/// A tick's message box lets further ticks run; they must not start the same retry once more.
bool inTick = false;

std::string lineText(const char* pattern) {
    return formatMsg(pattern, std::to_string(CurrentProfile.commport), std::to_string(CurrentProfile.baud));
}

void describeAttempt() {
    remainingMs = 0;
    switch (g_iConnectType) {
        case connectType::net:
            lblConn.setCaption(formatMsg("Opening network connection to host: %1", CurrentProfile.host));
            remainingMs = g_iConnectTimeout * second;
            break;
        case connectType::serial:
            lblConn.setCaption(lineText("Opening serial connection on port COM%1 at speed %2"));
            break;
        case connectType::modem:
            lblConn.setCaption(lineText("Opening modem connection on port COM%1 at speed %2"));
            remainingMs = CurrentProfile.timeout * second;
            break;
        case connectType::ssh:
            lblConn.setCaption(formatMsg("Opening SSH connection to host: %1", CurrentProfile.host));
            remainingMs = g_iConnectTimeout * second;
            break;
        case connectType::loop: remainingMs = loopTime; break;
        default: break;
    }
}

/// A network attempt is only said to be retried: it goes on until it succeeds or the user cancels it.
void retry(ErrorTrap& trap) {
    lblConn.setCaption("The connection has timed out, retrying...");
    if (g_iConnectType != connectType::modem) return;
    comser.setPortOpen(false);
    trap.step([] { comser.setPortOpen(true); });
    modemConnect(modemReset);
    remainingMs = CurrentProfile.timeout * second;
    tmrConn.setInterval(waitingPeriod);
}

void timeOut(ErrorTrap& trap) {
    lblConn.setCaption("The connection as timed out");
    tmrConn.setInterval(timedOutPeriod);
    if (CurrentProfile.auto_retry) {
        retry(trap);
    } else {
        finished = true;
    }
}

void Form_Load() {
    trapped("Form_Load", [] {
        describeAttempt();
        finished = false;
        inTick = false;
        tmrConn.setInterval(waitingPeriod);
        tmrConn.setEnabled(true);
        Glb_CentreForm(frmConn);
    });
}

void tmrConn_Timer() {
    if (inTick) return;
    inTick = true;
    ErrorTrap trap{"tmrConn_Timer"};
    trap.run([&] {
        if (finished) {
            tmrConn.setEnabled(false);
            frmConn.unload();
            return;
        }
        remainingMs = std::max(remainingMs - tmrConn.interval(), std::int32_t{0});
        if (remainingMs < 1) timeOut(trap);
        if (g_bConnectActive) {
            lblConn.setCaption("Connection established");
            tmrConn.setInterval(establishedPeriod);
            finished = true;
        }
    });
    inTick = false;
}

void cmdCancel_Click() {
    trapped("cmdCancel_Click", [] { frmConn.unload(); });
}

void Form_QueryUnload(bool& /*cancel*/, UnloadReason /*reason*/) {
    trapped("Form_QueryUnload", [] {
        if (!g_bConnectActive) disconnectPort();
    });
}

}  // namespace

void connectStatusDialog() {
    frmConn.onLoad.connect("Form_Load", Form_Load);
    frmConn.onQueryUnload.connect("Form_QueryUnload", Form_QueryUnload);
    cmdCancel.onClick.connect("cmdCancel_Click", cmdCancel_Click);
    tmrConn.onTimer.connect("tmrConn_Timer", tmrConn_Timer);
}

}  // namespace qxterm
