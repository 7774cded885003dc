#include "connection/modem.h"

#include <string>

#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/send.h"
#include "connection/serial_line.h"
#include "connection/session.h"
#include "connection/transport.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"
#include "platform/message_box.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int16_t dialDelay = 1000;  // milliseconds

bool start(ErrorTrap& trap) {
    openLine(trap, CurrentProfile.cd_timeout);
    startSession(modemTransport);
    startSerialPoll();
    traceAttempt("modemConnect - MODEM_RESET");
    modemConnect(modemReset);
    return true;
}

bool retry(ErrorTrap& trap) {
    comser.setPortOpen(false);
    trap.step([] { comser.setPortOpen(true); });
    modemConnect(modemReset);
    return true;
}

void carrierLost() {
    messageBox("The connection has been dropped", programTitle, Buttons::ok, Icon::information);
    disconnectPort();
}

std::int32_t patience() {
    constexpr std::int32_t second = 1000;
    return CurrentProfile.timeout * second;
}

}  // namespace

constinit const Transport modemTransport{
    .type = connectType::modem,
    .start = start,
    // The poll and a dialling step that is still due stay registered, and find nothing.
    .stop = [] { comser.setPortOpen(false); },
    .send = sendSerial,
    .sendBreak = sendBreak,
    .carrierLost = carrierLost,
    .waitingText = [] { return lineText("Opening modem connection on port COM%1 at speed %2"); },
    .patience = patience,
    .retry = retry,
};

void modemConnect(std::int16_t step) {
    trapped("modemConnect", [&] {
        if (!comser.portOpen()) return;
        if (step == modemReset) {
            sendSerial(CurrentProfile.reset + '\r');
            addTimer(timerOnce, timerAction::dial, dialDelay);
        } else if (step == modemDial) {
            const std::string dialString =
                CurrentProfile.prefix + CurrentProfile.phone + CurrentProfile.suffix;
            sendSerial(dialString + '\r');
            writeLog("modemConnect() - Phone Number: " + dialString);
        }
    });
}

}  // namespace qxterm
