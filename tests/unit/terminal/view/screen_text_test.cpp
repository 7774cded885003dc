#include "terminal/view/screen_text.h"

#include <gmock/gmock.h>

#include "platform/headless/picture_box.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/terminal_fixture.h"
#include "terminal/view/view_keys.h"

namespace qxterm::test::screen_text_test {
namespace {

class ScreenText : public TerminalTest {
protected:
    static std::string row(std::size_t number) { return readScreen().rows[number]; }
    static void repaint() {
        picterm.refresh();
        headless::deliverPaints();
    }
    static std::optional<std::pair<int, int>> place() {
        const auto at = placeOnScreen();
        if (!at) return std::nullopt;
        return std::pair{at->column, at->row};
    }
};

using Place = std::optional<std::pair<int, int>>;

TEST_F(ScreenText, RowsEndWithTheirLastCharacter) {
    host("\x1b[2;3Htwo  words\x1b[1m bold \x1b[m  ");
    EXPECT_EQ(row(1), "  two  words bold");
    EXPECT_EQ(row(0), "");
}

TEST_F(ScreenText, TheStatusRowIsTheLast) {
    host("\x1b[1;5xstatus\x1b[1;1Hpage");
    EXPECT_EQ(row(0), "page");
    EXPECT_EQ(row(24), "    status");
}

TEST_F(ScreenText, LineDrawingIsBlank) {
    host("\x0elqqwqk\x0f name \x0ex AB x\x0f");
    EXPECT_EQ(row(0), "       name   AB");
}

TEST_F(ScreenText, TextInTheColourOfItsBackgroundIsNotRead) {
    host("user \x1b[31;41msecret\x1b[m end");
    EXPECT_EQ(row(0), "user        end");
    host("\r\n\x1b[8mconcealed\x1b[m.");
    EXPECT_EQ(row(1), "         .");
}

TEST_F(ScreenText, BlinkingTextIsThereInBothPhases) {
    host("an \x1b[5malarm \x0eq\x0f!\x1b[m and \x1b[5;31;41msecret\x1b[m.");
    const std::string lit = row(0);
    EXPECT_EQ(lit, "an alarm  ! and       .");
    setTextBlinkOff(true);
    repaint();
    ASSERT_EQ(shown(0), "an          and       .") << "the phase in which it is not seen";
    EXPECT_EQ(row(0), lit);
}

TEST_F(ScreenText, TheViewIsWhatIsShown) {
    for (int n = 0; n < 30; ++n) host("line " + std::to_string(n) + "\r\n");
    EXPECT_EQ(row(0), "line 7");
    vscterm.setValue(vscterm.minimum());
    EXPECT_EQ(row(0), "line 0");
    EXPECT_EQ(row(23), "line 23");
}

TEST_F(ScreenText, SelectedColumnsOfARow) {
    host("some text");
    viewKey(36, 2);  // at the cursor, column 9
    viewKey(36, 3);
    viewKey(36, 3);
    const ScreenReading reading = readScreen();
    EXPECT_EQ(reading.selected[0].first, 7);
    EXPECT_EQ(reading.selected[0].last, 9);
    EXPECT_TRUE(reading.selected[1].none());
}

TEST_F(ScreenText, PlaceIsTheCursors) {
    host("\x1b[5;12H");
    EXPECT_EQ(place(), Place({11, 4}));
    host("\x1b[3;80Hx");  // behind the last column
    EXPECT_EQ(place(), Place({79, 2}));
}

TEST_F(ScreenText, PlaceIsTheMarksWhileAMarkingByKeysIsInView) {
    host("text\r\nmore");
    viewKey(33, 2);
    EXPECT_EQ(place(), Place({4, 1}));
    viewKey(33, 2);
    EXPECT_EQ(place(), Place({4, 0}));
    viewKey(36, 7);
    EXPECT_EQ(place(), Place({4, 0})) << "a key without meaning";
    viewKey(36, 5);
    EXPECT_EQ(place(), Place({0, 0}));
    viewKey(45, 4);
    EXPECT_EQ(place(), Place({4, 1})) << "back at the cursor";
}

TEST_F(ScreenText, NoPlaceWithoutACursor) {
    host("\x1b[?25l");
    EXPECT_EQ(place(), Place{});
    host("\x1b[?25h");
    EXPECT_NE(place(), Place{});
    for (int n = 0; n < 30; ++n) host("\r\n");
    vscterm.setValue(vscterm.minimum());
    EXPECT_EQ(place(), Place{});
}

TEST_F(ScreenText, LocalPromptHasThePlaceAtItsEnd) {
    host("login: anna");
    localPromptShown = [] { return true; };
    host("\x1b[9;9H");
    EXPECT_EQ(place(), Place({11, 0}));
    localPromptShown = [] { return false; };
    EXPECT_EQ(place(), Place({8, 8}));
}

TEST_F(ScreenText, WhatBlinksBehindTheLocalPromptIsNotRead) {
    host("\x1b[5mhidden");
    localPromptShown = [] { return true; };
    picterm.clear({0, 0, 80, 1});
    for (const bool off : {false, true}) {
        setTextBlinkOff(off);
        EXPECT_EQ(row(0), "") << off;
    }
    localPromptShown = [] { return false; };
    EXPECT_EQ(row(0), "hidden");
}

TEST_F(ScreenText, OnlyBlinkingTextIsAddedInTheDarkPhase) {
    host("text \x1b[5malarm\x1b[m");
    setTextBlinkOff(true);
    picterm.clear({0, 0, 80, 25});
    EXPECT_EQ(row(0), "     alarm") << "the window shows nothing, and what does not blink stays so";
}

TEST_F(ScreenText, PlaceInTheFirstColumnAndOnTheStatusRow) {
    host("\x1b[5;1H");
    EXPECT_EQ(place(), Place({0, 4}));
    host("\x1b[1;5x");
    EXPECT_EQ(place(), Place({4, 24}));
    viewKey(33, 2);  // the status row cannot be marked: the mark begins above it
    EXPECT_EQ(place(), Place({4, 23}));
}

TEST_F(ScreenText, TheLocalPromptIsOnThePage) {
    host("\x1b[1;1xstatus\x1b[1;1Hlogin: ab");
    localPromptShown = [] { return true; };
    EXPECT_EQ(place(), Place({9, 0}));
    localPromptShown = [] { return false; };
}

}  // namespace
}  // namespace qxterm::test::screen_text_test
