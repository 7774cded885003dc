#include "diag/trace_log.h"

#include <string>

#include "diag/recorded.h"

namespace qxterm::trace_log_test {
namespace {

using test::recorded;
using Lines = std::vector<std::string>;

class TraceLog : public test::RecordedTest {
protected:
    void SetUp() override {
        RecordedTest::SetUp();
        g_sLogging = "1";
    }
    void TearDown() override {
        g_sLogging.clear();
        RecordedTest::TearDown();
    }
    static Lines lines() { return recorded("trace", "line"); }
};

TEST_F(TraceLog, WritesEachLineAsItIs) {
    writeLog("connectPort() - Connection Type: Network");
    writeLog("");
    writeLog("  %1 ");
    EXPECT_EQ(lines(), (Lines{"connectPort() - Connection Type: Network", "", "  %1 "}));
}

TEST_F(TraceLog, IsOnForTheDigitOneAlone) {
    for (const char* off : {"0", "", "11", "01", "1 ", " 1", "yes", "TRUE", "2"}) {
        g_sLogging = off;
        writeLog("line");
        logBytes("BYTES<<", "abc");
    }
    EXPECT_EQ(lines(), Lines{});
}

TEST_F(TraceLog, ShortDumpHasNoCharacters) {
    logBytes("BYTES<<", "\x1b[A\xff");
    EXPECT_EQ(lines(), Lines{"BYTES<< 1B 5B 41 FF "});
}

TEST_F(TraceLog, FullLineIsFollowedByItsCharactersAbove31) {
    // 32 bytes: 0x1F is left out, 0x20 stands
    std::string bytes(30, 'A');
    bytes += '\x1f';
    bytes += ' ';
    std::string expected = "BYTES>> ";
    for (int n = 0; n < 30; ++n) expected += "41 ";
    expected += "1F 20 ";
    expected += std::string(30, 'A') + " ";
    logBytes("BYTES>>", bytes);
    EXPECT_EQ(lines(), Lines{expected});
}

TEST_F(TraceLog, ThirtyThreeBytesMakeTwoLinesAndOnlyTheFirstIsHeaded) {
    std::string digits;
    for (int n = 0; n < 32; ++n) digits += "62 ";
    logBytes("BYTES>>", std::string(32, 'b') + "c");
    EXPECT_EQ(lines(), (Lines{"BYTES>> " + digits + std::string(32, 'b'), "63 "}));
}

TEST_F(TraceLog, SixtyFourBytesMakeTwoFullLines) {
    std::string digits;
    for (int n = 0; n < 32; ++n) digits += "62 ";
    logBytes("BYTES>>", std::string(64, 'b'));
    EXPECT_EQ(lines(), (Lines{"BYTES>> " + digits + std::string(32, 'b'), digits + std::string(32, 'b')}));
}

}  // namespace
}  // namespace qxterm::trace_log_test
