#include "connection/connection_manager.h"

#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/connection_hooks.h"
#include "connection/session.h"
#include "connection/status_dialog.h"
#include "connection/transport.h"
#include "diag/error_trap.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

bool userDisconnect = false;

namespace {

/// The reset that ends a session leaves the function-key bar as it is.
void resetKeepingKeyBar() {
    const bool barShown = modeSet(mode::keyBarShown);
    resetTerminal();
    setMode(mode::keyBarShown, barShown);
    layOutKeyBar();
    // The reset blanks the window where the cursor, or older lines, may be shown just now.
    picterm.refresh();
}

/// An attempt that no dialog waits for gives way to a connection of another type.
void endAttemptOfAnotherType() {
    if (sessionStarted() && &sessionTransport() != &transportOf(CurrentProfile.connectType)) disconnectPort();
}

}  // namespace

void forgetUserDisconnect() { userDisconnect = false; }

void connectPort() {
    ErrorTrap trap{"connectPort"};
    trap.run([&] {
        connectionHooks.unloadProfileDialog();
        if (g_bConnectActive) return;
        endAttemptOfAnotherType();
        if (!sessionTransport().start(trap)) return;
        if (!g_bSSHMode) frmConn.showModal();
        if (g_bConnectActive) {
            traceAttempt("g_bConnectActive is TRUE");
            setConnItems(true);
        }
    });
}

void disconnectPort() {
    trapped("disconnectPort", [] {
        setConnItems(false);
        resetKeepingKeyBar();
        scrErase(0, lastColumn, 0, statusRow);
        endSession();
    });
}

void setConnItems(bool connected) {
    trapped("setConnItems", [&] {
        const auto enableItem = connectionHooks.enableConnectionItem;
        enableItem(connectionItem::disconnect, connected);
        enableItem(connectionItem::sendBreak, connected && sessionTransport().offersBreak);
        enableItem(connectionItem::connect, !connected);
        connectionHooks.enableProfileItems(!connected);
    });
}

void mnuconnitem_Click(std::int16_t index) {
    trapped("mnuconnitem_Click", [&] {
        switch (index) {
            case connectionItem::connect: connectPort(); break;
            case connectionItem::disconnect:
                userDisconnect = true;
                disconnectPort();
                resetKeepingKeyBar();
                break;
            case connectionItem::sendBreak: sessionTransport().sendBreak(); break;
            case connectionItem::options: connectionHooks.showOptions(); break;
            default: break;
        }
    });
}

}  // namespace qxterm
