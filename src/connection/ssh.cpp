// SSH connections: the local prompt, the helpers and the socket to them, as one transport.

#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/network.h"
#include "connection/send.h"
#include "connection/session.h"
#include "connection/ssh_connect.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_prompt.h"
#include "connection/transport.h"
#include "connection/transport_controls.h"
#include "diag/format_msg.h"

namespace qxterm {
namespace {

/// The attempt goes on with the local prompt; the status dialog follows when the password has been typed.
bool start(ErrorTrap& /*trap*/) {
    setSshMode(true);
    clearLoginFlags();
    traceAttempt("Connection Type: SSH");
    setConnItems(true);
    if (!hostGiven()) return false;
    startSession(sshTransport);
    DisplayBanner();
    doFakeLogin();
    return true;
}

void stop() {
    abandonLocalConnect();
    endLocalPrompt();
    ClearSSHText();
    if (g_bSSHMode && sshHelperRecorded()) {
        endSshHelpers();
        clearLoginFlags();
    }
    comnet2.close();
}

}  // namespace

constinit const Transport sshTransport{
    .type = connectType::ssh,
    .start = start,
    .stop = stop,
    .send = sendBytes,
    .offersBreak = false,
    .waitingText = [] { return formatMsg("Opening SSH connection to host: %1", CurrentProfile.host); },
    .patience = connectPatience,
};

}  // namespace qxterm
