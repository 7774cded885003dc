#include "connection/ssh_connect.h"

#include <string>

#include "config/ini_file.h"
#include "config/profile_record.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/ssh_fields.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_ports.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "platform/event_loop.h"
#include "platform/message_box.h"

namespace qxterm {
namespace {

/// The first search may find a port up to this far above its start.
constexpr std::int64_t portRange = 500;

/// Port of the connection to the tunnel's local end; 0 when none was free. The profile keeps its own.
std::int32_t localPort = 0;
/// Counts the attempts, and the ends of attempts.
std::uint32_t attempt = 0;

std::int32_t findLocalPort() {
    const std::int32_t start = g_lPortForwardStart;
    std::int32_t port = CN_NetStat(start);
    if (port > start + portRange || port < start) port = CN_NetStat(start);
    return port;
}

/// False after the user was told which field cannot be used, and the attempt was given up.
bool fieldsUsable() {
    const std::string complaint = sshFieldComplaint(CurrentProfile.host, g_sSSHLogin, profileSshPort());
    if (complaint.empty()) return true;
    messageBox(complaint, programTitle, Buttons::ok, Icon::information);
    disconnectPort();
    return false;
}

}  // namespace

void localConnect() {
    ErrorTrap trap{"localConnect"};
    trap.run([&] {
        const std::uint32_t own = ++attempt;
        if (!fieldsUsable()) return;
        localPort = findLocalPort();
        // A failed search may have ended the attempt by its report; nobody would end helpers that start now.
        if (own != attempt || eventLoop::ending()) return;
        StartSSH(CurrentProfile.host, g_sSSHLogin, localPort);
        if (own != attempt || eventLoop::ending()) return;
        // Without a client of ours whoever else answers at that port is not to be given the password.
        if (!sshHelperRecorded()) endAutoLogin();
        trap.step([] { comnet2.connect("localhost", static_cast<std::uint16_t>(localPort)); });
        frmConn.showModal();
    });
}

void abandonLocalConnect() { ++attempt; }

}  // namespace qxterm
