#include "connection/network.h"
#include "config/user_profile.h"

#include <algorithm>

#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/socket.h"
#include "platform/headless/user.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

namespace qxterm::test::network_test {
namespace {

using Lines = std::vector<std::string>;

/// A network session that is up.
class Network : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        putSettings({{"Profiles", "n "}});
        putProfile("n", {{"connect", "net"}, {"host", "h"}, {"netport", "23"}});
        then([] { headless::socketConnects(comnet2); });
        thenWait(400);
        start("n");
        records.clear();
    }
    static void arrive(std::string_view bytes) { headless::socketReceives(comnet2, bytes); }
    static std::string row(std::int32_t number) {
        const ScreenLine& line = lineOnRow(number);
        std::string text{line.text.begin(), line.text.end()};
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    static Lines traced() { return recorded("trace", "line"); }
};

TEST_F(Network, ReceivedBytesReachTheScreen) {
    arrive("hello");
    EXPECT_EQ(row(0), "hello");
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
}

TEST_F(Network, TheFirstRoundReadsOneByteLess) {
    g_sLogging = "1";
    arrive("abc");
    EXPECT_EQ(traced(), (Lines{"comnet2_DataArrival(): 3 bytes incoming, 2 bytes to process",
                               "comnet2_DataArrival(): processing 2 bytes in loop",
                               "GetNetworkBytes(): Requested count=2, actual: 2 bytes", "BYTES>> 61 62 ",
                               "comnet2_DataArrival(): 1 bytes incoming, 1 bytes to process",
                               "comnet2_DataArrival(): processing 1 bytes in loop",
                               "GetNetworkBytes(): Requested count=1, actual: 1 bytes", "BYTES>> 63 "}));
    EXPECT_EQ(packetCount, 2);
    EXPECT_TRUE(firstDataSeen);
    EXPECT_EQ(row(0), "abc");
}

TEST_F(Network, AFirstRoundOfOneByteLosesNothing) {
    arrive("x");
    EXPECT_EQ(row(0), "x");
    EXPECT_EQ(pendingBytes, 0);
}

TEST_F(Network, LaterRoundsReadEverything) {
    arrive("a");
    g_sLogging = "1";
    arrive("bc");
    EXPECT_EQ(traced().front(), "comnet2_DataArrival(): 2 bytes incoming, 2 bytes to process");
    EXPECT_EQ(row(0), "abc");
}

TEST_F(Network, AnArrivalDuringTheLoopIsReadByTheLoop) {
    arrive("-");
    g_sLogging = "1";
    headless::yieldHook = [] {
        headless::yieldHook = nullptr;
        headless::socketReceives(comnet2, "second");
    };
    arrive("first\r\n");  // the line feed yields
    const Lines lines = traced();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "comnet2_DataArrival() Rentry: 6 bytes incoming"),
              lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "comnet2_DataArrival(): processing 6 bytes in loop"),
              lines.end());
    EXPECT_EQ(row(0), "-first");
    EXPECT_EQ(row(1), "second");
    EXPECT_EQ(pendingBytes, 0);
}

TEST_F(Network, MinusOneDoesNothing) {
    comnet2_DataArrival(-1);
    EXPECT_EQ(packetCount, 0);
    EXPECT_FALSE(firstDataSeen);
}

TEST_F(Network, AnAnnouncementWithoutBytesEndsTheLoop) {
    arrive("a");
    comnet2_DataArrival(5);
    EXPECT_FALSE(receiving);
    arrive("b");
    EXPECT_EQ(row(0), "ab");
}

TEST_F(Network, TheCountOfRoundsStaysAtItsLimit) {
    packetCount = 32767;
    arrive("a");
    EXPECT_EQ(packetCount, 32767);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Network, AFailureEndsTheSessionAndTheNextOneWorks) {
    planFault("DataArrival", 9);
    arrive("lost");
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 9 has occurred\r\nroutine: DataArrival\r\nmessage: "
                              "Subscript out of range"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_EQ(countOf("socket"), 1U);
    then([] { headless::socketConnects(comnet2); });
    thenWait(400);
    connectPort();
    arrive("found");
    EXPECT_EQ(row(0), "found");
}

// The log fails where the loop has already begun.
TEST_F(Network, ALogThatCannotBeWrittenEndsTheSessionAndTheNextOneWorks) {
    arrive("-");
    g_sLogging = "1";
    headless::planFailure(headless::Point::traceWrite, {});
    arrive("lost");
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 75 has occurred\r\nroutine: DataArrival\r\nmessage: "
                              "Path/File access error"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(receiving);
    EXPECT_EQ(pendingBytes, 0);
    then([] { headless::socketConnects(comnet2); });
    thenWait(400);
    connectPort();
    arrive("found");
    EXPECT_EQ(row(0), "found");
}

// The socket need not announce it again.
TEST_F(Network, ASingleByteThatArrivesDuringTheLoopIsReadByTheLoop) {
    arrive("-");
    g_sLogging = "1";
    headless::yieldHook = [] {
        headless::yieldHook = nullptr;
        headless::socketReceives(comnet2, "2");
    };
    arrive("first\r\n");
    const Lines lines = traced();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "comnet2_DataArrival(): 7 bytes incoming, 7 bytes to process");
    EXPECT_EQ(lines[4], "comnet2_DataArrival() Rentry: 1 bytes incoming");
    EXPECT_EQ(lines[5], "comnet2_DataArrival(): processing 1 bytes in loop");
    EXPECT_EQ(lines[7], "BYTES>> 32 ");
    EXPECT_EQ(row(1), "2");
    EXPECT_EQ(pendingBytes, 0);
}

TEST_F(Network, UnreadBytesGoWithTheirConnection) {
    arrive("-");
    headless::yieldHook = [] {
        headless::yieldHook = nullptr;
        headless::socketReceives(comnet2, "unread");
        mnuconnitem_Click(connectionItem::disconnect);
    };
    arrive("first\r\nrest");
    EXPECT_EQ(row(0), "rest");
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
}

TEST_F(Network, ASessionStartedInsideTheLoopIsReceivedByIt) {
    arrive("-");
    g_sLogging = "1";
    headless::yieldHook = [] {
        headless::yieldHook = nullptr;
        headless::socketReceives(comnet2, "unread");
        mnuconnitem_Click(connectionItem::disconnect);
        then([] {
            headless::socketConnects(comnet2);
            headless::socketReceives(comnet2, "new");
            EXPECT_EQ(pendingBytes, 3);
        });
        thenWait(400);
        connectPort();
    };
    arrive("first\r\nrest");
    EXPECT_EQ(row(0), "new");
    EXPECT_EQ(row(1), "");
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
    EXPECT_EQ(traced().back(), "BYTES>> 6E 65 77 ");
    arrive("er");
    EXPECT_EQ(row(0), "newer");
    EXPECT_EQ(pendingBytes, 0);
}

TEST_F(Network, ASessionStartedInsideTheLoopMayBeSilent) {
    arrive("-");
    headless::yieldHook = [] {
        headless::yieldHook = nullptr;
        headless::socketReceives(comnet2, "unread");
        mnuconnitem_Click(connectionItem::disconnect);
        then([] { headless::socketConnects(comnet2); });
        thenWait(400);
        connectPort();
    };
    arrive("first\r\nrest");
    EXPECT_EQ(row(0), "");
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
    arrive("new");
    EXPECT_EQ(row(0), "new");
}

TEST_F(Network, TheHostsGoodbyeIsToldAndEndsTheSession) {
    arrive("text");
    headless::socketCloses(comnet2);
    EXPECT_EQ(boxes(), (Lines{"The connection has been dropped"}));
    EXPECT_EQ(recorded("box", "icon"), (Lines{"information"}));
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_EQ(row(0), "");
}

TEST_F(Network, AHostNameOf64KilobytesReachesTheSocketWhole) {
    mnuconnitem_Click(connectionItem::disconnect);
    std::string host = "-h \"quoted\" & 'more' %1 ";
    host += std::string(65536 - host.size(), 'x');
    CurrentProfile.host = host;
    then([&] {
        EXPECT_EQ(find<Label>(frmConn, "lblConn").caption(),
                  "Opening network connection to host: " + CurrentProfile.host);
        headless::socketConnects(comnet2);
    });
    thenWait(400);
    records.clear();
    connectPort();
    EXPECT_EQ(recorded("socket", "host"), (Lines{host}));
    EXPECT_TRUE(boxes().empty());
    arrive("still here");
    EXPECT_EQ(row(0), "still here");
}

TEST_F(Network, ASocketErrorIsSilent) {
    headless::socketFails(comnet2, 10060, "timed out");
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(g_bConnectActive);
}

/// The filter of the automatic login, fed with received texts.
class AutoLogin : public Network {
protected:
    void SetUp() override {
        Network::SetUp();
        g_bSSHMode = true;
        g_sSSHLogin = "admin";
        g_sSSHPassword = "s3cret";
    }
    static Lines sent() { return recorded("send", "bytes"); }
};

TEST_F(AutoLogin, NegotiationInFrontOfThePromptIsDropped) {
    EXPECT_FALSE(passLoginFilter("\xFF\xFD\x18"));
    EXPECT_TRUE(sent().empty());
    EXPECT_FALSE(g_bLoginPromptSeen);
    EXPECT_TRUE(passLoginFilter("Welcome"));
}

TEST_F(AutoLogin, ThePromptsAreAnsweredOnceEach) {
    DisplayBanner();
    g_sSSHLogin = "admin";
    g_sSSHPassword = "s3cret";
    EXPECT_FALSE(passLoginFilter("login: "));
    EXPECT_TRUE(g_bLoginPromptSeen);
    EXPECT_TRUE(g_bLoginSent);
    EXPECT_EQ(sent(), (Lines{"61646d696e0d"}));
    EXPECT_FALSE(passLoginFilter("admin\r\n"));
    EXPECT_FALSE(passLoginFilter("login: "));
    EXPECT_TRUE(localTextUp());
    EXPECT_TRUE(passLoginFilter("Password: "));
    EXPECT_TRUE(g_bLoginDone);
    EXPECT_FALSE(localTextUp());
    EXPECT_EQ(sent(), (Lines{"61646d696e0d", "7333637265740d"}));
}

TEST_F(AutoLogin, TheRemoteBannerIsDropped) { EXPECT_FALSE(passLoginFilter("SunOS 5.8")); }

TEST_F(AutoLogin, ALastLoginLineIsNoPrompt) {
    EXPECT_TRUE(passLoginFilter("Last login: Monday"));
    EXPECT_FALSE(g_bLoginSent);
    EXPECT_TRUE(sent().empty());
}

TEST_F(AutoLogin, BothPromptsInOneTextAreAnsweredOneAfterTheOther) {
    g_bLoginPromptSeen = true;
    g_bLoginSent = true;
    EXPECT_TRUE(passLoginFilter("login: admin\r\nPassword: "));
    EXPECT_EQ(sent(), (Lines{"7333637265740d"}));
}

TEST_F(AutoLogin, AnEmptyLoginNameIsContainedInNoText) {
    g_sSSHLogin.clear();
    EXPECT_TRUE(passLoginFilter("Message of the day"));
}

TEST_F(AutoLogin, WhatTheFilterDropsIsNotShown) {
    arrive("\xFF\xFD\x18");
    arrive("login: ");
    EXPECT_EQ(row(0), "");
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_FALSE(receiving);
    EXPECT_EQ(sent(), (Lines{"61646d696e0d"}));
    g_bLoginDone = true;
    arrive("$ ");
    EXPECT_EQ(row(0), "$");
}

TEST_F(Network, TelnetIsAnsweredWhileTheSocketIsConnected) {
    arrive("\xFF\xFD\x18");
    EXPECT_EQ(recorded("send", "bytes"), (Lines{"fffb18"}));
    records.clear();
    comnet2.close();
    processInput("\xFF\xFD\x18");
    EXPECT_EQ(recorded("send", "bytes"), Lines{});
}

}  // namespace
}  // namespace qxterm::test::network_test
