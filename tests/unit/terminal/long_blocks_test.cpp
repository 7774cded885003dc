// What keeps the window answering while a host sends much at once.

#include <string_view>
#include <vector>

#include "platform/headless/event_loop.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::long_blocks_test {
namespace {

int yields = 0;

class LongBlocks : public test::TerminalTest {
protected:
    void TearDown() override {
        headless::yieldHook = nullptr;
        TerminalTest::TearDown();
    }
    static int yieldsOf(const std::string& block) {
        yields = 0;
        headless::yieldHook = [] { ++yields; };
        host(block);
        headless::yieldHook = nullptr;
        return yields;
    }
    static std::string repeated(std::string_view piece, int times) {
        std::string all;
        for (int n = 0; n < times; ++n) all += piece;
        return all;
    }
};

TEST_F(LongBlocks, OutputWithoutLineFeedsYieldsEvery4096Bytes) {
    EXPECT_EQ(yieldsOf(repeated("\x1b[Hx", 1000)), 0);                               // 4000 bytes
    EXPECT_EQ(yieldsOf(repeated("\x1b[Hx", 2500)), 2);                               // 10000 bytes
    EXPECT_EQ(yieldsOf(repeated("a\r\n", 10)), 10);                                  // each line feed yields
    EXPECT_EQ(yieldsOf("\x1b[H\x1b[J" + repeated("\x1b[2;3Hxy", 1200) + "end"), 2);  // 9609 bytes
    EXPECT_EQ(text(1), "  xyend");
}

// Each block ends where its memory does, which the address sanitizer watches.
TEST_F(LongBlocks, NothingBehindABlockIsRead) {
    for (const std::string_view bytes :
         {"a",    "ab",   "abc",  "a\r",      "ab\r",      "ab\r\n",    "\t",      "\x1b",
          "[",    "1",    ";2",   "H",        "\x1b(",     "B",         "\x1b#",   "8",
          "\xff", "\xfb", "\x01", "12345678", "123456789", "\x1b[1;3H", "\x1b[2b", "\x1b[3;9f"}) {
        const std::vector<char> whole(bytes.begin(), bytes.end());
        host({whole.data(), whole.size()});
    }
    EXPECT_EQ(faults(), "");
}

TEST_F(LongBlocks, ASequenceThatAsksForManyRepaintsGetsOne) {
    host("\x1b[Hone\r\ntwo");
    headless::clearDrawCounts();
    host("\x1b[?5" + repeated(";5", 300000) + "h");
    // Two lines of text, and all 25 rows cleared behind their used length.
    EXPECT_EQ(headless::drawCounts().text, 2U);
    EXPECT_EQ(headless::drawCounts().clear, 25U);
    EXPECT_EQ(cell(0, 0).fg(), 0);
    EXPECT_EQ(cell(0, 0).bg(), 7);
    EXPECT_EQ(cell(40, 24).bg(), 7);
    headless::clearDrawCounts();
    host("\x1b[?5" + repeated(";11;5", 1000) + "h");  // the cursor's shape changes in between
    EXPECT_EQ(headless::drawCounts().text, 2U);
    EXPECT_EQ(headless::drawCounts().clear, 25U);
    host("\x1b[?11l");
    host("\x1b[?5;10;5;10l");
    EXPECT_EQ(cell(0, 1).text(), 't');
    EXPECT_EQ(cell(0, 1).bg(), 0);
}

// Suspending blanks the page; the status row keeps what the repaint before has drawn.
TEST_F(LongBlocks, ARepaintAskedForBeforeDrawingIsSuspendedIsCarriedOut) {
    host("\x1b[1;1xstatus\x1b[H");
    host("\x1b[?5;10h");
    EXPECT_EQ(shown(24), "status");
    EXPECT_EQ(cell(0, 24).bg(), 7);
    EXPECT_EQ(cell(0, 0).bg(), 7);
    host("\x1b[?10;5l");
    EXPECT_EQ(cell(0, 24).bg(), 0);
}

}  // namespace
}  // namespace qxterm::long_blocks_test
