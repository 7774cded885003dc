#include <array>
#include <string>
#include <tuple>

#include "terminal/commands/reset.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/text_look.h"
#include "terminal/model/attributes.h"
#include "terminal/model/input_busy.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::scrollback_map_test {
namespace {

/// The ring as it is defined: a table of 500 positions, shifted by one for each stored line.
struct PlainRing {
    std::array<int, 501> map{};
    int top = 501;
    PlainRing() {
        for (int i = 1; i <= 500; ++i) map[static_cast<std::size_t>(i)] = i;
    }
    int store() {
        if (top > 1) --top;
        const int saved = map[static_cast<std::size_t>(top)];
        for (int i = top + 1; i <= 500; ++i)
            map[static_cast<std::size_t>(i - 1)] = map[static_cast<std::size_t>(i)];
        map[500] = saved;
        return saved;
    }
};

using ScrollbackMap = test::TerminalTest;

TEST_F(ScrollbackMap, ReadsAsTheShiftedTableAtEveryPosition) {
    PlainRing plain;
    for (int stored = 0; stored <= 1600; ++stored) {
        ASSERT_EQ(scrollbackTop, plain.top) << stored;
        for (int position = 1; position <= 500; ++position) {
            ASSERT_EQ(scrollbackMap(position), plain.map[static_cast<std::size_t>(position)])
                << "position " << position << " after " << stored << " lines";
        }
        insBuf(0);
        plain.store();
        ASSERT_EQ(static_cast<int>(newestSlot()), plain.map[500]) << stored;
    }
}

TEST_F(ScrollbackMap, LinesStandInOrderTheNewestAt500) {
    for (int number = 1; number <= 1234; ++number) {
        const std::string name = std::to_string(number);
        screenLines[0].text.fill(' ');
        std::copy(name.begin(), name.end(), screenLines[0].text.begin());
        insBuf(0);
    }
    // the last 500 of 1234: 735 to 1234
    for (int position = 1; position <= 500; ++position) {
        const ScreenLine& stored = virtualLine(position);
        EXPECT_EQ(trimmedRight({stored.text.begin(), stored.text.end()}), std::to_string(734 + position));
    }
}

TEST_F(ScrollbackMap, MinimumOfTheScrollBarFollows) {
    EXPECT_EQ(vscterm.minimum(), 501);
    insBuf(3);
    EXPECT_EQ(scrollbackTop, 500);
    EXPECT_EQ(vscterm.minimum(), 500);
    for (int n = 1; n < 499; ++n) insBuf(3);
    EXPECT_EQ(scrollbackTop, 2);
    insBuf(3);
    EXPECT_EQ(scrollbackTop, 1);
    EXPECT_EQ(vscterm.minimum(), 1);
    insBuf(3);
    EXPECT_EQ(scrollbackTop, 1);
    EXPECT_EQ(vscterm.minimum(), 1);
}

// The copy keeps its fields; a part that was not drawn yet still counts as used.
TEST_F(ScrollbackMap, WholeRecordIsCopied) {
    ScreenLine& line = screenLines[7];
    line.text.fill('q');
    line.attrs.fill(300);
    line.selFirst = 3;
    line.selLast = 9;
    line.usedLength = 4;
    line.dirtyFirst = 2;
    line.dirtyLast = 41;
    line.lineFlags = 5;
    insBuf(7);
    const ScreenLine& stored = virtualLine(500);
    EXPECT_EQ(stored.text, line.text);
    EXPECT_EQ(stored.attrs, line.attrs);
    EXPECT_EQ(stored.selFirst, 3);
    EXPECT_EQ(stored.selLast, 9);
    EXPECT_EQ(stored.dirtyFirst, 2);
    EXPECT_EQ(stored.dirtyLast, 41);
    EXPECT_EQ(stored.lineFlags, 5);
    EXPECT_EQ(stored.usedLength, 41);
}

TEST_F(ScrollbackMap, NumbersOutsideAreSubscriptErrors) {
    EXPECT_THROW((void)scrollbackMap(501), RunTimeError);
    EXPECT_THROW((void)scrollbackMap(-1), RunTimeError);
    EXPECT_THROW((void)virtualLine(526), RunTimeError);
    EXPECT_NO_THROW((void)virtualLine(524));
    insBuf(25);
    EXPECT_EQ(faults(), "9 insBuf;");
}

TEST_F(ScrollbackMap, VirtualNumbersAbove500AreScreenRows) {
    host("\x1b[24;1Hlast\x1b[1;1Hfirst");
    EXPECT_EQ(&virtualLine(501), &lineOnRow(0));
    EXPECT_EQ(&virtualLine(524), &lineOnRow(23));
}

TEST(StartOfTheTerminal, TheScrollbackIsBlankBeforeAnythingElseHasRun) {
    blankLine = ScreenLine{};  // as in a program that has just been loaded
    startTerminal();
    for (const ScreenLine& line : scrollback) {
        EXPECT_EQ(line.text[screenColumns - 1], ' ');
        EXPECT_EQ(line.attrs[screenColumns], defaultAttr);
    }
    initAttributes();
}

// The program calls each of these once, on variables that nobody has changed yet.
TEST(StartOfTheTerminal, EachOfItsRoutinesPutsItsOwnValuesBack) {
    test::startTerminalAlone();
    processInput("\x1b[5;7Hx\x1b[1;31m");
    inputBusy = 1;
    recordsToDraw = 2;
    keepCursorAway(true);
    ASSERT_NE(cursorShown, 0);
    ASSERT_EQ(shownCursorColumn(), 7);
    startTerminal();
    EXPECT_EQ(inputBusy, 0);
    EXPECT_EQ(recordsToDraw, 0U);
    EXPECT_EQ(cursorShown, 0);
    EXPECT_EQ(cursorHiddenWord, 0);
    EXPECT_EQ(shownCursorColumn(), 0);
    EXPECT_EQ(shownCursorRow(), 0);

    blankLine = ScreenLine{};
    textLook.bold = true;
    initAttributes();
    EXPECT_EQ((std::tuple{curAttr, curFg, curBg}), (std::tuple{0, 7, 0}));
    EXPECT_EQ(textLook, TextLook{});
    EXPECT_EQ(blankLine.text[0], ' ');

    setCurrentAttr({1, 1, 1});
    resetScreen();
    EXPECT_EQ((std::tuple{curAttr, curFg, curBg}), (std::tuple{0, 7, 0}));
    test::resetTerminalAlone();
}

}  // namespace
}  // namespace qxterm::scrollback_map_test
