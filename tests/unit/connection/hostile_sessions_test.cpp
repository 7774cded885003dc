// Host output that means harm, in sessions of every connection type: whatever arrives and however it is cut,
// nothing is sent but telnet's answers, the program goes on, and what comes next is shown rightly.

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
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"

namespace qxterm::test::hostile_sessions_test {
namespace {

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
        thenWait(1500);
        start("lab");
        ASSERT_TRUE(g_bConnectActive);
        records.clear();
    }
    void TearDown() override {
        EXPECT_TRUE(g_bConnectActive);
        EXPECT_EQ(inputBusy, 0);
        for (const headless::Record& record : records) {
            if (record.kind == "send") {
                EXPECT_TRUE(isAnswer(fieldOf(record, "bytes"))) << fieldOf(record, "bytes");
                EXPECT_EQ(fieldOf(record, "to"), "socket");
            } else {
                EXPECT_TRUE(record.kind == "box" || record.kind == "beep") << record.kind;
            }
        }
        if (type() == "serial" || type() == "loop") {
            EXPECT_EQ(countOf("send"), 0U);
        }
        expectOrdinaryOutputIsShown();
        ProgramTest::TearDown();
    }

    static std::string_view type() { return std::get<0>(GetParam()); }
    static std::size_t blockLength() { return std::get<1>(GetParam()); }

    static void deliver(std::string_view block) {
        if (type() == "serial") {
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

    static void expectOrdinaryOutputIsShown() {
        deliver(std::string(32800, '.'));  // the label and string of a key that was announced
        deliver(
            "\x1b"
            "c\x1b"
            "c\x1b[2p\x1b[?7h\x1b[?11l");
        records.clear();
        deliver("\x1b[1;1Hall is\x1b[3;5H\x1b[1mwell\x1b[m");
        EXPECT_EQ(textOfRow(0), "all is");
        EXPECT_EQ(textOfRow(2), "    well");
        EXPECT_EQ(countOf("box"), 0U);
        EXPECT_EQ(countOf("send"), 0U);
    }
    /// Without the last column, whose character an erase leaves in the store.
    static std::string textOfRow(std::int32_t row) {
        const ScreenLine& line = lineOnRow(row);
        std::string text{line.text.begin(), line.text.begin() + 79};
        return text.erase(text.find_last_not_of(' ') + 1);
    }

private:
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
                         ::testing::Combine(::testing::Values("net", "serial", "ssh", "loop"),
                                            ::testing::Values(1, 7, 4096)),
                         [](const ::testing::TestParamInfo<Session>& one) {
                             return std::get<0>(one.param) + std::to_string(std::get<1>(one.param));
                         });

TEST_P(HostileSessions, ParametersAtTheirLimits) {
    for (int final = '@'; final < 127; ++final) {
        if (final == 'q') continue;
        for (const char* parameters : {"0", "32767", "32768", "?32767", "0;32767", "32767;0"})
            play("\x1b[" + std::string{parameters} + static_cast<char>(final));
    }
    play("\x1b[" + std::string(10000, '9') + "A");
    play("\x1b[" + std::string(100000, ';') + "5H");
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
    for (int n = 0; n < 300; ++n) play(std::string(99, 'u') + "\r");
    EXPECT_EQ(carryOver, "\x1b[5n");
    for (int n = 0; n < 1000; ++n) {
        deliver("E\x1b");
        ASSERT_LE(carryOver.size(), 5U);
    }
    deliver("\r");
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
    play(bytes);
    EXPECT_EQ(textOfRow(22), "l2999");
    EXPECT_EQ(scrollbackTop, 1);
}

TEST_P(HostileSessions, RandomBytes) {
    std::mt19937 random{std::random_device::result_type{4711}};
    std::string bytes(40000, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    play(bytes);
    EXPECT_LE(carryOver.size(), std::size_t{1} << 20U);
}

}  // namespace
}  // namespace qxterm::test::hostile_sessions_test
