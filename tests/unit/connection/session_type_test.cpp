// The type of a session, and of the profile that the user changes meanwhile.

#include <gmock/gmock.h>

#include <tuple>

#include "app/dialogs/options_dialog.h"
#include "app/edit_menu.h"
#include "app/menus.h"
#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/connection_manager.h"
#include "connection/serial_line.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "platform/clipboard.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection.h"
#include "timers/timer_registry.h"

namespace qxterm::test::session_type_test {
namespace {

using Lines = std::vector<std::string>;

bool onLine(std::int16_t type) { return type == connectType::serial || type == connectType::modem; }
bool onSocket(std::int16_t type) { return type == connectType::net || type == connectType::ssh; }

class SessionType : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        records.clear();
    }
    static void use(std::int16_t type) {
        ProfileRecord profile = DefaultProfile;
        profile.connectType = type;
        profile.host = "krv";
        profile.port = 23;
        setCurrentProfile(profile);
    }
    static void typeText(std::string_view text) {
        for (const char c : text) frmterm.onKeyPress.raise(std::int16_t{c});
    }
    /// Brings up a session of the current profile's type, with the other end's help.
    static void connect(std::int16_t type) {
        if (type == connectType::ssh) {
            connectPort();
            thenSocketConnects();
            typeText("bob\rsecret\r");
            ASSERT_TRUE(g_bConnectActive);
            return;
        }
        if (type == connectType::net) thenSocketConnects();
        if (type == connectType::modem) then([] { headless::setCarrier(comser, true); });
        if (!onSocket(type)) thenWait(350);
        connectPort();
        ASSERT_TRUE(g_bConnectActive);
    }
    static void thenSocketConnects() {
        then([] { headless::socketConnects(comnet2); });
        thenWait(350);
    }
    static const char* optionOf(std::int16_t type) {
        switch (type) {
            case connectType::net: return "optNetwork";
            case connectType::serial: return "optSerial";
            case connectType::modem: return "optModem";
            default: return "optSSH";
        }
    }
    static void thenChooseType(std::int16_t type) {
        then([type] { click(frmOptions, optionOf(type)); });
        then([] { click(frmOptions, "cmdOK"); });
    }
    /// The user chooses a type in the options.
    static void chooseType(std::int16_t type) {
        thenChooseType(type);
        mnuconnitem_Click(connectionItem::options);
        records.clear();
    }
    /// The same inside the status dialog.
    static void thenOpenOptionsAndChooseType(std::int16_t type) {
        then([] { mnuconnitem_Click(connectionItem::options); });
        thenChooseType(type);
    }
    static char firstCharacter() { return lineOnRow(0).text[0]; }
};

/// Type of the session, and the type chosen while it is up.
class SessionToldAnotherType : public SessionType,
                               public ::testing::WithParamInterface<std::tuple<std::int16_t, std::int16_t>> {
protected:
    static std::int16_t own() { return std::get<0>(GetParam()); }
    static std::int16_t told() { return std::get<1>(GetParam()); }

    /// What is sent to the other end of the session when these bytes are typed or pasted.
    static Lines sent(const std::string& hex) {
        if (onSocket(own())) return {"send socket " + hex};
        if (onLine(own())) return {"send serial " + hex};
        return {};
    }
    /// What the end of the session closes.
    static Lines closed() {
        switch (own()) {
            case connectType::net: return {"socket close"};
            case connectType::ssh:
                return {"process terminate zpt_ssh", "process terminate zpt_tnetd", "socket close"};
            case connectType::loop: return {};
            default: return {"serial close"};
        }
    }
};

TEST_P(SessionToldAnotherType, StaysWhatItIsUntilItEnds) {
    use(own());
    connect(own());
    chooseType(told());
    EXPECT_EQ(CurrentProfile.connectType, told());
    EXPECT_EQ(g_iConnectType(), own());

    typeText("k");
    EXPECT_EQ(happened(), sent("6b"));
    frmterm.onKeyDown.raise(std::int16_t{38}, std::int16_t{0});  // cursor up
    EXPECT_EQ(happened(), sent("1b5b41"));
    clipboard::setText("pp");
    records.clear();
    mnueditItem_Click(1);
    EXPECT_EQ(happened(), sent("7070"));
    EXPECT_EQ(firstCharacter(), own() == connectType::loop ? 'k' : ' ');

    const Lines broken = onLine(own()) ? Lines{"serial break true"} : Lines{};
    EXPECT_EQ(mnuconnitem.entry(2).enabled, !onSocket(own()));
    setConnItems(true);
    EXPECT_EQ(mnuconnitem.entry(2).enabled, !onSocket(own()));
    mnuconnitem_Click(connectionItem::sendBreak);
    EXPECT_EQ(happened(), broken);
    frmterm.onKeyDown.raise(std::int16_t{116}, std::int16_t{2});  // Control+F5
    EXPECT_EQ(happened(), broken);
    headless::advance(250);
    records.clear();

    ASSERT_TRUE(headless::chooseMenu(mnuconnitem, 1));
    EXPECT_EQ(happened(), closed());
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(comser.portOpen());
    EXPECT_FALSE(comnet2.connected());
    EXPECT_FALSE(sshHelperRecorded());
    EXPECT_EQ(g_iConnectType(), told());
}

TEST_P(SessionToldAnotherType, TheNextSessionIsOfTheTypeTold) {
    use(own());
    connect(own());
    chooseType(told());
    ASSERT_TRUE(headless::chooseMenu(mnuconnitem, 1));
    records.clear();
    // Without a network session in between, the SSH mode stays, and no dialog waits for a line.
    const bool waits = told() == connectType::net || (!g_bSSHMode && onLine(told()));
    if (waits) then([] { EXPECT_TRUE(frmConn.loaded()); });
    if (waits) then([] { click(frmConn, "cmdCancel"); });
    ASSERT_TRUE(headless::chooseMenu(mnuconnitem, 0));
    EXPECT_EQ(g_iConnectType(), told());
    const Lines lines = happened();
    EXPECT_EQ(::testing::Value(lines, ::testing::Contains("socket connect krv 23")),
              told() == connectType::net);
    EXPECT_EQ(::testing::Value(lines, ::testing::Contains("serial open 1 9600,n,8,1 1")), onLine(told()));
    EXPECT_EQ(localPromptActive(), told() == connectType::ssh);
}

TEST_F(SessionType, AnAttemptIsAbandonedAsWhatItIs) {
    use(connectType::net);
    thenOpenOptionsAndChooseType(connectType::serial);
    then([] {
        EXPECT_EQ(g_iConnectType(), connectType::net);
        EXPECT_EQ(CurrentProfile.connectType, connectType::serial);
        records.clear();
        click(frmConn, "cmdCancel");
    });
    connectPort();
    EXPECT_EQ(happened(), (Lines{"socket close", "window frmConn unload"}));
    EXPECT_EQ(g_iConnectType(), connectType::serial);
}

TEST_F(SessionType, AnAttemptThatComesUpIsWhatItWasStartedAs) {
    use(connectType::net);
    thenOpenOptionsAndChooseType(connectType::modem);
    thenSocketConnects();
    connectPort();
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(g_iConnectType(), connectType::net);
    EXPECT_FALSE(mnuconnitem.entry(2).enabled);
    records.clear();
    typeText("k");
    EXPECT_EQ(happened(), (Lines{"send socket 6b"}));
}

TEST_F(SessionType, AModemThatDialsGoesOnAsAModem) {
    use(connectType::modem);
    CurrentProfile.timeout = 2;
    CurrentProfile.auto_retry = true;
    thenOpenOptionsAndChooseType(connectType::net);
    thenWait(2000);  // timed out: only a modem is dialled anew
    then([] { EXPECT_EQ(recorded("serial", "op"), (Lines{"open", "close", "open"})); });
    then([] { headless::setCarrier(comser, true); });
    thenWait(350);
    connectPort();
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_TRUE(mnuconnitem.entry(2).enabled);
    records.clear();
    headless::setCarrier(comser, false);  // ends a modem's session only
    EXPECT_EQ(boxes(), (Lines{"The connection has been dropped"}));
    EXPECT_FALSE(comser.portOpen());
    EXPECT_EQ(g_iConnectType(), connectType::net);
}

TEST_F(SessionType, ThePollOfASerialLineGoesWithIt) {
    use(connectType::serial);
    connect(connectType::serial);
    chooseType(connectType::ssh);
    headless::serialReceives(comser, "quiet", true);
    headless::advance(250);
    EXPECT_EQ(firstCharacter(), 'q');
    mnuconnitem_Click(connectionItem::disconnect);
    for (std::size_t slot = 1; slot < timerTable.size(); ++slot) EXPECT_TRUE(timerTable[slot].free) << slot;
}

TEST_F(SessionType, TheLoginPromptTakesTheKeysWhateverIsChosenMeanwhile) {
    use(connectType::ssh);
    connectPort();
    typeText("bob\r");
    chooseType(connectType::serial);
    EXPECT_TRUE(localPromptActive());
    EXPECT_TRUE(localTextUp());
    thenSocketConnects();
    typeText("secret\r");
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(g_iConnectType(), connectType::ssh);
    EXPECT_EQ(recorded("process", "name"), (Lines{"zpt_ssh", "zpt_tnetd"}));
    EXPECT_EQ(recorded("socket", "host"), (Lines{"localhost"}));
    records.clear();
    typeText("k");
    EXPECT_EQ(happened(), (Lines{"send socket 6b"}));
    mnuconnitem_Click(connectionItem::disconnect);
    EXPECT_FALSE(sshHelperRecorded());
    EXPECT_TRUE(g_bSSHMode) << "only a network connection clears it";
    EXPECT_EQ(g_iConnectType(), connectType::serial);
}

TEST_F(SessionType, ALoginPromptIsTakenDownAsOne) {
    use(connectType::ssh);
    connectPort();
    chooseType(connectType::serial);
    mnuconnitem_Click(connectionItem::disconnect);
    EXPECT_FALSE(localTextUp());
    EXPECT_EQ(g_iConnectType(), connectType::serial);
}

TEST_F(SessionType, ATunnelThatWaitsForItsSocketIsTakenDown) {
    use(connectType::ssh);
    connectPort();
    thenOpenOptionsAndChooseType(connectType::net);
    then([] { click(frmConn, "cmdCancel"); });
    typeText("bob\rsecret\r");
    EXPECT_EQ(recorded("process", "op"), (Lines{"start", "start", "terminate", "terminate"}));
    EXPECT_EQ(g_iConnectType(), connectType::net);
}

TEST_F(SessionType, AModemWithoutADialogGivesWayToAnotherType) {
    g_bSSHMode = true;  // no dialog waits for the carrier
    use(connectType::modem);
    connectPort();
    EXPECT_TRUE(comser.portOpen());
    chooseType(connectType::net);
    EXPECT_EQ(g_iConnectType(), connectType::modem);
    thenSocketConnects();
    connectPort();
    EXPECT_FALSE(comser.portOpen());
    EXPECT_EQ(recorded("socket", "op"), (Lines{"connect"}));
    EXPECT_EQ(g_iConnectType(), connectType::net);
}

TEST_F(SessionType, AProfileThatIsReadDoesNotChangeTheSession) {
    putProfile("line", {{"connect", "serial"}});
    use(connectType::net);
    connect(connectType::net);
    readUserProf("line");
    EXPECT_EQ(CurrentProfile.connectType, connectType::serial);
    EXPECT_EQ(g_iConnectType(), connectType::net);
}

TEST_F(SessionType, AnAttemptThatCouldNotBeStartedHoldsNothing) {
    use(connectType::serial);
    headless::setPortsBusy(true);
    connectPort();
    EXPECT_EQ(boxes().size(), 1U);
    use(connectType::net);
    EXPECT_EQ(g_iConnectType(), connectType::net);
    CurrentProfile.port = 65536;
    connectPort();
    EXPECT_EQ(boxes().size(), 2U);
    use(connectType::loop);
    EXPECT_EQ(g_iConnectType(), connectType::loop);
}

TEST_F(SessionType, WithoutAHostTheTypeChosenHoldsAtOnce) {
    for (const std::int16_t type : {connectType::net, connectType::ssh}) {
        use(type);
        CurrentProfile.host.clear();
        thenChooseType(connectType::serial);
        connectPort();
        EXPECT_EQ(g_iConnectType(), connectType::serial) << type;
    }
}

std::string pairName(const ::testing::TestParamInfo<std::tuple<std::int16_t, std::int16_t>>& info) {
    constexpr std::array names{"Net", "Serial", "Modem", "Ssh", "Unknown", "Loop"};
    return std::string{names.at(static_cast<std::size_t>(std::get<0>(info.param)))} + "Told" +
           names.at(static_cast<std::size_t>(std::get<1>(info.param)));
}

INSTANTIATE_TEST_SUITE_P(Pairs, SessionToldAnotherType,
                         ::testing::Combine(::testing::Values(connectType::net, connectType::serial,
                                                              connectType::modem, connectType::ssh,
                                                              connectType::loop),
                                            ::testing::Values(connectType::net, connectType::serial,
                                                              connectType::modem, connectType::ssh)),
                         pairName);

}  // namespace
}  // namespace qxterm::test::session_type_test
