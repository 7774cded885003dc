#include "connection/connection_manager.h"
#include "config/user_profile.h"

#include <algorithm>
#include "app/menus.h"

#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/auto_login.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/report_error.h"
#include "diag/trace_log.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::test::connection_manager_test {
namespace {

using Lines = std::vector<std::string>;

class ConnectionManager : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        records.clear();
    }
    static void use(std::int16_t type, const char* host = "krv", std::int32_t port = 23) {
        ProfileRecord profile = DefaultProfile;
        profile.connectType = type;
        profile.host = host;
        profile.port = port;
        setCurrentProfile(profile);
    }
    static Lines labels() { return recorded("label", "text"); }
    static Lines traced() { return recorded("trace", "line"); }
    static std::string connectionItems() {
        std::string enabled;
        for (const Menu::Entry& entry : mnuconnitem.entries()) enabled += entry.enabled ? '1' : '0';
        return enabled;
    }
};

TEST_F(ConnectionManager, ANetworkSessionComesUp) {
    use(connectType::net);
    then([] { headless::socketConnects(comnet2); });
    thenWait(100);
    thenWait(250);
    connectPort();
    EXPECT_EQ(
        happened(),
        (Lines{"socket connect krv 23", "label lblConn Opening network connection to host: krv",
               "window frmConn modal", "label lblConn Connection established", "window frmConn unload"}));
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(connectionItems(), "0101");
}

TEST_F(ConnectionManager, TheNetworkAttemptIsTraced) {
    use(connectType::net);
    g_sLogging = "1";
    then([] { headless::socketConnects(comnet2); });
    thenWait(350);
    connectPort();
    EXPECT_EQ(traced(),
              (Lines{"connectPort() - Connection Type: Network", "connectPort() - Network Address: krv",
                     "connectPort() - Network Port: 23", "connectPort() - g_bConnectActive is TRUE"}));
}

TEST_F(ConnectionManager, AnAttemptTimesOutAndIsAbandoned) {
    use(connectType::net);
    thenWait(44900);
    then([] { EXPECT_EQ(labels().size(), 1U); });
    thenWait(100);
    then([] { EXPECT_EQ(labels().back(), "The connection as timed out"); });
    thenWait(999);
    then([] { EXPECT_TRUE(frmConn.loaded()); });
    thenWait(1);
    connectPort();
    EXPECT_FALSE(frmConn.loaded());
    EXPECT_EQ(happened().back(), "window frmConn unload");
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_EQ(connectionItems(), "1001");
}

TEST_F(ConnectionManager, ANetworkRetryOnlyChangesTheLabelUntilCancel) {
    use(connectType::net);
    CurrentProfile.auto_retry = true;
    thenWait(45000);
    thenWait(3000);
    then([] { click(frmConn, "cmdCancel"); });
    connectPort();
    const Lines lines = happened();
    EXPECT_EQ(
        std::count(lines.begin(), lines.end(), "label lblConn The connection has timed out, retrying..."), 4);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "socket connect krv 23"), 1);
    EXPECT_EQ(lines.end()[-2], "socket close");
}

TEST_F(ConnectionManager, APortThatIsNoneIsAnOverflow) {
    use(connectType::net, "krv", 65536);
    connectPort();
    EXPECT_EQ(boxes(),
              (Lines{"An unexpected error 6 has occurred\r\nroutine: connectPort\r\nmessage: Overflow"}));
    EXPECT_EQ(countOf("socket"), 0U);
}

TEST_F(ConnectionManager, AMissingHostLeadsToTheOptions) {
    use(connectType::net, "");
    g_sLogging = "1";
    then([] { click(*visibleForms().back(), "cmdCancel"); });
    connectPort();
    EXPECT_EQ(boxes(), (Lines{"You must specify a hostname to connect to"}));
    EXPECT_EQ(traced().back(), "connectPort() - Missing network address");
    EXPECT_EQ(recorded("window", "name"), (Lines{"frmOptions", "frmOptions"}));
    EXPECT_EQ(countOf("socket"), 0U);
}

TEST_F(ConnectionManager, ASerialSessionIsUpAtOnce) {
    use(connectType::serial);
    g_sLogging = "1";
    CurrentProfile.commport = 2;
    thenWait(100);
    thenWait(250);
    connectPort();
    EXPECT_EQ(labels(), (Lines{"Opening serial connection on port COM2 at speed 9600",
                               "The connection as timed out", "Connection established"}));
    EXPECT_EQ(traced(), (Lines{"connectPort() - Connection Type: Serial or Modem",
                               "connectPort() - Communication Port: 2",
                               "connectPort() - Communication Port: 9600,n,8,1",
                               "connectPort() - Flow Control: MSCOMM_HANDSHAKE_XONXOFF",
                               "connectPort() - g_bConnectActive is TRUE"}));
    EXPECT_TRUE(comser.portOpen());
    EXPECT_EQ(connectionItems(), "0111");
    EXPECT_EQ(timerTable[1].action, timerAction::pollSerial);
    disconnectPort();
    EXPECT_FALSE(comser.portOpen());
    EXPECT_EQ(timerHead, 0);
}

TEST_F(ConnectionManager, ABusyPortIsToldAndNothingElseHappens) {
    use(connectType::serial);
    headless::setPortsBusy(true);
    connectPort();
    EXPECT_EQ(
        boxes(),
        (Lines{"Another application is using the serial port.  You must choose another port or exit the "
               "other application"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_EQ(timerHead, 0);
    EXPECT_EQ(countOf("window"), 0U);
}

TEST_F(ConnectionManager, AModemIsDialledAgainWithEachRetry) {
    use(connectType::modem);
    CurrentProfile.timeout = 2;
    CurrentProfile.auto_retry = true;
    thenWait(1900);
    then([] { EXPECT_EQ(recorded("send", "bytes"), (Lines{"41545a0d", "415444540d"})); });
    thenWait(100);
    then([] { EXPECT_EQ(recorded("serial", "op"), (Lines{"open", "close", "open"})); });
    thenWait(1900);
    then([] { EXPECT_EQ(recorded("send", "bytes").size(), 4U); });
    then([] { headless::setCarrier(comser, true); });
    thenWait(400);
    connectPort();
    EXPECT_TRUE(g_bConnectActive);
    disconnectPort();
    EXPECT_FALSE(comser.portOpen());
    EXPECT_NE(timerHead, 0);  // only a plain line takes the poll away
}

TEST_F(ConnectionManager, ARetryOnABusyPortAsksNoMoreThanOnceATick) {
    use(connectType::modem);
    CurrentProfile.timeout = 1;
    CurrentProfile.auto_retry = true;
    then([] { headless::setPortsBusy(true); });
    thenWait(1000);
    then([] { EXPECT_EQ(boxes().size(), 1U); });
    thenWait(1000);
    then([] { EXPECT_EQ(boxes().size(), 2U); });
    then([] { click(frmConn, "cmdCancel"); });
    connectPort();
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(ConnectionManager, ATickWhoseBoxIsOpenIsNotRunOnceMore) {
    use(connectType::modem);
    CurrentProfile.timeout = 1;
    CurrentProfile.auto_retry = true;
    then([] {
        headless::setPortsBusy(true);
        headless::queueAnswer(Answer::ok, [] {
            headless::advance(3500);  // three ticks
            EXPECT_EQ(boxes().size(), 1U);
        });
    });
    thenWait(1000);
    then([] {
        EXPECT_EQ(boxes().size(), 1U);
        EXPECT_EQ(headless::now() - 3000, 4500);  // behind the start picture's 3 s
    });
    thenWait(500);  // a tick without a box is run again
    then([] { EXPECT_EQ(boxes().size(), 2U); });
    then([] { click(frmConn, "cmdCancel"); });
    connectPort();
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(ConnectionManager, TheLoopIsUpWithoutATransport) {
    use(connectType::loop);
    thenWait(100);
    thenWait(250);
    connectPort();
    EXPECT_EQ(happened(), (Lines{"window frmConn modal", "label lblConn Connection established",
                                 "window frmConn unload"}));
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(connectionItems(), "0111");
}

TEST_F(ConnectionManager, AnUnknownTypeTimesOutAtTheFirstTick) {
    use(connectType::unknown);
    thenWait(100);
    then([] { EXPECT_EQ(labels(), (Lines{"The connection as timed out"})); });
    thenWait(1000);
    connectPort();
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(ConnectionManager, ConnectDuringASessionDoesNothing) {
    use(connectType::net);
    g_bConnectActive = true;
    connectPort();
    EXPECT_TRUE(records.empty());
}

TEST_F(ConnectionManager, AnSshSessionStartsWithTheLocalPrompt) {
    use(connectType::ssh, "krv", 22);
    connectPort();
    EXPECT_TRUE(localTextUp());
    EXPECT_TRUE(localPromptActive());
    EXPECT_TRUE(g_bSSHMode);
    EXPECT_TRUE(records.empty());  // neither socket nor status dialog yet
    EXPECT_EQ(connectionItems(), "0101");
}

TEST_F(ConnectionManager, DisconnectEndsTheHelpersOfAnSshSession) {
    use(connectType::ssh);
    connectPort();
    then([] { headless::socketConnects(comnet2); });
    thenWait(350);
    for (const char c : std::string_view{"bob\rsecret\r"}) frmterm.onKeyPress.raise(std::int16_t{c});
    ASSERT_TRUE(g_bConnectActive);
    g_bLoginDone = true;
    records.clear();
    disconnectPort();
    EXPECT_EQ(happened(),
              (Lines{"process terminate zpt_ssh", "process terminate zpt_tnetd", "socket close"}));
    EXPECT_FALSE(sshHelperRecorded());
    EXPECT_FALSE(g_bLoginDone);
    EXPECT_TRUE(g_bSSHMode);
}

TEST_F(ConnectionManager, DisconnectBlanksTheScreenAndKeepsTheKeyBar) {
    use(connectType::loop);
    g_bConnectActive = true;
    processInput("text");
    for (const bool bar : {false, true}) {
        setMode(mode::keyBarShown, bar);
        disconnectPort();
        EXPECT_EQ(modeSet(mode::keyBarShown), bar);
        EXPECT_EQ(CScmdfkey[0].visible(), bar);
    }
    EXPECT_EQ(lineOnRow(0).text[0], ' ');
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(ConnectionManager, TheDisconnectEntryKeepsTheKeyBarToo) {
    use(connectType::loop);
    g_bConnectActive = true;
    mnuconnitem_Click(connectionItem::disconnect);
    EXPECT_TRUE(userDisconnect);
    EXPECT_FALSE(modeSet(mode::keyBarShown));
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(ConnectionManager, SendBreakIsForSerialLinesAndModems) {
    comser.setPortOpen(true);
    for (std::int16_t type = 0; type <= 5; ++type) {
        records.clear();
        use(type);
        mnuconnitem_Click(connectionItem::sendBreak);
        EXPECT_EQ(countOf("serial"), type == connectType::serial || type == connectType::modem ? 1U : 0U)
            << type;
    }
}

TEST_F(ConnectionManager, TheProfileMenuIsRestrictedDuringASession) {
    use(connectType::net);
    setConnItems(true);
    std::string enabled;
    for (const Menu::Entry& entry : mnuprofitem.entries()) enabled += entry.enabled ? '1' : '0';
    EXPECT_EQ(enabled, "00111000011");
    setConnItems(false);
    EXPECT_TRUE(mnuprofitem.entry(0).enabled);
    EXPECT_TRUE(mnuprofitem.entry(8).enabled);
}

TEST_F(ConnectionManager, AFlowControlThatIsNoneIsSetAndNotNamed) {
    for (const std::int16_t flowControl : {std::int16_t{4}, std::int16_t{-1}, std::int16_t{32767}}) {
        use(connectType::serial);
        CurrentProfile.flowControl = flowControl;
        g_sLogging = "1";
        records.clear();
        thenWait(350);
        connectPort();
        EXPECT_EQ(traced(), (Lines{"connectPort() - Connection Type: Serial or Modem",
                                   "connectPort() - Communication Port: 1",
                                   "connectPort() - Communication Port: 9600,n,8,1",
                                   "connectPort() - g_bConnectActive is TRUE"}))
            << flowControl;
        disconnectPort();
    }
}

TEST_F(ConnectionManager, EachButtonOfTheKeyBarSendsItsKey) {
    use(connectType::net);
    then([] { headless::socketConnects(comnet2); });
    thenWait(350);
    connectPort();
    processInput("\x1b[?13l");
    records.clear();
    for (Button& button : CScmdfkey) ASSERT_TRUE(headless::click(button)) << button.index();
    // ESC O c for the first of them, ESC O j for the eighth.
    EXPECT_EQ(recorded("send", "bytes"),
              (Lines{"1b4f63", "1b4f64", "1b4f65", "1b4f66", "1b4f67", "1b4f68", "1b4f69", "1b4f6a"}));
}

TEST_F(ConnectionManager, PortsFrom0To65535GoToTheSocket) {
    for (const std::int32_t port : {0, 1, 65535}) {
        use(connectType::net, "krv", port);
        then([] { click(frmConn, "cmdCancel"); });
        records.clear();
        connectPort();
        EXPECT_EQ(happened().front(), "socket connect krv " + std::to_string(port));
    }
    use(connectType::net, "krv", -1);
    connectPort();
    EXPECT_EQ(countOf("socket"), 0U);
}

TEST_F(ConnectionManager, AnAttemptOfAnUnknownTypeStaysOneWhateverTheProfileBecomes) {
    use(connectType::unknown);
    then([] {
        CurrentProfile.connectType = connectType::loop;
        EXPECT_EQ(g_iConnectType(), connectType::unknown);
        click(frmConn, "cmdCancel");
    });
    connectPort();
    EXPECT_EQ(g_iConnectType(), connectType::loop);
}

TEST_F(ConnectionManager, AResetConnectionEndsTheSession) {
    use(connectType::net);
    then([] { headless::socketConnects(comnet2); });
    thenWait(350);
    connectPort();
    ASSERT_TRUE(g_bConnectActive);
    (void)reportError("sendBytes", 10054);
    EXPECT_EQ(boxes(), (Lines{"The connection has been dropped"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_EQ(recorded("socket", "op").back(), "close");
}

}  // namespace
}  // namespace qxterm::test::connection_manager_test
