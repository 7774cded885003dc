// Hosts that mean harm, or are in a bad way: whatever they negotiate, however their bytes are cut and
// whenever they go, nothing is sent but the answers that are due, and what comes next is shown rightly.

#include <map>
#include <string>

#include "app/menus.h"
#include "app/program_fixture.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/keyboard.h"
#include "connection/network.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/ssh_prompt.h"
#include "connection/transport_controls.h"
#include "platform/headless/socket.h"
#include "platform/hex_text.h"
#include "platform/main_form.h"
#include "terminal/commands/function_keys.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::test::hostile_host_test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* typeOffered = "fffb18";
constexpr const char* typeTold = "fffa180051585445524dfff0";

std::string refusal(int option) { return "fffc" + hexText(std::string(1, static_cast<char>(option))); }

class HostileHost : public ProgramTest {
protected:
    static void arrive(std::string_view bytes) { headless::socketReceives(comnet2, bytes); }
    static void arriveInBlocks(std::string_view bytes, std::size_t length) {
        for (std::size_t at = 0; at < bytes.size(); at += length) arrive(bytes.substr(at, length));
    }
    static Lines sent() { return recorded("send", "bytes"); }
    static std::string row(std::int32_t number) {
        const ScreenLine& line = lineOnRow(number);
        std::string text{line.text.begin(), line.text.end()};
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    static std::int16_t word(std::int32_t column, std::int32_t number) {
        return lineOnRow(number).attrs[static_cast<std::size_t>(column + 1)];
    }
    static std::pair<int, int> at() { return {curCol, curRow}; }
    static Lines page() {
        Lines rows;
        for (std::int32_t number = 0; number < screenRows; ++number) rows.push_back(row(number));
        return rows;
    }
    /// A page with text in some rows only.
    static Lines pageOf(const std::map<std::size_t, std::string>& texts) {
        Lines rows(screenRows);
        for (const auto& [number, text] : texts) rows[number] = text;
        return rows;
    }
    static void expectIdle() {
        EXPECT_FALSE(g_bConnectActive);
        EXPECT_FALSE(comnet2.connected());
        EXPECT_FALSE(sshHelperRecorded());
        EXPECT_FALSE(receiving);
        EXPECT_EQ(pendingBytes, 0);
        EXPECT_TRUE(mnuconnitem.entry(connectionItem::connect).enabled);
        EXPECT_FALSE(mnuconnitem.entry(connectionItem::disconnect).enabled);
        EXPECT_EQ(page(), pageOf({}));
    }
};

/// A network session that is up.
class NetworkHost : public HostileHost {
protected:
    void SetUp() override {
        HostileHost::SetUp();
        open();
    }
    static void open() {
        putSettings({{"Profiles", "n "}});
        putProfile("n", {{"connect", "net"}, {"host", "h"}, {"netport", "23"}});
        then([] { headless::socketConnects(comnet2); });
        thenWait(400);
        start("n");
        records.clear();
    }
    /// A session of a program that has just been started.
    void openAnew() {
        TearDown();
        SetUp();
    }
};

TEST_F(NetworkHost, WritesOnWhileABoxIsOpen) {
    headless::queueAnswer(Answer::no, [] {
        arrive("one\r\n");
        EXPECT_EQ(page(), pageOf({{0, "one"}}));
        headless::advance(1000);
        arrive("two");
        EXPECT_EQ(page(), pageOf({{0, "one"}, {1, "two"}}));
    });
    EXPECT_FALSE(frmterm.unload());
    EXPECT_EQ(boxes(), (Lines{"A connection is active, exit anyway?"}));
    EXPECT_TRUE(g_bConnectActive);
}

TEST_F(NetworkHost, WhatArrivesInABoxOfABlockComesBehindTheBlock) {
    headless::queueAnswer(Answer::ok, [] {
        arrive("two ");
        headless::advance(1000);
        arrive("three");
        EXPECT_EQ(page(), pageOf({}));
    });
    arrive("\x1b[32768one ");  // behind the digit that is too much stands text
    EXPECT_EQ(countOf("box"), 1U);
    EXPECT_EQ(page(), pageOf({{0, "one two three"}}));
}

TEST_F(NetworkHost, GoesWhileABoxOfABlockIsOpen) {
    headless::queueAnswer(Answer::ok, [] {
        arrive("three");
        headless::socketCloses(comnet2);
    });
    arrive("one\x1b[32768 two");
    EXPECT_EQ(countOf("box"), 2U);
    EXPECT_EQ(boxes().back(), "The connection has been dropped");
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(comnet2.connected());
    EXPECT_FALSE(receiving);
    EXPECT_EQ(pendingBytes, 0);
    EXPECT_TRUE(mnuconnitem.entry(connectionItem::connect).enabled);
    for (const std::string& text : page()) EXPECT_EQ(text.find("three"), std::string::npos) << text;
}

class TelnetFlood : public NetworkHost, public ::testing::WithParamInterface<std::size_t> {
protected:
    void TearDown() override {
        arrive("\x1b[1;1Hall is well");
        EXPECT_EQ(row(0).substr(0, 11), "all is well");
        EXPECT_EQ(pendingBytes, 0);
        EXPECT_FALSE(receiving);
        EXPECT_TRUE(boxes().empty());
        NetworkHost::TearDown();
    }
    static void play(std::string_view bytes) { arriveInBlocks(bytes, GetParam()); }
    /// As much of it as small blocks are quick enough for.
    static std::size_t amount(std::size_t whole) { return GetParam() < 4096 ? whole / 50 : whole; }
};

INSTANTIATE_TEST_SUITE_P(Blocks, TelnetFlood, ::testing::Values(1, 7, 4096));

TEST_P(TelnetFlood, TheSameRequestForEverIsAnsweredEachTime) {
    constexpr std::size_t times = 5000;
    std::string requests;
    for (std::size_t n = 0; n < times; ++n) requests += "\xff\xfd\x18";
    play(requests);
    EXPECT_EQ(sent(), Lines(times, typeOffered));
    records.clear();
    // What asks for the type is ordinary data behind its option: a control byte that means nothing, and the
    // end of the subnegotiation, which takes a zero along.
    requests.clear();
    for (std::size_t n = 0; n < times; ++n) requests += std::string_view{"\xff\xfa\x18\x01\xff\xf0\0", 7};
    play(requests);
    EXPECT_EQ(sent(), Lines(times, typeTold));
    EXPECT_EQ(page(), pageOf({}));
    EXPECT_EQ(carryOver, "");
}

TEST_P(TelnetFlood, EveryOptionInEveryCommand) {
    std::string requests;
    Lines expected;
    for (int option = 0; option < 256; ++option) {
        for (const int command : {253, 251, 252, 254, 250, 0}) {
            requests += '\xff';
            requests += static_cast<char>(command);
            requests += static_cast<char>(option);
        }
        expected.push_back(option == 24 ? typeOffered : refusal(option));
        if (option == 24) expected.emplace_back(typeTold);
        expected.push_back(option == 24 ? typeOffered : refusal(option));
    }
    play(requests);
    EXPECT_EQ(sent(), expected);
    EXPECT_EQ(page(), pageOf({}));
    EXPECT_EQ(at(), (std::pair{0, 0}));
    EXPECT_EQ(carryOver, "");
}

// The type is told as soon as it is asked for; what follows is text, however much of it there is.
TEST_P(TelnetFlood, TenMegabytesOfASubnegotiationWithoutAnEnd) {
    constexpr std::size_t megabyte = 1000000;
    play("\xff\xfa\x18");
    EXPECT_EQ(sent(), Lines{typeTold});
    const std::string piece(amount(megabyte), 's');
    for (int n = 0; n < 10; ++n) play(piece);
    EXPECT_EQ(sent(), Lines{typeTold});
    EXPECT_EQ(carryOver, "");
    EXPECT_EQ(row(10), std::string(80, 's'));
    EXPECT_EQ(scrollbackTop, 1);
    // 10,000,000 and 200,000 characters fill whole lines of 80: the last one stands full in the last row.
    EXPECT_EQ(row(23), std::string(80, 's'));
    EXPECT_EQ(at(), (std::pair{80, 23}));
    // An option that nothing is known of, and its end long after.
    play("\xff\xfa\x27" + piece);
    play(std::string_view{"\xff\xf0\0\r\n", 5});
    EXPECT_EQ(row(23), "");
    EXPECT_EQ(sent(), Lines{typeTold});
}

TEST_P(TelnetFlood, SubnegotiationsThatOnlyBegin) {
    std::string begun;
    for (int n = 0; n < 3000; ++n) begun += "\xff\xfa\x1f";
    begun += "\xff\xfa\x18";
    play(begun);
    EXPECT_EQ(sent(), Lines{typeTold});
    EXPECT_EQ(page(), pageOf({}));
}

// Text, sequences and negotiation in turn, options that would be letters among them; each command whose cut
// could matter is complete in itself, and the end of the subnegotiation has a zero behind it.
const std::string mixed =
    std::string{
        "\x1b[2;5Hab\xff\xfd\x18"
        "cd\xff\xfd\x01\r\n\xff\xfb\x41"
        "ef\xff\xfb\x42\x1b[31mred\xff\xfa\x18\x01\xff\xf0"} +
    '\0' + "\x1b[mx\xff\xfe\x43\xff\xfc\x22yz\xff" + '\0' +
    "\x1f\x1b"
    "7\xff\xfd\x27\x1b"
    "8!\x1b"
    "D\xff\xfd\xff"
    "end";
const Lines answersToMixed{typeOffered, "fffc01", typeTold, "fffc1f", "fffc27", "fffcff"};

class MixedStream : public NetworkHost {
protected:
    /// Row 1 begins in column 4; "8" puts the cursor back behind "yz", and the index moves it straight down.
    static void expectMixedScreen(const std::string& how) {
        EXPECT_EQ(page(), pageOf({{1, "    abcd"}, {2, "efredxyz!"}, {3, "         end"}})) << how;
        EXPECT_EQ(at(), (std::pair{12, 3})) << how;
        constexpr std::int16_t plain = 7 * 256;
        constexpr std::int16_t red = 1 * 256;
        for (std::int32_t column = 0; column < 9; ++column) {
            EXPECT_EQ(word(column, 2), column >= 2 && column <= 4 ? red : plain) << how << ", " << column;
        }
        EXPECT_EQ(sent(), answersToMixed) << how;
        EXPECT_EQ(carryOver, "") << how;
    }
};

TEST_F(MixedStream, LooksTheSameInBlocksOfAnyLength) {
    for (const std::size_t length : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        openAnew();
        arriveInBlocks(mixed, length);
        expectMixedScreen("blocks of " + std::to_string(length));
    }
}

TEST_F(MixedStream, LooksTheSameWhereverItIsCut) {
    for (std::size_t cut = 1; cut < mixed.size(); ++cut) {
        openAnew();
        arrive(std::string_view{mixed}.substr(0, cut));
        arrive(std::string_view{mixed}.substr(cut));
        expectMixedScreen("cut at " + std::to_string(cut));
    }
}

TEST_F(MixedStream, LooksTheSameAtOneByteASecond) {
    for (const char byte : mixed) {
        arrive({&byte, 1});
        headless::advance(1000);
        ASSERT_FALSE(receiving);
    }
    expectMixedScreen("a byte a second");
    EXPECT_EQ(countOf("box"), 0U);
    EXPECT_TRUE(g_bConnectActive);
}

// The dialog of the attempt does not wait for the host's first words.
TEST_F(HostileHost, BytesThatTrickleIntoTheStatusDialogAreShown) {
    putSettings({{"Profiles", "n "}});
    putProfile("n", {{"connect", "net"}, {"host", "h"}});
    then([] { headless::socketConnects(comnet2); });
    then([] { arrive("s"); });
    thenWait(50);
    then([] { arrive("\xff"); });
    thenWait(50);
    then([] { arrive("\xfd"); });
    thenWait(100);
    then([] { arrive("\x18"); });
    thenWait(149);
    then([] { arrive("low"); });
    thenWait(1);
    start("n");
    EXPECT_EQ(row(0), "slow");
    EXPECT_EQ(sent(), Lines{typeOffered});
    EXPECT_TRUE(g_bConnectActive);
}

/// IAC in the middle of a sequence of another kind, and what must be seen of it.
struct Interrupted {
    const char* what;
    std::string_view bytes;
    Lines answers;
    std::string row;
    std::string carried;
};

class IacInSequences : public NetworkHost {
protected:
    static std::vector<Interrupted> cases() {
        return {
            {"behind ESC: the escape is dropped, the command is one",
             "\x1b\xff\xfd\x01+",
             {"fffc01"},
             "+",
             ""},
            {"behind a parenthesis", "\x1b(\xff\xfd\x03+", {"fffc03"}, "+", ""},
            {"behind a number sign", "\x1b#\xff\xfd\x05+", {"fffc05"}, "+", ""},
            // IAC is the final of a sequence that nobody knows; DO and its option are text, the latter a
            // control byte that means nothing.
            {"behind a parameter", "\x1b[3\xff\xfd\x18+", {}, "\xfd+", "\x1b[3\xff"},
            {"behind a bracket", "\x1b[\xff\xfd\x18+", {}, "\xfd+", "\x1b[\xff"},
            {"behind a separator", "\x1b[3;\xff\xfd\x18+", {}, "\xfd+", "\x1b[3;\xff"},
            {"behind a private marker", "\x1b[?\xff\xfd\x18+", {}, "\xfd+", "\x1b[?\xff"},
            // Taken as they are.
            {"in a label and a string", "\x1b[1;3;0q\xff\xfd\x18___label____*\xff\xfd\x01+", {}, "+", ""},
        };
    }
    static void expectAsIs(const Interrupted& one, const std::string& how) {
        EXPECT_EQ(sent(), one.answers) << one.what << ", " << how;
        EXPECT_EQ(page(), pageOf({{0, one.row}})) << one.what << ", " << how;
        EXPECT_EQ(carryOver, one.carried) << one.what << ", " << how;
        arrive("\xff\xfd\x06\x1b[m!");
        EXPECT_EQ(row(0), one.row + "!") << one.what << ", " << how;
        EXPECT_EQ(sent().back(), "fffc06") << one.what << ", " << how;
        EXPECT_EQ(carryOver, "") << one.what << ", " << how;
    }
};

TEST_F(IacInSequences, IsTakenAsTheSequenceTakesAnyByte) {
    for (const Interrupted& one : cases()) {
        for (const std::size_t length : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
            openAnew();
            arriveInBlocks(one.bytes, length);
            expectAsIs(one, "blocks of " + std::to_string(length));
        }
        for (std::size_t cut = 1; cut < one.bytes.size(); ++cut) {
            openAnew();
            arrive(one.bytes.substr(0, cut));
            arrive(one.bytes.substr(cut));
            expectAsIs(one, "cut at " + std::to_string(cut));
        }
    }
    EXPECT_EQ(std::string(fkeyLabels[0][0].begin(), fkeyLabels[0][0].end()), "\xff\xfd\x18___label____*");
    EXPECT_EQ(fkeyStrings[0][0], "\xff\xfd\x01");
}

// Two bytes of a sequence go with an IAC that stands in front of it: the command "ESC" and what telnet would
// have behind it.
TEST_F(IacInSequences, ASequenceBehindAnIacLosesItsBeginning) {
    arrive(".");
    arrive("\xff\x1b[3Hx");
    EXPECT_EQ(row(0), ".3Hx");
    EXPECT_TRUE(sent().empty());
}

/// An SSH session whose tunnel is up; the remote login has not begun.
class SshHost : public HostileHost {
protected:
    void SetUp() override {
        HostileHost::SetUp();
        putSettings({{"Profiles", "office "}});
        putProfile("office", {{"connect", "ssh"}, {"host", "host1"}});
        start("office");
        logInLocally();
    }
    static void logInLocally() {
        ASSERT_TRUE(localPromptActive());
        then([] { headless::socketConnects(comnet2); });
        thenWait(400);
        for (const char c : std::string_view{"bob\rsecret\r"}) Form_KeyPress(static_cast<unsigned char>(c));
        ASSERT_TRUE(g_bConnectActive);
        records.clear();
    }
};

// The tests for the prompts look into one text at a time: there none holds a prompt, so it is shown and the
// user's to answer. Until a prompt was seen a text with IAC is dropped; the two bytes behind it come alone.
TEST_F(SshHost, ALoginPromptOfOneByteASecondIsLeftToTheUser) {
    for (const char byte : std::string_view{"\xff\xfd\x18login: "}) {
        arrive({&byte, 1});
        headless::advance(1000);
    }
    EXPECT_EQ(row(0), "\xfdlogin:");
    EXPECT_TRUE(sent().empty());
    EXPECT_FALSE(g_bLoginPromptSeen);
    Form_KeyPress('b');
    EXPECT_EQ(sent(), Lines{"62"});
}

TEST_F(SshHost, GoesAtEachPlaceOfTheLoginDialogue) {
    const std::vector<std::pair<Lines, Lines>> dialogues{
        {{}, {}},
        {{"\xff\xfd\x18\xff"}, {}},
        {{"\xff\xfd\x18", "SunOS 5.8\r\n\r\n"}, {}},
        {{"\xff\xfd\x18", "lo"}, {}},
        {{"login: "}, {"626f620d"}},
        {{"login: ", "bob\r\n", "Passw"}, {"626f620d"}},
        {{"login: ", "bob\r\n", "Password: "}, {"626f620d", "7365637265740d"}},
        {{"login: ", "bob\r\n", "Password: ", "\r\n\x1b[1"}, {"626f620d", "7365637265740d"}},
    };
    for (std::size_t n = 0; n < dialogues.size(); ++n) {
        const auto& [texts, answers] = dialogues[n];
        for (const std::string& text : texts) arrive(text);
        EXPECT_EQ(sent(), answers) << n;
        headless::socketCloses(comnet2);
        EXPECT_EQ(boxes(), Lines{"The connection has been dropped"}) << n;
        EXPECT_EQ(sent(), answers) << n;
        EXPECT_EQ(recorded("process", "op"), (Lines{"terminate", "terminate"})) << n;
        EXPECT_EQ(g_sSSHPassword, "") << n;
        EXPECT_FALSE(localPromptActive()) << n;
        expectIdle();
        // The next attempt begins with the prompt and knows nothing of this one.
        mnuconnitem_Click(connectionItem::connect);
        EXPECT_FALSE(g_bLoginPromptSeen || g_bLoginSent || g_bLoginDone) << n;
        logInLocally();
    }
    arrive("login: ");
    arrive("bob\r\nPassword: ");
    EXPECT_EQ(sent(), (Lines{"626f620d", "7365637265740d"}));
    arrive("\r\nhost1% ");
    EXPECT_EQ(row(1), "Password:");
    EXPECT_EQ(row(2), "host1%");
    for (std::size_t slot = 1; slot < timerTable.size(); ++slot) EXPECT_TRUE(timerTable[slot].free) << slot;
}

}  // namespace
}  // namespace qxterm::test::hostile_host_test
