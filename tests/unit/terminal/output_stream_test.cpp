// What becomes of the host's output when a session ends, or another begins, inside a block.

#include "platform/headless/event_loop.h"
#include "terminal/drawing/cursor.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::output_stream_test {
namespace {

class OutputStream : public test::TerminalTest {
protected:
    void TearDown() override {
        headless::yieldHook = nullptr;
        TerminalTest::TearDown();
    }
    /// What happens at the next yields, one each.
    static void atYields(std::vector<void (*)()> happenings) {
        next = 0;
        queue = std::move(happenings);
        headless::yieldHook = [] {
            if (next < queue.size()) queue[next++]();
        };
    }
    static inline std::vector<void (*)()> queue;
    static inline std::size_t next = 0;
};

TEST_F(OutputStream, TheRestOfABlockGoesWhenAnotherBegins) {
    atYields({beginOutput});
    host("one\r\ntwo\r\nthree");
    EXPECT_EQ(text(0), "one");
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(at(), std::pair(0, 1));
    headless::deliverPaints();
    EXPECT_EQ(cursorShown, -1);
    host("Hello");
    EXPECT_EQ(text(1), "Hello");
    EXPECT_EQ(shown(1), "Hello");
}

TEST_F(OutputStream, TheRestOfABlockGoesWhenTheProgramEnds) {
    atYields({headless::endProgram});
    host("one\r\ntwo\r\nthree");
    EXPECT_EQ(text(0), "one");
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(text(2), "");
}

TEST_F(OutputStream, AnUnfinishedSequenceDoesNotComeBack) {
    for (const std::string rest : {"\x1b", "\x1b[4;", "\xff\xfd", "\x1b[1;4;0qLABE"}) {
        // once in the block that is interpreted, once carried over to it
        atYields({beginOutput});
        host("\r\n" + rest);
        EXPECT_EQ(carryOver, "");
        host(rest);
        EXPECT_EQ(carryOver, rest);
        beginOutput();
        EXPECT_EQ(carryOver, "");
    }
    host("Hello");
    EXPECT_EQ(text(4), "Hello");
}

TEST_F(OutputStream, BlocksThatCameBeforeGoAndThoseBehindAreShown) {
    atYields({[] {
        host("old");
        beginOutput();
        host("new");
    }});
    host("one\r\ntwo");
    EXPECT_EQ(text(1), "new");
    EXPECT_EQ(text(2), "");
}

TEST_F(OutputStream, ABlockThatWaitedGoesLikeTheOneItWaitedFor) {
    atYields({[] {
                  host("second\r\nrest");
                  host("third");
              },
              beginOutput});
    host("first\r\n");
    EXPECT_EQ(text(1), "second");
    EXPECT_EQ(text(2), "");
}

TEST_F(OutputStream, ARepeatThatGoesBackEndsToo) {
    atYields({beginOutput});
    host("abcdef\x1b[2bxyz");
    EXPECT_EQ(text(0), "abcdefff");
    EXPECT_EQ(shown(0), "abcdefff");
    EXPECT_EQ(pendingCount, 0);
}

TEST_F(OutputStream, TheLastCharacterIsNotRepeatedInAnother) {
    host("a");
    beginOutput();
    host("\x1b[3b");
    EXPECT_EQ(text(0), "a");
    EXPECT_EQ(lastChar, "");
}

TEST_F(OutputStream, WhatIsLeftOfABlockIsShownWhenItsSessionEnds) {
    atYields({[] { host("waits"); }, dropWaitingBlocks});
    host("one\r\ntwo\r\nthree\x1b[");
    EXPECT_EQ(text(2), "three");
    EXPECT_EQ(text(3), "");
    EXPECT_EQ(carryOver, "\x1b[");
}

TEST_F(OutputStream, ASequenceMetBeforeAnotherBeganDoesNotComeBack) {
    for (const std::string before : {"", "\x1b[", "\x1b[1;"}) {
        host(before);
        atYields({beginOutput});
        host("5z\x1b[5z\nrest");
        EXPECT_EQ(carryOver, "");
    }
}

}  // namespace
}  // namespace qxterm::output_stream_test
