// Where the cursor stands on the picture, and when it stands there.

#include <string>

#include "diag/error_trap.h"
#include "platform/headless/clock.h"
#include "platform/headless/user.h"
#include "platform/main_form.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/input_busy.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::cursor_test {
namespace {

class CursorOnThePicture : public test::TerminalTest {
protected:
    /// Column and row of each cell with a cursor, "12,3 " for column 12 in row 3.
    static std::string cursors() {
        if (headless::paintsWaiting) headless::deliverPaints();
        std::string found;
        for (int row = 0; row < 25; ++row) {
            for (int column = 0; column < 80; ++column) {
                if (cell(column, row).cursor())
                    found += std::to_string(column) + ',' + std::to_string(row) + ' ';
            }
        }
        return found;
    }
};

TEST_F(CursorOnThePicture, StandsWhereTheBlockEnds) {
    EXPECT_EQ(cursors(), "0,0 ");
    host("\x1b[7;13Habc");
    EXPECT_EQ(cursors(), "15,6 ");
    host("\x1b[1;40x");
    EXPECT_EQ(cursors(), "39,24 ");
}

TEST_F(CursorOnThePicture, BehindTheLastColumnItStandsOnIt) {
    host("\x1b[3;80HX");
    EXPECT_EQ(at(), (std::pair{80, 2}));
    EXPECT_EQ(cursors(), "79,2 ");
    EXPECT_EQ(shownCursorColumn(), 79);
    EXPECT_EQ(shownCursorRow(), 2);
    headless::uncover(picterm);
    EXPECT_EQ(cursors(), "79,2 ");
    host("\x1b[3;79H");
    EXPECT_EQ(cursors(), "78,2 ");
}

TEST_F(CursorOnThePicture, APaintOfOtherCellsLeavesItAlone) {
    host("\x1b[2;5H");
    picterm.invalidate({0, 10, 80, 5});
    EXPECT_EQ(cursors(), "4,1 ");
    picterm.invalidate({4, 1, 1, 1});
    EXPECT_EQ(cursors(), "4,1 ");
    picterm.invalidate({1, 4, 1, 1});
    EXPECT_EQ(cursors(), "4,1 ");
    host("\x1b[20;60H");
    EXPECT_EQ(cursors(), "59,19 ");
}

TEST_F(CursorOnThePicture, BlinksEachQuarterOfASecond) {
    host("\x1b[?12h\x1b[2;5H");
    for (int n = 0; n < 3; ++n) {
        EXPECT_EQ(cursors(), "4,1 ");
        headless::advance(250);
        EXPECT_EQ(cursors(), "");
        headless::advance(250);
    }
    // A block that is being interpreted has taken it away itself.
    inputBusy = -1;
    headless::advance(250);
    EXPECT_EQ(cursors(), "4,1 ");
    inputBusy = 0;
    headless::advance(250);
    EXPECT_EQ(cursors(), "");
    headless::uncover(picterm);
    EXPECT_EQ(cursors(), "") << "a repaint keeps it away until it is due";
    host("\x1b[?12l");
    EXPECT_EQ(cursors(), "4,1 ");
    headless::advance(1000);
    EXPECT_EQ(cursors(), "4,1 ");
}

TEST_F(CursorOnThePicture, BlinksWhileAnErrorOfTheInterpreterIsTold) {
    host("\x1b[?12h");
    planFault("processInput", 9);
    headless::queueAnswer(Answer::ok, [] {
        EXPECT_EQ(cursors(), "0,0 ");
        headless::advance(250);
        EXPECT_EQ(cursors(), "");
    });
    host("x");
    EXPECT_EQ(boxes().size(), 1U);
}

TEST_F(CursorOnThePicture, AnotherProgramsWindowStopsTheBlinking) {
    host("\x1b[?12h");
    headless::advance(250);
    EXPECT_EQ(cursors(), "");
    headless::deactivate(frmterm);
    headless::uncover(picterm);
    EXPECT_EQ(cursors(), "0,0 ");
    headless::advance(1000);
    EXPECT_EQ(cursors(), "0,0 ");
    headless::activate(frmterm);
    headless::advance(250);
    EXPECT_EQ(cursors(), "");
    host("\x1b[?12l");
    headless::deactivate(frmterm);
    headless::activate(frmterm);
    headless::advance(1000);
    EXPECT_EQ(cursors(), "0,0 ") << "the window alone starts no blinking";
}

// Blinking has taken it away when the window is left; a paint of other cells cannot draw it.
TEST_F(CursorOnThePicture, APaintThatDoesNotReachItLeavesNoSecondOne) {
    host("\x1b[?12h\x1b[2;5H");
    headless::advance(250);
    ASSERT_EQ(cursors(), "");
    headless::deactivate(frmterm);
    picterm.invalidate({0, 10, 80, 5});
    EXPECT_EQ(cursors(), "");
    host("\x1b[20;60H");
    EXPECT_EQ(cursors(), "59,19 ");
}

TEST_F(CursorOnThePicture, HiddenByTheHostItIsOnNoPaint) {
    host("\x1b[?25l");
    EXPECT_EQ(cursors(), "");
    headless::uncover(picterm);
    EXPECT_EQ(cursors(), "");
    host("abc\x1b[?25h");
    EXPECT_EQ(cursors(), "3,0 ");
}

}  // namespace
}  // namespace qxterm::cursor_test
