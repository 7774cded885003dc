#include "connection/serial_line.h"

#include <string>

#include "config/profile_record.h"
#include "connection/connection_hooks.h"
#include "connection/send.h"
#include "connection/session_state.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"
#include "platform/message_box.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/input_busy.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

// Milliseconds.
constexpr std::int16_t breakTime = 250;
constexpr std::int16_t pollPeriod = 250;
constexpr std::int16_t dialDelay = 1000;

void tell(const char* text) { messageBox(text, programTitle, Buttons::ok, Icon::information); }

void receiveText() {
    constexpr const char* heading = "Comser_OnComm() - MSCOMM_EV_RECEIVE";
    writeLog(heading);
    if (inputBusy != 0) return;
    const std::string text = comser.input();
    if (tracing()) writeLog(std::string{heading} + ' ' + text);
    if (!text.empty() && g_bConnectActive) processInput(text);
}

void carrierChanged() {
    writeLog("Comser_OnComm() - MSCOMM_EV_CD");
    if (comser.carrierHolding()) {
        writeLog("Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is TRUE");
        g_bConnectActive = true;
        tellConnected();
        return;
    }
    writeLog("Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is FALSE");
    if (g_iConnectType != connectType::modem) return;
    tell("The connection has been dropped");
    askDisconnect();
}

void carrierTimedOut() {
    writeLog("Comser_OnComm() - MSCOMM_ER_CDTO");
    tell("Failed to detect carrier");
    askDisconnect();
}

}  // namespace

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

void comser_OnComm() {
    trapped("comser_OnComm", [] {
        switch (comser.commEvent()) {
            case commEvents::receive: receiveText(); break;
            case commEvents::carrierDetect: carrierChanged(); break;
            case commEvents::carrierTimeout: carrierTimedOut(); break;
            default: break;
        }
    });
}

void startSerialPoll() { addTimer(timerRepeated, timerAction::pollSerial, pollPeriod); }

void stopSerialPoll() { delTimer(timerRepeated, timerAction::pollSerial, pollPeriod); }

void pollSerial() {
    if (inputBusy == 0 && comser.inBufferCount() > 0) processInput(comser.input());
}

void sendBreak() {
    comser.setBreak(true);
    addTimer(timerOnce, timerAction::endBreak, breakTime);
}

void endBreak() { comser.setBreak(false); }

}  // namespace qxterm
