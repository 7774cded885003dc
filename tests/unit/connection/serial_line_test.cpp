#include "connection/serial_line.h"

#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/modem.h"
#include "connection/session.h"
#include "connection/transport_controls.h"
#include "diag/trace_log.h"
#include "platform/headless/serial.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::test::serial_line_test {
namespace {

using Lines = std::vector<std::string>;

/// An open port.
class SerialLine : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        use(connectType::serial);
        g_bConnectActive = true;
        comser.setPortOpen(true);
        records.clear();
    }
    static void use(std::int16_t type) {
        ProfileRecord profile = DefaultProfile;
        profile.connectType = type;
        setCurrentProfile(profile);
    }
    /// A modem that is dialling.
    static void dial() {
        g_bConnectActive = false;
        use(connectType::modem);
    }
    static std::string firstRow() {
        std::string text{lineOnRow(0).text.begin(), lineOnRow(0).text.end()};
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    static Lines traced() { return recorded("trace", "line"); }
    static Lines sent() { return recorded("send", "bytes"); }
};

TEST_F(SerialLine, ReceivedTextIsShownAndTraced) {
    g_sLogging = "1";
    headless::serialReceives(comser, "ready", false);
    EXPECT_EQ(firstRow(), "ready");
    EXPECT_EQ(traced(),
              (Lines{"Comser_OnComm() - MSCOMM_EV_RECEIVE", "Comser_OnComm() - MSCOMM_EV_RECEIVE ready"}));
}

TEST_F(SerialLine, ABoxInTheMiddleOfABlockKeepsWhatArrivesForThePoll) {
    startSerialPoll();
    headless::queueAnswer(Answer::ok, [] {
        headless::serialReceives(comser, "two ", false);
        headless::advance(1000);
        headless::serialReceives(comser, "three", false);
        EXPECT_EQ(comser.inBufferCount(), 9);
    });
    headless::serialReceives(comser, "one\x1b[32768 ", false);
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 6 has occurred\r\nroutine: doEscBracket\r\nmessage: "
                              "Overflow"}));
    headless::advance(250);
    EXPECT_EQ(firstRow(), "one two three");
}

TEST_F(SerialLine, TextBeforeTheSessionIsReadButNotShown) {
    g_bConnectActive = false;
    headless::serialReceives(comser, "OK\r\n", false);
    EXPECT_EQ(firstRow(), "");
    EXPECT_EQ(comser.inBufferCount(), 0);
}

TEST_F(SerialLine, ABusyInterpreterLeavesTheTextToThePoll) {
    inputBusy = -1;
    headless::serialReceives(comser, "later", false);
    pollSerial();
    EXPECT_EQ(comser.inBufferCount(), 5);
    inputBusy = 0;
    pollSerial();
    EXPECT_EQ(firstRow(), "later");
}

TEST_F(SerialLine, ThePollRunsEveryQuarterOfASecond) {
    startSerialPoll();
    headless::serialReceives(comser, "quiet", true);
    headless::advance(249);
    EXPECT_EQ(firstRow(), "");
    headless::advance(1);
    EXPECT_EQ(firstRow(), "quiet");
    stopSerialPoll();
    EXPECT_EQ(timerHead, 0);
}

TEST_F(SerialLine, TheBreakLastsAQuarterOfASecond) {
    sendBreak();
    EXPECT_EQ(happened(), (Lines{"serial break true"}));
    headless::advance(249);
    EXPECT_TRUE(happened().empty());
    headless::advance(1);
    EXPECT_EQ(happened(), (Lines{"serial break false"}));
}

TEST_F(SerialLine, LosingTheCarrierOfAPlainLineIsOnlyTraced) {
    g_sLogging = "1";
    headless::setCarrier(comser, true);
    headless::setCarrier(comser, false);
    EXPECT_EQ(traced(), (Lines{"Comser_OnComm() - MSCOMM_EV_CD",
                               "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is TRUE",
                               "Comser_OnComm() - MSCOMM_EV_CD",
                               "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is FALSE"}));
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(SerialLine, ACarrierBringsAModemsSessionUpAndItsLossEndsIt) {
    dial();
    headless::setCarrier(comser, true);
    EXPECT_TRUE(g_bConnectActive);
    headless::setCarrier(comser, false);
    EXPECT_EQ(boxes(), (Lines{"The connection has been dropped"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(comser.portOpen());
}

TEST_F(SerialLine, ACarrierTimeOutEndsTheSession) {
    dial();
    headless::serialEvent(comser, 1007);
    EXPECT_EQ(boxes(), (Lines{"Failed to detect carrier"}));
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(SerialLine, AModemIsResetAndDialledASecondLater) {
    CurrentProfile.prefix = "ATDT";
    CurrentProfile.phone = "5550100";
    CurrentProfile.suffix = ";";
    g_sLogging = "1";
    modemConnect(modemReset);
    EXPECT_EQ(sent(), (Lines{"41545a0d"}));  // ATZ
    headless::advance(999);
    EXPECT_EQ(sent().size(), 1U);
    headless::advance(1);
    EXPECT_EQ(sent(), (Lines{"41545a0d", "41544454353535303130303b0d"}));  // ATDT5550100;
    EXPECT_EQ(traced().back(), "modemConnect() - Phone Number: ATDT5550100;");
    headless::advance(5000);
    EXPECT_EQ(sent().size(), 2U);
}

TEST_F(SerialLine, NothingIsDialledOnAClosedPort) {
    comser.setPortOpen(false);
    records.clear();
    modemConnect(modemReset);
    modemConnect(modemDial);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(timerHead, 0);
}

TEST_F(SerialLine, ThePollShowsASingleByte) {
    inputBusy = -1;
    headless::serialReceives(comser, "x", false);
    inputBusy = 0;
    pollSerial();
    EXPECT_EQ(firstRow(), "x");
}

}  // namespace
}  // namespace qxterm::test::serial_line_test
