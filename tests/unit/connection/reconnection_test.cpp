// A thousand connections, one after another: timers and state end as they began.

#include <gmock/gmock.h>

#include <map>

#include "app/menus.h"
#include "app/program_fixture.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/network.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/transport_controls.h"
#include "platform/headless/process.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::test::reconnection_test {
namespace {

constexpr int sessions = 1000;

class Reconnection : public ProgramTest {
protected:
    void connectAs(const char* word) {
        putSettings({{"Order", "lab"}});
        putProfile("lab", {{"connect", word}, {"host", "krv"}});
        start();
        records.clear();
    }
    static int timersInUse() {
        int used = 0;
        for (std::size_t slot = 1; slot < timerTable.size(); ++slot) used += timerTable[slot].free ? 0 : 1;
        return used;
    }
    /// Opens and closes sessions; `answer` is what the other end does while the status dialog is up.
    template <class Answer, class Session, class Ending>
    static void repeat(Answer answer, Session session, Ending ending) {
        for (int n = 0; n < sessions; ++n) {
            then(answer);
            thenWait(350);
            ASSERT_TRUE(headless::chooseMenu(n == 0 ? mnuprofitem : mnuconnitem,
                                             static_cast<std::int16_t>(n == 0 ? 5 : 0)));
            ASSERT_TRUE(g_bConnectActive) << "session " << n;
            ASSERT_EQ(visibleForms().size(), 1U);
            session();
            ending();
            ASSERT_FALSE(g_bConnectActive) << "session " << n;
            ASSERT_LE(timersInUse(), 2);
            steps.clear();
        }
    }
    static void nothing() {}
    static void disconnect() { ASSERT_TRUE(headless::chooseMenu(mnuconnitem, 1)); }
    static void expectIdle() {
        headless::advance(5000);
        EXPECT_FALSE(g_bConnectActive);
        EXPECT_EQ(g_bSSHMode, g_iConnectType() == connectType::ssh);
        EXPECT_FALSE(comnet2.connected());
        EXPECT_FALSE(comser.portOpen());
        EXPECT_TRUE(mnuconnitem.entry(0).enabled);
        EXPECT_FALSE(mnuconnitem.entry(1).enabled);
        EXPECT_TRUE(mnuprofitem.entry(5).enabled);
        EXPECT_EQ((std::pair{curCol, curRow}), (std::pair{0, 0}));
        EXPECT_EQ(screenMode, 0);
        EXPECT_EQ(scrollbackTop, 501);
    }
    /// How many records of a kind have a field of this value.
    static std::size_t count(std::string_view kind, std::string_view field, std::string_view value) {
        const Names found = recorded(kind, field);
        return static_cast<std::size_t>(std::count(found.begin(), found.end(), value));
    }
    using Names = std::vector<std::string>;
};

TEST_F(Reconnection, Network) {
    connectAs("net");
    int n = 0;
    repeat([] { headless::socketConnects(comnet2); },
           [] { headless::socketReceives(comnet2, "text\x1b[?6h\x1b[2;9r\x1b["); },
           [&n] {
               // by turns the user and the host end it
               if (n++ % 2 == 0) return disconnect();
               headless::socketCloses(comnet2);
           });
    EXPECT_EQ(timersInUse(), 0);
    EXPECT_EQ(count("socket", "op", "connect"), 1000U);
    EXPECT_EQ(count("socket", "op", "close"), 1000U);
    EXPECT_EQ(boxes().size(), 500U);
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
    EXPECT_EQ(countOf("send"), 0U);
    expectIdle();
}

TEST_F(Reconnection, Loop) {
    connectAs("loop");
    repeat(
        nothing, [] { frmterm.onKeyPress.raise(std::int16_t{'x'}); }, disconnect);
    EXPECT_EQ(timersInUse(), 0);
    EXPECT_TRUE(boxes().empty());
    expectIdle();
}

TEST_F(Reconnection, SerialLine) {
    connectAs("serial");
    repeat(
        nothing,
        [] {
            headless::serialReceives(comser, "text", false);
            frmterm.onKeyDown.raise(std::int16_t{116}, std::int16_t{2});  // the break outlives the session
        },
        disconnect);
    EXPECT_EQ(count("serial", "op", "open"), 1000U);
    EXPECT_EQ(count("serial", "op", "close"), 1000U);
    EXPECT_TRUE(boxes().empty());
    expectIdle();
    EXPECT_EQ(timersInUse(), 0);
}

TEST_F(Reconnection, Modem) {
    connectAs("modem");
    int n = 0;
    repeat([] { headless::setCarrier(comser, true); }, [] { headless::serialReceives(comser, "text", true); },
           [&n] {
               if (n++ % 2 == 0) {
                   disconnect();
                   headless::setCarrier(comser, false);
               } else {
                   headless::setCarrier(comser, false);
               }
           });
    EXPECT_EQ(count("serial", "op", "open"), 1000U);
    EXPECT_EQ(count("serial", "op", "close"), 1000U);
    EXPECT_EQ(boxes().size(), 500U);
    expectIdle();
    EXPECT_EQ(timersInUse(), 1) << "the poll of a modem line stays registered";
}

TEST_F(Reconnection, SshBridge) {
    connectAs("ssh");
    headless::setForwardDelay(300);
    for (int n = 0; n < sessions; ++n) {
        ASSERT_TRUE(headless::chooseMenu(n == 0 ? mnuprofitem : mnuconnitem,
                                         static_cast<std::int16_t>(n == 0 ? 5 : 0)));
        then([] { headless::socketConnects(comnet2); });
        thenWait(350);
        for (const char c : std::string_view{"bob\rsecret\r"}) frmterm.onKeyPress.raise(std::int16_t{c});
        ASSERT_TRUE(g_bConnectActive) << "session " << n;
        ASSERT_TRUE(sshHelperRecorded());
        // by turns the user and the host end it
        if (n % 2 == 0) {
            disconnect();
        } else {
            headless::socketCloses(comnet2);
        }
        ASSERT_FALSE(g_bConnectActive) << "session " << n;
        ASSERT_FALSE(sshHelperRecorded());
        ASSERT_EQ(timersInUse(), 0);
        ASSERT_EQ(g_sSSHPassword, "");
        steps.clear();
    }
    EXPECT_EQ(count("process", "op", "start"), 2000U);
    EXPECT_EQ(count("process", "op", "terminate"), 2000U);
    EXPECT_EQ(count("socket", "op", "connect"), 1000U);
    EXPECT_EQ(count("socket", "op", "close"), 1000U);
    EXPECT_EQ(boxes().size(), 500U);
    expectIdle();
}

TEST_F(Reconnection, GivenUpAttempts) {
    connectAs("net");
    for (int n = 0; n < sessions; ++n) {
        thenWait(200);
        then([] { click(*visibleForms().back(), "cmdCancel"); });
        ASSERT_TRUE(headless::chooseMenu(n == 0 ? mnuprofitem : mnuconnitem,
                                         static_cast<std::int16_t>(n == 0 ? 5 : 0)));
        ASSERT_FALSE(g_bConnectActive);
    }
    EXPECT_EQ(count("socket", "op", "close"), 1000U);
    EXPECT_EQ(timersInUse(), 0);
    expectIdle();
}

}  // namespace
}  // namespace qxterm::test::reconnection_test
