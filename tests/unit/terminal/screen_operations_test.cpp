#include <cstring>
#include <string>

#include "platform/event_loop.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::screen_operations_test {
namespace {

constexpr std::int16_t plain = 1792;    // flags 0, foreground 7, background 0
constexpr std::int16_t special = 4868;  // flags 4, foreground 3, background 1: 4 + 3 * 256 + 4096

class ScreenOperations : public test::TerminalTest {
protected:
    /// A row of the characters a, b, c ... over and over, each cell's word its own column: 1000 + column.
    static void fillRow(std::int32_t row) {
        ScreenLine& record = lineOnRow(row);
        for (std::int32_t column = 0; column < 80; ++column) {
            record.text[static_cast<std::size_t>(column)] = static_cast<char>('a' + column % 26);
            record.attrs[static_cast<std::size_t>(column + 1)] = static_cast<std::int16_t>(1000 + column);
        }
        record.usedLength = 79;
    }
    static std::string pattern() {
        std::string all;
        for (int column = 0; column < 80; ++column) all += static_cast<char>('a' + column % 26);
        return all;
    }
    /// The words of columns first..last are 1000 + column + by.
    static bool shiftedWords(std::int32_t row, std::int32_t first, std::int32_t last, int by) {
        for (std::int32_t column = first; column <= last; ++column) {
            if (word(column, row) != 1000 + column + by) return false;
        }
        return true;
    }
};

// --- putBuf

TEST_F(ScreenOperations, PutBufWithoutAPendingRunChangesNothing) {
    const ScreenLine before = lineOnRow(0);
    cursorTo(40, 0);
    putBuf();
    EXPECT_EQ(at(), (std::pair{40, 0}));
    EXPECT_EQ(lineOnRow(0).lineFlags, before.lineFlags);
    EXPECT_EQ(lineOnRow(0).dirtyLast, -1);
}

TEST_F(ScreenOperations, RunThatEndsInTheLastColumn) {
    cursorTo(75, 2);
    pend("VWXYZ");
    putBuf();
    EXPECT_EQ(at(), (std::pair{80, 2}));
    EXPECT_EQ(line(2), std::string(75, ' ') + "VWXYZ");
    EXPECT_EQ(lineOnRow(2).dirtyFirst, 75);
    EXPECT_EQ(lineOnRow(2).dirtyLast, 79);
    EXPECT_EQ(lineOnRow(2).lineFlags, 1);
    EXPECT_EQ(lineOnRow(2).usedLength, -1);  // grows when the line is drawn
    EXPECT_EQ(pendingCount, 0);
    flushBuf();
    EXPECT_EQ(lineOnRow(2).usedLength, 79);
    EXPECT_EQ(lineOnRow(2).dirtyLast, -1);
    EXPECT_EQ(lineOnRow(2).lineFlags, 0);
}

TEST_F(ScreenOperations, InvisibleRunIsStoredAsBlanksWithItsWord) {
    fillRow(0);
    cursorTo(3, 0);
    setCurrentAttr({32, 2, 1});
    pend("xyz");
    putBuf();
    EXPECT_EQ(line(0).substr(0, 8), "abc   gh");
    EXPECT_TRUE(words(0, 3, 5, 32 + 2 * 256 + 4096));
    EXPECT_EQ(word(6, 0), 1006);
}

TEST_F(ScreenOperations, EarlierColumnWidensTheDirtySpan) {
    cursorTo(40, 0);
    pend("b");
    putBuf();
    cursorTo(10, 0);
    pend("a");
    putBuf();
    EXPECT_EQ(lineOnRow(0).dirtyFirst, 10);
    EXPECT_EQ(lineOnRow(0).dirtyLast, 40);
    flushBuf();
    EXPECT_EQ(shown(0), std::string(10, ' ') + "a" + std::string(29, ' ') + "b");
}

TEST_F(ScreenOperations, RunPastTheLineIsASubscriptErrorAndStaysOnce) {
    cursorTo(78, 0);
    pend("abcd");
    putBuf();
    EXPECT_EQ(faults(), "9 putBuf;");
    EXPECT_EQ(line(0).substr(78), "ab");
    EXPECT_EQ(pendingCount, 4);
    EXPECT_EQ(curCol, 78);
    putBuf();
    EXPECT_EQ(faults(), "9 putBuf;9 putBuf;");
    EXPECT_EQ(pendingCount, 0);
    putBuf();
    EXPECT_EQ(faults(), "9 putBuf;9 putBuf;");
}

TEST_F(ScreenOperations, RunLeftOfTheLineIsAnInvalidCall) {
    cursorTo(-1, 24);
    pend("a");
    putBuf();
    EXPECT_EQ(faults(), "5 putBuf;");
    EXPECT_EQ(line(24), std::string(80, ' '));
}

TEST_F(ScreenOperations, RowOutsideTheScreenIsASubscriptError) {
    cursorTo(0, 25);
    pend("a");
    putBuf();
    EXPECT_EQ(faults(), "9 putBuf;");
}

TEST_F(ScreenOperations, BackgroundOfEightOverflowsInPutBuf) {
    curBg = 8;
    pend("a");
    putBuf();
    EXPECT_EQ(faults(), "6 putBuf;");
    EXPECT_EQ(line(0), std::string(80, ' '));
}

// --- insChars

TEST_F(ScreenOperations, InsertShiftsTextAndWords) {
    fillRow(4);
    cursorTo(10, 4);
    insChars("XY", 2, special);
    EXPECT_EQ(line(4), pattern().substr(0, 10) + "XY" + pattern().substr(10, 68));
    EXPECT_TRUE(shiftedWords(4, 0, 9, 0));
    EXPECT_TRUE(words(4, 10, 11, special));
    EXPECT_TRUE(shiftedWords(4, 12, 79, -2));
    EXPECT_EQ(lineOnRow(4).lineFlags, 3);
    EXPECT_EQ(lineOnRow(4).dirtyFirst, 10);
    EXPECT_EQ(lineOnRow(4).usedLength, 81);
    EXPECT_EQ(curCol, 10);
}

TEST_F(ScreenOperations, InsertBehindTheUsedPartLeavesItsLength) {
    lineOnRow(0).usedLength = 9;
    cursorTo(10, 0);
    insChars("XY", 2, special);
    EXPECT_EQ(lineOnRow(0).usedLength, 9);
    cursorTo(9, 0);
    insChars("XY", 2, special);
    EXPECT_EQ(lineOnRow(0).usedLength, 11);
}

// 79 + 408 x 80 = 32719 is the last length that can grow by a whole line.
TEST_F(ScreenOperations, InsertingForEverIsNoError) {
    host("\x1b[H" + std::string(80, 'x') + "\x1b[H");
    for (int n = 0; n < 408; ++n) host("\x1b[80@");
    EXPECT_EQ(lineOnRow(0).usedLength, 32719);
    for (int n = 0; n < 3; ++n) host("\x1b[80@");
    EXPECT_EQ(lineOnRow(0).usedLength, 32767);
    host("\x1b[4hab\x1b[Hc\x1b[4l");
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(lineOnRow(0).usedLength, 32767);
    EXPECT_EQ(text(0), "cab");
    EXPECT_EQ(shown(0), "cab");
    host("\x1b[2PX");
    EXPECT_EQ(lineOnRow(0).usedLength, 32765);
    EXPECT_EQ(text(0), "cX");
    EXPECT_EQ(faults(), "");
}

TEST_F(ScreenOperations, TextThatWaitsToBeDrawnAtTheCursorMovesAlong) {
    lineOnRow(0).dirtyLast = 10;
    cursorTo(10, 0);
    insChars("XY", 2, special);
    EXPECT_EQ(lineOnRow(0).dirtyLast, 12);
    cursorTo(13, 0);
    insChars("XY", 2, special);
    EXPECT_EQ(lineOnRow(0).dirtyLast, 12);
}

TEST_F(ScreenOperations, TheSpanToDrawIsHeldAtTheSamePlace) {
    ScreenLine& record = lineOnRow(0);
    record.usedLength = 32760;
    record.dirtyLast = 32761;
    cursorTo(0, 0);
    insChars("abcdef", 6, special);
    EXPECT_EQ(record.usedLength, 32766);
    EXPECT_EQ(record.dirtyLast, 32767);
    insChars("ghijkl", 6, special);
    EXPECT_EQ(record.usedLength, 32767);
    EXPECT_EQ(record.dirtyLast, 32767);
    EXPECT_EQ(faults(), "");
}

// Three characters at column 78: two fit, nothing is an error.
TEST_F(ScreenOperations, InsertNearTheEndKeepsWhatFits) {
    fillRow(0);
    cursorTo(78, 0);
    insChars("XYZ", 3, special);
    EXPECT_EQ(line(0), pattern().substr(0, 78) + "XY");
    EXPECT_TRUE(shiftedWords(0, 0, 77, 0));
    EXPECT_TRUE(words(0, 78, 79, special));
    EXPECT_EQ(faults(), "");
}

TEST_F(ScreenOperations, InsertModeStoresTheRunByInsertion) {
    fillRow(0);
    screenMode = mode::insert;
    cursorTo(5, 0);
    pend("12");
    putBuf();
    EXPECT_EQ(line(0), pattern().substr(0, 5) + "12" + pattern().substr(5, 73));
    EXPECT_EQ(curCol, 7);
    EXPECT_EQ(lineOnRow(0).dirtyLast, 6);
    EXPECT_EQ(lineOnRow(0).lineFlags, 3);
    flushBuf();
    EXPECT_EQ(shown(0), line(0));
    EXPECT_EQ(lineOnRow(0).lineFlags, 0);
}

TEST_F(ScreenOperations, InsertBehindTheLineIsAnError) {
    fillRow(0);
    cursorTo(80, 0);
    insChars("X", 1, special);
    EXPECT_EQ(faults(), "9 insChars;");
    EXPECT_EQ(line(0), pattern());
    EXPECT_TRUE(shiftedWords(0, 0, 79, 0));
    EXPECT_EQ(lineOnRow(0).usedLength, 79);
}

TEST_F(ScreenOperations, InsertOfNothingOnlyMarksTheLine) {
    fillRow(0);
    cursorTo(80, 0);
    insChars("", 0, special);
    EXPECT_EQ(line(0), pattern());
    EXPECT_TRUE(shiftedWords(0, 0, 79, 0));
    EXPECT_EQ(faults(), "");
}

// The status-row command takes any column: 0 is one left of the line. Nothing before the line is touched.
TEST_F(ScreenOperations, InsertAndDeleteLeftOfTheLineAreInvalidCalls) {
    for (std::int32_t row = 0; row < 25; ++row) fillRow(row);
    const auto before = screenLines;
    host("\x1b[1;0x\x1b[3@");
    EXPECT_EQ(faults(), "5 insChars;");
    host("\x1b[3P");
    EXPECT_EQ(faults(), "5 insChars;5 delChars;");
    EXPECT_EQ(std::memcmp(&before, &screenLines, sizeof screenLines), 0);
}

// --- delChars

// Column 10, 3 characters, the line full: cells 10.. take 13.., the last 3 become blank; the erased words run
// from last - count + 1 = 79 - 3 + 1 = 77 to 79.
TEST_F(ScreenOperations, DeleteShiftsLeftAndBlanksTheEnd) {
    fillRow(1);
    cursorTo(10, 1);
    delChars(3);
    EXPECT_EQ(line(1), pattern().substr(0, 10) + pattern().substr(13) + "   ");
    EXPECT_TRUE(shiftedWords(1, 0, 9, 0));
    EXPECT_TRUE(shiftedWords(1, 10, 76, 3));
    EXPECT_TRUE(words(1, 77, 79, plain));
    EXPECT_EQ(lineOnRow(1).lineFlags, 3);
    EXPECT_EQ(lineOnRow(1).usedLength, 76);
    EXPECT_EQ(curCol, 10);
}

// The used part ends at column 20: the erased cells begin at 20 - 2 + 1 = 19.
TEST_F(ScreenOperations, DeleteBlanksFromTheEndOfTheContent) {
    fillRow(1);
    ScreenLine& record = lineOnRow(1);
    record.usedLength = 20;
    cursorTo(5, 1);
    delChars(2);
    // text shifted by 2, then cells 19..78 blanked by the erase; column 79 was blanked by the shift
    EXPECT_EQ(line(1), pattern().substr(0, 5) + pattern().substr(7, 14) + std::string(61, ' '));
    EXPECT_TRUE(shiftedWords(1, 5, 18, 2));
    EXPECT_TRUE(words(1, 19, 79, plain));
    EXPECT_EQ(record.usedLength, 18);
}

// What was written but not drawn yet counts as content: dirtyLast 30 is larger than the used length.
TEST_F(ScreenOperations, DeleteCountsUndrawnText) {
    cursorTo(0, 1);
    pend(std::string(31, 'z'));
    putBuf();
    cursorTo(0, 1);
    delChars(1);
    EXPECT_EQ(text(1), std::string(30, 'z'));
    EXPECT_TRUE(words(1, 30, 79, plain));
    EXPECT_EQ(lineOnRow(1).usedLength, -1);
}

// The cursor on the last used cell (10): the length does not change before the erase, which begins left of
// the cursor at 10 - 5 + 1 = 6 and so takes cells 6 to 9 along.
TEST_F(ScreenOperations, DeleteOnTheLastUsedCellTakesCellsBeforeIt) {
    fillRow(0);
    lineOnRow(0).text.fill(' ');
    const std::string content = "abcdefghijk";
    std::copy(content.begin(), content.end(), lineOnRow(0).text.begin());
    lineOnRow(0).usedLength = 10;
    cursorTo(10, 0);
    delChars(5);
    EXPECT_EQ(text(0), "abcdef");
    EXPECT_TRUE(words(0, 6, 79, plain));
    EXPECT_EQ(lineOnRow(0).usedLength, 6);
}

// A blank line (used length -1), 4 characters: erased from column -1 - 4 + 1 = -4 on.
TEST_F(ScreenOperations, DeleteOnABlankLineLowersItsLengthFurther) {
    cursorTo(7, 3);
    delChars(4);
    EXPECT_EQ(line(3), std::string(80, ' '));
    EXPECT_EQ(lineOnRow(3).usedLength, -4);
    EXPECT_EQ(faults(), "");
}

TEST_F(ScreenOperations, DeleteOfMoreThanTheLineEmptiesItsRest) {
    fillRow(0);
    cursorTo(10, 0);
    delChars(32767);
    EXPECT_EQ(faults(), "");
    // the erase begins at 79 - 32767 + 1, so every cell but the last is blanked, the last by the shift
    EXPECT_EQ(line(0), std::string(80, ' '));
    EXPECT_TRUE(words(0, 0, 79, plain));
}

// --- scrErase

TEST_F(ScreenOperations, EraseInDisplayKnowsThreeValues) {
    for (const char* unknown : {"\x1b[3J", "\x1b[4J", "\x1b[32767J"}) {
        for (std::int32_t row = 0; row < 25; ++row) fillRow(row);
        host("\x1b[12;40H");
        host(unknown);
        for (std::int32_t row = 0; row < 25; ++row) ASSERT_EQ(line(row), pattern()) << row;
    }
    host("\x1b[1J");
    for (std::int32_t row = 0; row < 12; ++row) EXPECT_TRUE(words(row, 0, 79, plain)) << row;
    for (std::int32_t row = 12; row < 25; ++row) EXPECT_EQ(line(row), pattern()) << row;
}

TEST_F(ScreenOperations, ErasingPartOfALineLeavesTheRestOnTheWindow) {
    host("\x1b[3;1H" + pattern());
    host("\x1b[3;11H\x1b[1K");
    EXPECT_EQ(shown(2), std::string(11, ' ') + pattern().substr(11));
    host("\x1b[3;71H\x1b[K");
    EXPECT_EQ(shown(2), std::string(11, ' ') + pattern().substr(11, 59));
}

TEST_F(ScreenOperations, WhatWaitsIsStoredBeforeItIsErasedOrMoved) {
    host("abc\x1b[1K");
    EXPECT_EQ(text(0), "");
    host("\r\nabc\x1b[1J");
    EXPECT_EQ(text(1), "");
    host("\r\nwxyz\rabc\x1b[2@");
    EXPECT_EQ(text(2), "abc  z");
    host("\r\nwxyz\rab\x1b[P");
    EXPECT_EQ(text(3), "abz");
}

TEST_F(ScreenOperations, WithoutANumberOneCharacterIsInsertedAndDeleted) {
    host("wxyz\r\x1b[@");
    EXPECT_EQ(text(0), " wxyz");
    host("\x1b[P\x1b[P");
    EXPECT_EQ(text(0), "xyz");
}

TEST_F(ScreenOperations, SuspendedDrawingBlanksThePageOnTheWindow) {
    for (int row = 1; row <= 24; ++row) host("\x1b[" + std::to_string(row) + ";1Hrow");
    host("\x1b[1;1xstatus");
    host("\x1b[?10h");
    for (int row = 0; row < 24; ++row) EXPECT_EQ(shown(row), "") << row;
    EXPECT_EQ(shown(24), "status");
    host("\x1b[?10l");
    for (int row = 0; row < 24; ++row) EXPECT_EQ(shown(row), "row") << row;
}

// A first row of 24 counts as 1.
TEST_F(ScreenOperations, TheRegionBeginsAtRow23AtMost) {
    host("\x1b[5;9r\x1b[24;24r");
    EXPECT_EQ(regionTop, 0);
    EXPECT_EQ(regionBottom, 23);
    host("\x1b[23;24r");
    EXPECT_EQ(regionTop, 22);
    EXPECT_EQ(regionBottom, 23);
}

TEST_F(ScreenOperations, IndexAndReverseIndexShowAtOnceWhatWaited) {
    host(
        "\x1b[24;1Hlast\x1b"
        "D");
    EXPECT_EQ(shown(22), "last");
    EXPECT_EQ(shown(23), "");
    host("\x1b[1;1Hfirst\x1bM");
    EXPECT_EQ(shown(0), "");
    EXPECT_EQ(shown(1), "first");
}

TEST_F(ScreenOperations, EraseInDisplayFromTheStatusRow) {
    for (std::int32_t row = 0; row < 25; ++row) fillRow(row);
    host("\x1b[1;11x\x1b[2J");
    for (std::int32_t row = 0; row < 24; ++row) EXPECT_TRUE(words(row, 0, 79, plain)) << row;
    EXPECT_EQ(line(24), pattern());
    EXPECT_TRUE(shiftedWords(24, 0, 79, 0));
    for (std::int32_t row = 0; row < 24; ++row) fillRow(row);
    host("\x1b[J");
    for (std::int32_t row = 0; row < 24; ++row) EXPECT_EQ(line(row), pattern()) << row;
    EXPECT_TRUE(shiftedWords(24, 0, 9, 0));
    EXPECT_TRUE(words(24, 10, 79, plain));
}

TEST_F(ScreenOperations, EraseOfAWholeLineLeavesTheLastCharacterInTheStore) {
    fillRow(5);
    for (std::int16_t column = 0; column < 80; ++column) lineOnRow(5).attrs[std::size_t(column + 1)] = plain;
    lineOnRow(5).dirtyLast = 79;
    lineOnRow(5).lineFlags = lineFlag::draw;
    recordsToDraw |= 1U << 5U;
    flushBuf();
    ASSERT_EQ(shown(5), pattern());
    scrErase(0, 79, 5, 5);
    EXPECT_EQ(line(5), std::string(79, ' ') + "b");  // 79 is 3 * 26 + 1: a "b"
    EXPECT_TRUE(words(5, 0, 79, plain));
    EXPECT_EQ(lineOnRow(5).usedLength, 0);
    EXPECT_EQ(shown(5), "");
}

TEST_F(ScreenOperations, EraseOfARectangleKeepsItsLastColumnAndAllAround) {
    for (std::int32_t row = 2; row <= 6; ++row) fillRow(row);
    scrErase(10, 20, 3, 5);
    for (std::int32_t row = 3; row <= 5; ++row) {
        EXPECT_EQ(line(row), pattern().substr(0, 10) + std::string(10, ' ') + pattern().substr(20));
        EXPECT_TRUE(shiftedWords(row, 0, 9, 0));
        EXPECT_TRUE(words(row, 10, 20, plain));
        EXPECT_TRUE(shiftedWords(row, 21, 79, 0));
        EXPECT_EQ(lineOnRow(row).usedLength, 10);
    }
    EXPECT_EQ(line(2), pattern());
    EXPECT_EQ(line(6), pattern());
}

TEST_F(ScreenOperations, EraseOfOneCellKeepsItsCharacterButNotItsWord) {
    fillRow(0);
    scrErase(4, 4, 0, 0);
    EXPECT_EQ(line(0), pattern());
    EXPECT_EQ(word(4, 0), plain);
    EXPECT_EQ(word(3, 0), 1003);
    EXPECT_EQ(word(5, 0), 1005);
}

TEST_F(ScreenOperations, EmptyRectangleDoesNothing) {
    fillRow(0);
    fillRow(24);
    scrErase(80, 79, 0, 0);
    scrErase(0, 79, 25, 23);
    EXPECT_EQ(line(0), pattern());
    EXPECT_EQ(line(24), pattern());
    EXPECT_EQ(lineOnRow(0).usedLength, 79);
    EXPECT_EQ(faults(), "");
}

// From column -4 to 79: 83 characters are counted from -4, which ends at column 78.
TEST_F(ScreenOperations, EraseCountsFromTheColumnsGiven) {
    fillRow(0);
    scrErase(-4, 79, 0, 0);
    EXPECT_EQ(line(0), std::string(79, ' ') + "b");
    EXPECT_EQ(lineOnRow(0).usedLength, -4);
    fillRow(1);
    scrErase(0, 99, 1, 1);  // beyond the line: 99 characters are more than there are
    EXPECT_EQ(line(1), std::string(80, ' '));
    fillRow(2);
    scrErase(99, 120, 2, 2);
    EXPECT_EQ(line(2), pattern());
    EXPECT_TRUE(shiftedWords(2, 0, 79, 0));
    EXPECT_EQ(faults(), "");
}

TEST_F(ScreenOperations, EraseKeepsTheSelectionMark) {
    fillRow(0);
    lineOnRow(0).lineFlags = lineFlag::selected;
    scrErase(0, 79, 0, 0);
    EXPECT_EQ(lineOnRow(0).lineFlags, lineFlag::selected);
}

TEST_F(ScreenOperations, EraseOfARowOutsideIsASubscriptError) {
    scrErase(0, 79, 24, 25);
    EXPECT_EQ(faults(), "9 scrErase;");
}

// --- lines

TEST_F(ScreenOperations, LineFeedAtEachPlace) {
    cursorTo(7, 5);
    lineFeed();
    EXPECT_EQ(at(), (std::pair{7, 6}));
    cursorTo(7, 24);
    lineFeed();
    EXPECT_EQ(at(), (std::pair{7, 24}));
    EXPECT_EQ(scrollbackTop, 501);
    cursorTo(7, 23);
    lineFeed();
    EXPECT_EQ(at(), (std::pair{7, 23}));
    EXPECT_EQ(scrollbackTop, 500);
    regionBottom = 20;
    lineFeed();
    EXPECT_EQ(at(), (std::pair{7, 23}));
    EXPECT_EQ(scrollbackTop, 500);
}

TEST_F(ScreenOperations, ScrollUpRotatesTheRegionOnly) {
    regionTop = 3;
    regionBottom = 6;
    fillRow(3);
    scrollUp(scrollImmediate);
    const std::array<std::int32_t, 8> expected{0, 1, 2, 4, 5, 6, 3, 7};
    for (std::size_t row = 0; row < 8; ++row) EXPECT_EQ(rowMap[row], expected[row]) << row;
    EXPECT_EQ(line(6), std::string(80, ' '));
    EXPECT_EQ(lineOnRow(6).usedLength, -1);
    EXPECT_EQ(scrollbackTop, 501);  // only a region from the top row feeds the scrollback
}

TEST_F(ScreenOperations, ScrollDownRotatesTheOtherWay) {
    regionTop = 3;
    regionBottom = 6;
    fillRow(6);
    scrollDown();
    const std::array<std::int32_t, 8> expected{0, 1, 2, 6, 3, 4, 5, 7};
    for (std::size_t row = 0; row < 8; ++row) EXPECT_EQ(rowMap[row], expected[row]) << row;
    EXPECT_EQ(line(3), std::string(80, ' '));
    EXPECT_EQ(scrollbackTop, 501);
}

TEST_F(ScreenOperations, TwentyThirdDeferredScrollFlushes) {
    setScrollRect();
    headless::clearDrawCounts();
    for (int n = 1; n <= 22; ++n) {
        scrollUp(scrollDeferred);
        ASSERT_EQ(pendingScrolls, n);
    }
    EXPECT_EQ(headless::drawCounts().scroll, 0U);
    test::records.clear();
    headless::setRecording("draw", true);
    scrollUp(scrollDeferred);
    EXPECT_EQ(pendingScrolls, 0);
    EXPECT_EQ(headless::drawCounts().scroll, 1U);
    // 23 lines of 18 pixels (11 points, for a screen 768 pixels high) in one scroll
    EXPECT_EQ(test::recorded("draw", "op").front(), "scroll");
    EXPECT_EQ(test::recorded("draw", "dy").front(), "-414");
}

TEST_F(ScreenOperations, LinesThatScrollAwayUndrawnAreInTheScrollbackWhole) {
    cursorTo(0, 0);
    pend("gone");
    putBuf();
    scrollUp(scrollDeferred);
    const ScreenLine& stored = virtualLine(500);
    EXPECT_EQ(stored.usedLength, 3);
    EXPECT_EQ(std::string(stored.text.begin(), stored.text.begin() + 4), "gone");
}

TEST_F(ScreenOperations, ALineThatWasErasedSinceItWasDrawnIsShorterInTheScrollbackToo) {
    for (const std::string region : {"", "\x1b[1;20r"}) {  // the quick way, and any other
        host(
            "\x1b"
            "c\x1b#8\x1b[2K" +
            region + "\x1b[24;1H\x1b[B\n");
        EXPECT_EQ(virtualLine(500).text[79], 'E') << region;
        EXPECT_EQ(virtualLine(500).usedLength, 0) << region;
    }
}

TEST_F(ScreenOperations, CursorLeftStopsAtColumnZero) {
    pend("ab");
    cursorLeft();
    EXPECT_EQ(at(), (std::pair{1, 0}));
    EXPECT_EQ(shown(0), "ab");
    cursorLeft();
    cursorLeft();
    EXPECT_EQ(at(), (std::pair{0, 0}));
}

TEST_F(ScreenOperations, ScrollRectFollowsTheRegion) {
    // 11 points on a screen 768 pixels high: cells of 9 x 18 pixels
    regionTop = 2;
    regionBottom = 9;
    setScrollRect();
    EXPECT_EQ(scrollRect, (PixelRect{0, 36, 720, 180}));
}

}  // namespace
}  // namespace qxterm::screen_operations_test
