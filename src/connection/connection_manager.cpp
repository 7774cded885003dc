#include "connection/connection_manager.h"

#include <array>
#include <string>

#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/serial_line.h"
#include "connection/session_state.h"
#include "connection/ssh_hooks.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/trace_log.h"
#include "platform/message_box.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

bool userDisconnect = false;

namespace {

void trace(const std::string& text) { writeLog("connectPort() - " + text); }

/// The attempt is under way: from now on the session holds its type, and what was received before is not its
/// output.
void startSession() {
    sessionStarted = true;
    beginOutput();
}

/// Asks for the host's name. False when the profile has none, after the user was sent to the options.
bool hostGiven() {
    if (!CurrentProfile.host.empty()) return true;
    trace("Missing network address");
    messageBox("You must specify a hostname to connect to", programTitle, Buttons::ok, Icon::information);
    if (managerHooks.showOptions != nullptr) managerHooks.showOptions();
    return false;
}

void logAddress() {
    trace("Network Address: " + CurrentProfile.host);
    trace("Network Port: " + std::to_string(CurrentProfile.port));
}

std::uint16_t socketPort(std::int32_t port) {
    if (port < 0 || port > UINT16_MAX) throw RunTimeError{errors::overflow};
    return static_cast<std::uint16_t>(port);
}

/// True when a connection attempt is under way.
bool startNetwork(ErrorTrap& trap) {
    g_bSSHMode = false;
    clearLoginFlags();
    trace("Connection Type: Network");
    if (!hostGiven()) return false;
    logAddress();
    trap.step([] { comnet2.connect(CurrentProfile.host, socketPort(CurrentProfile.port)); });
    startSession();
    return true;
}

/// True when the local login prompt is up.
bool startSsh() {
    g_bSSHMode = true;
    clearLoginFlags();
    trace("Connection Type: SSH");
    setConnItems(true);
    if (!hostGiven()) return false;
    logAddress();
    startSession();
    runSshHook(sshHooks.DisplayBanner);
    runSshHook(sshHooks.doFakeLogin);
    return true;
}

void setFlowControl(std::int16_t flowControl) {
    constexpr std::array names{"MSCOMM_HANDSHAKE_NONE", "MSCOMM_HANDSHAKE_XONXOFF", "MSCOMM_HANDSHAKE_RTS",
                               "MSCOMM_HANDSHAKE_RTSXONXOFF"};
    comser.setHandshaking(flowControl);
    if (flowControl < 0 || static_cast<std::size_t>(flowControl) >= names.size()) return;
    trace(std::string{"Flow Control: "} + names[static_cast<std::size_t>(flowControl)]);
}

void startSerial(ErrorTrap& trap) {
    const ProfileRecord& profile = CurrentProfile;
    trace("Connection Type: Serial or Modem");
    comser.setCommPort(profile.commport);
    trace("Communication Port: " + std::to_string(profile.commport));
    const std::string settings = formatMsg("%1,%2,%3,%4", std::to_string(profile.baud), profile.parity,
                                           std::to_string(profile.databits), profile.stopBits);
    comser.setSettings(settings);
    trace("Communication Port: " + settings);
    setFlowControl(profile.flowControl);
    comser.setInputLength(0);
    // A plain line need not have a carrier at all.
    comser.setCarrierTimeout(g_iConnectType == connectType::modem ? profile.cd_timeout : std::int16_t{0});
    trap.step([] { comser.setPortOpen(true); });
    startSession();
    if (g_iConnectType == connectType::serial) g_bConnectActive = true;
    startSerialPoll();
}

/// True when connectPort is to go on and wait for the session.
bool startTransport(ErrorTrap& trap) {
    switch (g_iConnectType) {
        case connectType::net: return startNetwork(trap);
        case connectType::serial:
        case connectType::modem: startSerial(trap); return true;
        case connectType::ssh: return startSsh();
        case connectType::loop:
            startSession();
            trace("g_bConnectActive is TRUE");
            g_bConnectActive = true;
            return true;
        default: startSession(); return true;
    }
}

/// The reset that ends a session leaves the function-key bar as it is.
void resetKeepingKeyBar() {
    const bool barShown = modeSet(mode::keyBarShown);
    resetTerminal();
    setMode(mode::keyBarShown, barShown);
    layOutKeyBar();
    // The reset blanks the window where the cursor, or older lines, may be shown just now.
    picterm.refresh();
}

void endSsh() {
    runSshHook(sshHooks.ClearSSHText);
    if (g_bSSHMode && sshHelperRunning()) {
        runSshHook(sshHooks.endHelpers);
        clearLoginFlags();
    }
    comnet2.close();
}

void closeTransport() {
    switch (g_iConnectType) {
        case connectType::net: comnet2.close(); break;
        case connectType::serial:
            comser.setPortOpen(false);
            stopSerialPoll();
            break;
        case connectType::modem:
            comser.setPortOpen(false);
            break;  // its poll stays registered and finds nothing
        case connectType::ssh: endSsh(); break;
        default: break;
    }
}

/// An attempt that no dialog waits for gives way to a connection of another type.
void endAttemptOfAnotherType() {
    if (sessionStarted && g_iConnectType != CurrentProfile.connectType) disconnectPort();
}

void enableItem(std::int16_t index, bool enabled) {
    if (managerHooks.enableConnectionItem != nullptr) managerHooks.enableConnectionItem(index, enabled);
}

}  // namespace

void connectPort() {
    ErrorTrap trap{"connectPort"};
    trap.run([&] {
        if (managerHooks.unloadProfileDialog != nullptr) managerHooks.unloadProfileDialog();
        if (g_bConnectActive) return;
        endAttemptOfAnotherType();
        if (!startTransport(trap)) return;
        if (g_iConnectType == connectType::modem) {
            trace("modemConnect - MODEM_RESET");
            modemConnect(modemReset);
        }
        if (!g_bSSHMode) frmConn.showModal();
        if (g_bConnectActive) {
            trace("g_bConnectActive is TRUE");
            setConnItems(true);
        }
    });
}

void disconnectPort() {
    trapped("disconnectPort", [] {
        setConnItems(false);
        resetKeepingKeyBar();
        scrErase(0, lastColumn, 0, statusRow);
        runSshHook(sshHooks.endLocalLogin);
        closeTransport();
        dropWaitingBlocks();
        g_bConnectActive = false;
        sessionStarted = false;
        followProfileType();
    });
}

void setConnItems(bool connected) {
    trapped("setConnItems", [&] {
        const bool hasBreak = g_iConnectType != connectType::net && g_iConnectType != connectType::ssh;
        enableItem(connectionItem::disconnect, connected);
        enableItem(connectionItem::sendBreak, connected && hasBreak);
        enableItem(connectionItem::connect, !connected);
        if (managerHooks.enableProfileItems != nullptr) managerHooks.enableProfileItems(!connected);
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
            case connectionItem::sendBreak:
                if (g_iConnectType == connectType::serial || g_iConnectType == connectType::modem)
                    sendBreak();
                break;
            case connectionItem::options:
                if (managerHooks.showOptions != nullptr) managerHooks.showOptions();
                break;
            default: break;
        }
    });
}

}  // namespace qxterm
