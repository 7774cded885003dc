// Host output that means harm, in sessions of every connection type: whatever arrives and however it is cut,
// nothing is sent but telnet's answers, the program goes on, and what comes next is shown rightly.

#include <algorithm>
#include <ctime>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "app/edit_menu.h"
#include "app/program_fixture.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "connection/transport_controls.h"
#include "diag/block_time.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection.h"

namespace qxterm::test::hostile_sessions_test {
namespace {

/// Twice, as the first one may end what was left unfinished.
constexpr std::string_view fullReset =
    "\x1b"
    "c\x1b"
    "c";

using Session = std::tuple<const char*, std::size_t>;  ///< word of the connection type; length of a block

class HostileSessions : public ProgramTest, public ::testing::WithParamInterface<Session> {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        putSettings({{"Profiles", "lab "}});
        putProfile("lab", {{"connect", type().data()}, {"host", "h"}});
        if (type() == "ssh") {
            beginSsh();
            return;
        }
        if (type() == "net") then([] { headless::socketConnects(comnet2); });
        if (type() == "modem") then([] { headless::setCarrier(comser, true); });
        thenWait(1500);
        start("lab");
        ASSERT_TRUE(g_bConnectActive);
        records.clear();
    }
    void TearDown() override {
        EXPECT_TRUE(g_bConnectActive);
        EXPECT_EQ(inputBusy, 0);
        forgetHarmless();
        expectOrdinaryOutputIsShown();
        ProgramTest::TearDown();
    }
    /// Nothing was recorded but boxes, the bell and telnet's answers.
    static void forgetHarmless() {
        for (const headless::Record& record : records) {
            if (record.kind == "send") {
                EXPECT_TRUE(isAnswer(fieldOf(record, "bytes"))) << fieldOf(record, "bytes");
                EXPECT_EQ(fieldOf(record, "to"), "socket");
            } else {
                EXPECT_TRUE(record.kind == "box" || record.kind == "beep") << record.kind;
            }
        }
        if (type() == "serial" || type() == "modem" || type() == "loop") {
            EXPECT_EQ(countOf("send"), 0U);
        }
        records.clear();
    }

    static std::string_view type() { return std::get<0>(GetParam()); }
    static std::size_t blockLength() { return std::get<1>(GetParam()); }

    static void deliver(std::string_view block) {
        if (type() == "serial" || type() == "modem") {
            headless::serialReceives(comser, block, false);
        } else if (type() != "loop") {
            headless::socketReceives(comnet2, block);
        } else if (block.size() == 1) {
            Form_KeyPress(static_cast<unsigned char>(block.front()));
        } else {
            headless::putOnClipboard(block);
            mnueditItem_Click(editItem::paste);
        }
    }
    /// What a session gets, in blocks.
    static void play(std::string_view bytes) {
        for (std::size_t at = 0; at < bytes.size(); at += blockLength()) {
            const std::clock_t before = std::clock();
            deliver(bytes.substr(at, blockLength()));
            ASSERT_LT(std::clock() - before, longestBlock) << "block at " << at;
        }
    }

    /// The same while the user scrolls and selects whenever the program looks for events.
    static void playToABusyUser(std::string_view bytes) {
        turns = scrolledBack = selected = 0;
        headless::yieldHook = [] {
            ++turns;
            if (turns % 7 == 0) headless::moveScrollBar(vscterm, 450);
            if (turns % 11 == 0) picterm.onMouseDown.raise(1, 0, 500, 500);
            if (turns % 13 == 0) picterm.onMouseMove.raise(1, 0, 9000, -300);
            if (turns % 17 == 0) picterm.onMouseUp.raise(1, 0, 5000, 4000);
            scrolledBack += vscterm.value() != liveView ? 1 : 0;
            selected += hasSelection() ? 1 : 0;
        };
        play(bytes);
        headless::yieldHook = nullptr;
        EXPECT_GT(scrolledBack, 0);
        EXPECT_GT(selected, 0);
    }
    /// As much of it as small blocks are quick enough for.
    static std::size_t amount(std::size_t whole) { return blockLength() < 4096 ? whole / 5 : whole; }

    static std::string overflow() {
        return "An unexpected error 6 has occurred\r\nroutine: doEscBracket\r\nmessage: Overflow";
    }

    static void expectOrdinaryOutputIsShown() {
        deliver(std::string(32800, '.'));  // the label and string of a key that was announced
        deliver(fullReset);
        deliver("\x1b[2p\x1b[?7h\x1b[?11l");
        records.clear();
        deliver("\x1b[1;1Hall is\x1b[3;5H\x1b[1mwell\x1b[m");
        EXPECT_EQ(textOfRow(0), "all is");
        EXPECT_EQ(textOfRow(2), "    well");
        EXPECT_EQ(shownOnRow(0), "all is");
        EXPECT_EQ(shownOnRow(2), "    well");
        EXPECT_EQ(countOf("box"), 0U);
        EXPECT_EQ(countOf("send"), 0U);
    }
    /// Without the last column, whose character an erase leaves in the store.
    static std::string textOfRow(std::int32_t row) {
        const ScreenLine& line = lineOnRow(row);
        return withoutBlanks({line.text.begin(), line.text.begin() + 79});
    }
    /// What stands in the same columns of the window.
    static std::string shownOnRow(int row) {
        std::string text;
        for (int column = 0; column < 79; ++column) text += picterm.picture().at(column, row).text();
        return withoutBlanks(text);
    }

private:
    static inline int turns;
    static inline int scrolledBack;
    static inline int selected;

    static std::string withoutBlanks(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }
    static void beginSsh() {
        then([] { headless::socketConnects(comnet2); });
        thenWait(400);
        start("lab");
        for (const char c : std::string_view{"bob\rsecret\r"}) Form_KeyPress(static_cast<unsigned char>(c));
        ASSERT_TRUE(g_bConnectActive);
        headless::socketReceives(comnet2, "login: ");
        headless::socketReceives(comnet2, "Password: ");
        ASSERT_EQ(recorded("send", "bytes"), (std::vector<std::string>{"626f620d", "7365637265740d"}));
        records.clear();
    }
    /// WONT to any option, and the terminal's type.
    static bool isAnswer(std::string_view hex) {
        return hex == "fffa180051585445524dfff0" || hex == "fffb18" ||
               (hex.size() == 6 && hex.substr(0, 4) == "fffc");
    }
};

INSTANTIATE_TEST_SUITE_P(Each, HostileSessions,
                         ::testing::Combine(::testing::Values("net", "serial", "modem", "ssh", "loop"),
                                            ::testing::Values(1, 7, 4096)),
                         [](const ::testing::TestParamInfo<Session>& one) {
                             return std::get<0>(one.param) + std::to_string(std::get<1>(one.param));
                         });

TEST_P(HostileSessions, ParametersAtTheirLimits) {
    for (int final = '@'; final < 127; ++final) {
        for (const char* parameters : {"0", "32767", "32768", "?32767", "0;32767", "32767;0"})
            play("\x1b[" + std::string{parameters} + static_cast<char>(final));
    }
    for (const char final : std::string_view{"ABCDHJKLMPZ@bfhlmpqrxz"}) {
        play(fullReset);
        forgetHarmless();
        play("\x1b[" + std::string(10000, '9') + final);
        EXPECT_EQ(boxes(), std::vector<std::string>{overflow()}) << final;
    }
    play(fullReset);
    play("\x1b[" + std::string(amount(1000000), ';') + "5H");
    EXPECT_EQ(curRow, 4);
    EXPECT_EQ(curCol, 0);
}

TEST_P(HostileSessions, RepeatsAndKeysThatStop) {
    play("\x1b[b\x1b[5b\x1b[32767b" + std::string(79, 'r') + "\x1b[32767b\x1b[b");
    for (int n = 0; n < 100; ++n) play("\x1b[b");
    play("\x1b[1;-5q\x1b[1;q0123456789abcdef\x1b[1;32767;0qLABEL___label___" + std::string(1000, 's'));
}

TEST_P(HostileSessions, RegionsAndColumnsOutside) {
    for (const char* region : {"0;0", "24;1", "5;5", "10;12", "1;26", "26;26"}) {
        play("\x1b[" + std::string{region} + "r\x1b[?6h\x1b[30;90Hx\x1bM\x1b" + "D\n\x1b[99A\x1b[3L\x1b[?6l");
    }
    for (const char* column : {"0", "81", "100", "32767"}) {
        for (const char* then :
             {"text", "\x1b[5@", "\x1b[32767P", "\x1b[1K", "\t", "\b", "\x1b[9Z", "\x1b[9b"})
            play("\x1b[1;1H\x1b[4h\x1b[1;" + std::string{column} + "x" + then + "t\x1b[4l");
    }
}

TEST_P(HostileSessions, UnknownAndUnfinishedSequences) {
    play("\x1b[5n");
    std::string bytes;
    while (bytes.size() < amount(1000000)) bytes += std::string(499, 'u') + "\r";
    play(bytes);
    EXPECT_EQ(carryOver, "\x1b[5n");
    EXPECT_EQ(textOfRow(curRow), std::string(19, 'u'));  // 499 less six rows
    for (const char last : {'\x1b', '\xff'}) {
        std::string block(blockLength(), 'E');
        block.back() = last;
        for (int n = 0; n < 1000; ++n) {
            play(block);
            ASSERT_LE(carryOver.size(), 3U);
        }
        deliver("\r");
    }
    deliver("\xf1\xf1");
    EXPECT_EQ(carryOver, "");
}

TEST_P(HostileSessions, OptionsAskedForWithoutEnd) {
    std::string bytes;
    for (int turn = 0; turn < 3; ++turn) {
        for (int option = 0; option < 256; ++option) {
            for (const char verb : {'\xfd', '\xfb', '\xfc'})
                bytes += {'\xff', verb, static_cast<char>(option)};
        }
    }
    bytes += "\xff\xfa\x18";
    bytes += std::string(100000, 's') + "\xff\xf0" + std::string(3, '\xff') + "\x1b[\xff\xf1z3;4H";
    play(bytes);
}

TEST_P(HostileSessions, MuchWithAndWithoutLineEnds) {
    std::string bytes(60000, 'n');
    for (int n = 0; n < 3000; ++n) bytes += "l" + std::to_string(n) + "\r\n";
    bytes += std::string(500, '\a') + "\x1b[?5h\x1b[?13l\x1b[?5l\x1b[?13h";
    playToABusyUser(bytes);
    EXPECT_EQ(textOfRow(22), "l2999");
    EXPECT_EQ(scrollbackTop, 1);
}

TEST_P(HostileSessions, RandomBytes) {
    std::mt19937 random{std::random_device::result_type{4711}};
    std::string bytes(40000, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    playToABusyUser(bytes);
    EXPECT_LE(carryOver.size(), std::size_t{1} << 20U);
}

}  // namespace
}  // namespace qxterm::test::hostile_sessions_test
