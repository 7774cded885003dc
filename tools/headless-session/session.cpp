#include "headless-session/session.h"

#include <cstdint>

#include "app/main.h"
#include "app/program_state.h"
#include "connection/transport_controls.h"
#include "platform/headless/clock.h"
#include "platform/headless/modal.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/program.h"
#include "platform/headless/reset.h"
#include "platform/headless/socket.h"

namespace qxterm::headless {
namespace {

constexpr const char* profileName = "host";
constexpr std::int64_t statusDialogStep = 250;  // ms, the period of the status dialog's timer

/// What happens while the status dialog is open: the host accepts, then time passes until the dialog goes.
bool acceptOrWait() {
    if (!comnet2.connected()) {
        socketConnects(comnet2);
    } else {
        advance(statusDialogStep);
    }
    return true;
}

void startAnew() {
    reset();
    resetProgram();
}

}  // namespace

void startProgram() {
    startAnew();
    setCommandLine("");
    qxterm::main();
}

void startSession() {
    startAnew();
    putIni("Settings", "Profiles", profileName);
    putIni(profileName, "connect", "net");
    putIni(profileName, "host", "host");
    setNextEvent(acceptOrWait);
    setCommandLine(profileName);
    qxterm::main();
    setNextEvent(nullptr);
}

}  // namespace qxterm::headless
