#include "connection/ssh_connect.h"

#include <algorithm>

#include "app/program_fixture.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/port_table.h"
#include "platform/headless/process.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"

namespace qxterm::test::ssh_connect_test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* clientLine =
    "process start zpt_ssh zpt_ssh -no-antispoof  -P 22 -4 -ssh -L 3000:localhost:23 host1";
constexpr const char* relayLine = "process start zpt_tnetd zpt_tnetd 2 3000 3000 4 bob";

/// The local prompt of an SSH session is up.
class SshConnect : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        putSettings({{"Profiles", "office "}, {"timeout", "45"}});
        putProfile("office", {{"connect", "ssh"}, {"host", "host1"}});
        start("office");
        records.clear();
    }

    static void type(std::string_view text) {
        for (const char c : text) Form_KeyPress(static_cast<unsigned char>(c));
    }
    static void enterBob() { type("bob\rsecret\r"); }
    /// Closes the status dialog by its button, which abandons the attempt.
    static void thenCancel() {
        then([] { click(frmConn, "cmdCancel"); });
    }
    static Lines processes() {
        Lines lines;
        for (const std::string& line : happened()) {
            if (line.starts_with("process") || line.starts_with("socket")) lines.push_back(line);
        }
        return lines;
    }
    /// Runs a step in the first yield to the message loop while the bridge waits for its client.
    static void whileWaiting(void (*step)()) {
        waitingStep = step;
        headless::yieldHook = [] {
            headless::yieldHook = nullptr;
            waitingStep();
        };
    }

    static inline void (*waitingStep)() = nullptr;
};

TEST_F(SshConnect, AForwardThatAnswersIsNotWaitedFor) {
    const std::int64_t before = headless::now();
    thenCancel();
    enterBob();
    EXPECT_EQ(headless::now(), before);
}

// Once for the session's port and once for the forwarded one: on a machine with many connections it takes
// long.
TEST_F(SshConnect, ThePortTablesAreReadTwice) {
    const std::uint32_t before = headless::callsOf(headless::Point::portsTcp);
    thenCancel();
    enterBob();
    EXPECT_EQ(headless::callsOf(headless::Point::portsTcp) - before, 2U);
}

TEST_F(SshConnect, ASlowClientIsWaitedFor) {
    headless::setForwardDelay(4000);
    const std::int64_t before = headless::now();
    then([=] {
        EXPECT_EQ(headless::now() - before, 4000);
        EXPECT_EQ(processes(), (Lines{clientLine, relayLine, "socket connect localhost 3000"}));
        headless::socketConnects(comnet2);
    });
    thenWait(350);
    enterBob();
    EXPECT_TRUE(g_bConnectActive);
}

TEST_F(SshConnect, TheWaitEndsAfterTenSeconds) {
    headless::setForwardDelay(-1);
    const std::int64_t before = headless::now();
    then([=] { EXPECT_EQ(headless::now() - before, 10000); });
    thenCancel();
    enterBob();
}

TEST_F(SshConnect, AClientThatEndsDuringTheWaitTakesTheRelayWithIt) {
    headless::setForwardDelay(-1);
    whileWaiting([] { headless::exitHelper("zpt_ssh"); });
    const std::int64_t before = headless::now();
    then([=] {
        EXPECT_EQ(headless::now() - before, 100);
        EXPECT_TRUE(g_bLoginDone);
        EXPECT_EQ(g_sSSHPassword, "");
        EXPECT_FALSE(sshHelperRecorded());
        EXPECT_EQ(processes(), (Lines{clientLine, relayLine, "process terminate zpt_tnetd",
                                      "socket connect localhost 3000"}));
    });
    thenCancel();
    enterBob();
}

/// The helpers' start with a local port that another program has taken since it was found free.
void startWithTakenPort() {
    std::bitset<PortTables::ports> taken;
    taken.set(3000);
    headless::setTcpPorts(taken);
    g_sSSHPassword = "secret";
    StartSSH("host1", "bob", 3000);
    EXPECT_EQ(recorded("process", "command").at(1), "zpt_tnetd 2 3000 3001 4 bob");
}

TEST_F(SshConnect, APortThatTheRelayCannotHaveIsNotGivenThePassword) {
    headless::exitHelper("zpt_tnetd");
    startWithTakenPort();
    EXPECT_TRUE(g_bLoginDone);
    EXPECT_EQ(g_sSSHPassword, "");
}

TEST_F(SshConnect, ARelayThatListensLeadsToTheClient) {
    startWithTakenPort();
    EXPECT_FALSE(g_bLoginDone);
    EXPECT_EQ(g_sSSHPassword, "secret");
}

TEST_F(SshConnect, DisconnectDuringTheWaitEndsTheAttempt) {
    headless::setForwardDelay(-1);
    whileWaiting([] { mnuconnitem_Click(connectionItem::disconnect); });
    enterBob();
    EXPECT_EQ(processes(),
              (Lines{clientLine, relayLine, "process terminate zpt_ssh", "process terminate zpt_tnetd"}));
    EXPECT_FALSE(frmConn.loaded());
    EXPECT_FALSE(localPromptActive());
}

TEST_F(SshConnect, AnAttemptThatASearchForAPortHasEndedStartsNoHelpers) {
    planFault("CN_NetStat", 10054);  // a connection reset: its report ends what is up
    enterBob();
    EXPECT_EQ(processes(), Lines{});
    EXPECT_FALSE(sshHelperRecorded());
    EXPECT_FALSE(frmConn.loaded());
}

TEST_F(SshConnect, ClosingTheWindowDuringTheWaitEndsTheAttempt) {
    headless::setForwardDelay(-1);
    whileWaiting([] { frmterm.unload(); });
    enterBob();
    EXPECT_EQ(processes(),
              (Lines{clientLine, relayLine, "process terminate zpt_ssh", "process terminate zpt_tnetd"}));
    EXPECT_FALSE(frmConn.loaded());
}

TEST_F(SshConnect, KeysTypedDuringTheWaitAreNobodys) {
    headless::setForwardDelay(300);
    whileWaiting([] { type("xyz\r"); });
    thenCancel();
    enterBob();
    EXPECT_EQ(g_sSSHLogin, "bob");
}

TEST_F(SshConnect, AnotherLoginDuringTheWaitReplacesTheAttempt) {
    headless::setForwardDelay(200);
    whileWaiting([] {
        mnuconnitem_Click(connectionItem::disconnect);
        mnuconnitem_Click(connectionItem::connect);
        type("amy\rother\r");
    });
    thenCancel();
    enterBob();
    EXPECT_EQ(
        processes(),
        (Lines{clientLine, relayLine, "process terminate zpt_ssh", "process terminate zpt_tnetd", clientLine,
               "process start zpt_tnetd zpt_tnetd 2 3000 3000 4 amy", "socket connect localhost 3000",
               "process terminate zpt_ssh", "process terminate zpt_tnetd", "socket close"}));
}

TEST_F(SshConnect, ThePasswordIsForgottenWithTheSession) {
    then([] { EXPECT_EQ(g_sSSHPassword, "secret"); });
    thenCancel();
    enterBob();
    EXPECT_EQ(g_sSSHPassword, "");
}

/// All that the password has room for is zero, used or not.
bool passwordMemoryIsClear() {
    const std::string_view memory{g_sSSHPassword.data(), g_sSSHPassword.capacity()};
    return memory.find_first_not_of('\0') == std::string_view::npos;
}

TEST_F(SshConnect, NothingOfThePasswordIsLeftWhereItStoodOnceItWasSent) {
    const char* typedTo = nullptr;
    then([&] {
        typedTo = g_sSSHPassword.data();
        EXPECT_EQ(g_sSSHPassword, "correct horse battery");
        headless::socketConnects(comnet2);
    });
    thenWait(350);
    type("bob\rcorrect horse battery\r");
    headless::socketReceives(comnet2, "login: ");
    EXPECT_EQ(g_sSSHPassword, "correct horse battery");
    records.clear();
    headless::socketReceives(comnet2, "Password: ");
    EXPECT_EQ(recorded("send", "bytes"), (Lines{"636f727265637420686f72736520626174746572790d"}));
    EXPECT_TRUE(g_bLoginDone);
    EXPECT_EQ(g_sSSHPassword, "");
    EXPECT_EQ(g_sSSHPassword.data(), typedTo);
    EXPECT_TRUE(passwordMemoryIsClear());
}

TEST_F(SshConnect, NothingOfThePasswordIsLeftWhenTheAttemptIsGivenUp) {
    thenCancel();
    type("bob\rcorrect horse battery\r");
    EXPECT_TRUE(passwordMemoryIsClear());
    for (const bool byUser : {true, false}) {
        mnuconnitem_Click(connectionItem::connect);
        type("bob\rcorrect horse");
        EXPECT_EQ(g_sSSHPassword, "correct horse");
        byUser ? mnuconnitem_Click(connectionItem::disconnect) : doFakeLogin();
        EXPECT_TRUE(passwordMemoryIsClear()) << byUser;
    }
}

TEST_F(SshConnect, APasswordStaysInOnePlaceWhileItIsTyped) {
    type("bob\rx");
    const char* const place = g_sSSHPassword.data();
    type(std::string(62, 'y') + "\b");
    EXPECT_EQ(g_sSSHPassword.data(), place);
    EXPECT_EQ(g_sSSHPassword, 'x' + std::string(61, 'y'));
    type(std::string(300, 'z'));
    EXPECT_EQ(g_sSSHPassword, 'x' + std::string(61, 'y') + std::string(300, 'z'));
}

TEST_F(SshConnect, ALongLoginNameIsKeptWhole) {
    type(std::string(200, 'b'));
    EXPECT_EQ(g_sSSHLogin, std::string(200, 'b'));
    type(std::string(199, '\b'));
    EXPECT_EQ(g_sSSHLogin, "b");
    type(std::string(300, 'b') + "\rsecret\r");
    EXPECT_EQ(boxes(), (Lines{"The login name is too long.  It may have up to 255 characters."}));
    EXPECT_EQ(processes(), Lines{});
}

// Typed into the prompt or put into the profile: a complaint, whole names or nothing, and never a process.
TEST_F(SshConnect, FieldsOf64KilobytesAreRefusedAndNotCut) {
    const std::string quoted = "\"-l root\" & 'x' `y` ";
    std::string login;
    while (login.size() < 65536) login += quoted;
    type(login);
    EXPECT_EQ(g_sSSHLogin, login);
    type("\rsecret\r");
    EXPECT_EQ(boxes(), (Lines{"The login name is too long.  It may have up to 255 characters."}));
    EXPECT_EQ(processes(), Lines{});
    EXPECT_EQ(g_sSSHPassword, "");

    CurrentProfile.host = std::string(65535, 'h') + '"';
    records.clear();
    mnuconnitem_Click(connectionItem::connect);
    enterBob();
    EXPECT_EQ(boxes(), (Lines{"The hostname is too long.  It may have up to 255 characters."}));
    EXPECT_EQ(processes(), Lines{});

    CurrentProfile.host = "host1";
    mnuconnitem_Click(connectionItem::connect);
    thenCancel();
    enterBob();
    EXPECT_EQ(processes(),
              (Lines{clientLine, relayLine, "socket connect localhost 3000", "process terminate zpt_ssh",
                     "process terminate zpt_tnetd", "socket close"}));
}

TEST_F(SshConnect, NoFieldBecomesAnOptionOrASecondArgument) {
    for (const char* login : {"-l", "--", "bob root", "bob\"", "'bob'", "`id`", "bob\t", "\"bob\" \"root"}) {
        type(login);
        type("\rsecret\r");
        EXPECT_EQ(boxes().size(), 1U) << login;
        EXPECT_EQ(processes(), Lines{}) << login;
        records.clear();
        mnuconnitem_Click(connectionItem::connect);
    }
    for (const char* host :
         {"-oProxy=x", "-", "a b", "a\"b", "'a'", "a&b", "a|b", "%COMSPEC%\\x", "host1 -R"}) {
        CurrentProfile.host = host;
        enterBob();
        EXPECT_EQ(boxes().size(), 1U) << host;
        EXPECT_EQ(processes(), Lines{}) << host;
        records.clear();
        mnuconnitem_Click(connectionItem::connect);
    }
    // Of use to a shell only, and there is none: one argument like any other.
    CurrentProfile.host = "host1";
    type("b&b|%PATH%\rsecret");
    thenCancel();
    type("\r");
    EXPECT_EQ(processes(), (Lines{clientLine, "process start zpt_tnetd zpt_tnetd 2 3000 3000 4 b&b|%PATH%",
                                  "socket connect localhost 3000", "process terminate zpt_ssh",
                                  "process terminate zpt_tnetd", "socket close"}));
}

TEST(SshCommandLines, KeepTheDoubledBlank) {
    const SshRoute route{"22", 4, 3000, 3001, "host1", "bob"};
    EXPECT_EQ(sshClientCommand(route), "zpt_ssh -no-antispoof  -P 22 -4 -ssh -L 3001:localhost:23 host1");
    EXPECT_EQ(relayCommand(route), "zpt_tnetd 2 3000 3001 4 bob");
}

TEST_F(SshConnect, TheTunnelsClientFindsTheLoginNameInItsEnvironment) {
    then([] {
        EXPECT_EQ(headless::helperEnvironment("zpt_ssh", "ZPT_SSH_LOGIN"), "bob");
        EXPECT_EQ(headless::helperEnvironment("zpt_tnetd", "ZPT_SSH_LOGIN"), "");
        click(frmConn, "cmdCancel");
    });
    enterBob();
}

TEST_F(SshConnect, AClientThatEndedLeavesNoLoginDoneBehind) {
    headless::exitHelper("zpt_ssh");
    thenCancel();
    enterBob();
    ASSERT_FALSE(sshHelperRecorded());
    ASSERT_TRUE(g_bLoginDone);
    connectPort();
    EXPECT_FALSE(g_bLoginDone);
    EXPECT_TRUE(localTextUp());
}

TEST_F(SshConnect, LettersAndDigitsOfTheHostTakeThePromptDown) {
    const auto upAfter = [](const char* text) {
        DisplayBanner();
        giveWayToHost(text);
        return localTextUp();
    };
    for (const char* text : {"0", "9", "A", "Z", "a", "z", "\r\n\x1b[m"}) EXPECT_FALSE(upAfter(text)) << text;
    for (const char* text : {"", "/", ":", "@", "[", "`", "{", "\r\n\xff\x7f \x1b"})
        EXPECT_TRUE(upAfter(text)) << text;
}

TEST_F(SshConnect, TheLoginNameThatIsSentIsTraced) {
    g_sLogging = "1";
    then([] { headless::socketConnects(comnet2); });
    thenWait(350);
    enterBob();
    records.clear();
    headless::socketReceives(comnet2, "xlogin: ");
    const Lines traced = recorded("trace", "line");
    EXPECT_EQ(std::count(traced.begin(), traced.end(), "BYTES<< 62 6F 62 0D "), 1);
    EXPECT_EQ(recorded("send", "bytes"), (Lines{"626f620d"}));
}

}  // namespace
}  // namespace qxterm::test::ssh_connect_test
