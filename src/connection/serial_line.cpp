#include "connection/serial_line.h"

#include <array>
#include <string>

#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/send.h"
#include "connection/session.h"
#include "connection/transport.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
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
        sessionIsUp();
        setConnItems(true);
        return;
    }
    writeLog("Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is FALSE");
    sessionTransport().carrierLost();
}

void carrierTimedOut() {
    writeLog("Comser_OnComm() - MSCOMM_ER_CDTO");
    messageBox("Failed to detect carrier", programTitle, Buttons::ok, Icon::information);
    disconnectPort();
}

void setFlowControl(std::int16_t flowControl) {
    constexpr std::array names{"MSCOMM_HANDSHAKE_NONE", "MSCOMM_HANDSHAKE_XONXOFF", "MSCOMM_HANDSHAKE_RTS",
                               "MSCOMM_HANDSHAKE_RTSXONXOFF"};
    comser.setHandshaking(flowControl);
    if (flowControl < 0 || static_cast<std::size_t>(flowControl) >= names.size()) return;
    traceAttempt(std::string{"Flow Control: "} + names[static_cast<std::size_t>(flowControl)]);
}

bool start(ErrorTrap& trap) {
    openLine(trap, 0);
    startSession(serialTransport);
    sessionIsUp();
    startSerialPoll();
    return true;
}

}  // namespace

constinit const Transport serialTransport{
    .type = connectType::serial,
    .start = start,
    .stop =
        [] {
            comser.setPortOpen(false);
            stopSerialPoll();
        },
    .send = sendSerial,
    .sendBreak = sendBreak,
    .waitingText = [] { return lineText("Opening serial connection on port COM%1 at speed %2"); },
};

void openLine(ErrorTrap& trap, std::int16_t carrierTimeout) {
    const ProfileRecord& profile = CurrentProfile;
    traceAttempt("Connection Type: Serial or Modem");
    comser.setCommPort(profile.commport);
    traceAttempt("Communication Port: " + std::to_string(profile.commport));
    const std::string settings = formatMsg("%1,%2,%3,%4", std::to_string(profile.baud), profile.parity,
                                           std::to_string(profile.databits), profile.stopBits);
    comser.setSettings(settings);
    traceAttempt("Communication Port: " + settings);
    setFlowControl(profile.flowControl);
    comser.setInputLength(0);
    comser.setCarrierTimeout(carrierTimeout);
    trap.step([] { comser.setPortOpen(true); });
}

std::string lineText(const char* pattern) {
    return formatMsg(pattern, std::to_string(CurrentProfile.commport), std::to_string(CurrentProfile.baud));
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
