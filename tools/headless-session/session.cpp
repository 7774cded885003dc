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

}  // namespace

void resetAll() {
    reset();
    resetProgram();
}

void killProgram() {
    endRun();
    resetProgram();
}

void runProgram(std::string_view commandLine) {
    setCommandLine(commandLine);
    qxterm::main();
}

void startProgram() {
    resetAll();
    runProgram();
}

void startSession() {
    resetAll();
    putIni("Settings", "Profiles", profileName);
    putIni(profileName, "connect", "net");
    putIni(profileName, "host", "host");
    setNextEvent(acceptOrWait);
    runProgram(profileName);
    setNextEvent(nullptr);
}

}  // namespace qxterm::headless
