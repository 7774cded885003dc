#include "program.h"

#include "app/main.h"
#include "app/program_state.h"
#include "connection/transport_controls.h"
#include "platform/headless/clock.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/program.h"
#include "platform/headless/reset.h"
#include "platform/headless/socket.h"

namespace qxterm::bench {
namespace {

constexpr const char* profileName = "bench";
constexpr std::int64_t statusDialogStep = 250;  // ms, the period of the status dialog's timer

/// What happens while the status dialog is open: the host accepts, then time passes until the dialog goes.
bool acceptOrWait() {
    if (!comnet2.connected()) {
        headless::socketConnects(comnet2);
    } else {
        headless::advance(statusDialogStep);
    }
    return true;
}

void start(const char* commandLine) {
    headless::setCommandLine(commandLine);
    qxterm::main();
    headless::setDrawing(headless::Drawing::countOnly);
}

}  // namespace

void startProgram() {
    headless::reset();
    resetProgram();
    start("");
}

void startSession() {
    headless::reset();
    resetProgram();
    headless::putIni("Settings", "Profiles", profileName);
    headless::putIni(profileName, "connect", "net");
    headless::putIni(profileName, "host", "host");
    headless::setNextEvent(acceptOrWait);
    start(profileName);
    headless::setNextEvent(nullptr);
}

}  // namespace qxterm::bench
