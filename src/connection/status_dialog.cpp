#include "connection/status_dialog.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/session.h"
#include "connection/transport.h"
#include "diag/error_trap.h"
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

/// A tick's message box lets further ticks run; they must not start the same retry once more.
bool inTick = false;

void describeAttempt() {
    const Transport& transport = sessionTransport();
    const std::string text = transport.waitingText();
    if (!text.empty()) lblConn.setCaption(text);
    remainingMs = transport.patience();
}

void retry(ErrorTrap& trap) {
    lblConn.setCaption("The connection has timed out, retrying...");
    const Transport& transport = sessionTransport();
    if (!transport.retry(trap)) return;
    remainingMs = transport.patience();
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
