// The window against the records: whatever the user and the host do, exactly the marked cells, or those that
// a drag covers, stand inverted, and the text is that of the lines in view.

#include <random>
#include <tuple>

#include "platform/headless/clock.h"
#include "platform/headless/event_loop.h"
#include "platform/main_form.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/drawing.h"
#include "terminal/terminal_fixture.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"
#include "terminal/view/view_keys.h"

namespace qxterm::test::selection_window_test {
namespace {

/// First and last selected column of a line, last below first for none.
struct Columns {
    std::int32_t first = 0;
    std::int32_t last = -1;
};

class SelectionWindow : public TerminalTest {
protected:
    void TearDown() override {
        headless::yieldHook = nullptr;
        TerminalTest::TearDown();
    }

    static std::int32_t twipsX(std::int32_t column) {
        return (column * charWidth + charWidth / 2) * g_iTwipsX;
    }
    static std::int32_t twipsY(std::int32_t row) { return (row * lineHeight + lineHeight / 2) * g_iTwipsY; }
    static void down(std::int32_t column, std::int32_t row) {
        picterm.onMouseDown.raise(1, 0, twipsX(column), twipsY(row));
    }
    static void move(std::int32_t column, std::int32_t row) {
        picterm.onMouseMove.raise(1, 0, twipsX(column), twipsY(row));
    }
    static void up(std::int32_t column, std::int32_t row) {
        picterm.onMouseUp.raise(1, 0, twipsX(column), twipsY(row));
    }
    static void drag(std::int32_t column, std::int32_t row, std::int32_t toColumn, std::int32_t toRow) {
        down(column, row);
        move(toColumn, toRow);
        up(toColumn, toRow);
    }

    /// What a drag covers on a line: from the earlier point to the cell before the later one.
    static Columns covered(std::int32_t number) {
        if (selEndCol == -1) return {};
        auto from = std::pair{selStartRow, selStartCol};
        auto to = std::pair{selEndRow, selEndCol};
        if (to < from) std::swap(from, to);
        from.first = std::min(from.first, 524);
        to.first = std::min(to.first, 524);
        if (number < from.first || number > to.first) return {};
        return {number == from.first ? from.second : 0, number == to.first ? to.second - 1 : 79};
    }
    static Columns marked(const ScreenLine& record) {
        if ((record.lineFlags & 4) == 0) return {};
        return {record.selFirst, record.selLast};
    }

    /// The first cell that is not as it should be, empty when all are.
    static std::string differences() {
        if (headless::paintsWaiting) headless::deliverPaints();
        for (int row = 0; row < 24; ++row) {
            const std::int32_t number = vscterm.value() + row;
            const ScreenLine& record = virtualLine(number);
            const Columns inverted = dragging() ? covered(number) : marked(record);
            for (int column = 0; column < 80; ++column) {
                const PictureCell look = cell(column, row);
                const char stored =
                    column <= record.usedLength ? record.text[static_cast<std::size_t>(column)] : ' ';
                const bool selected = column >= inverted.first && column <= inverted.last;
                const bool shownSelected = look.selected();
                if (look.text() == stored && shownSelected == selected) continue;
                return "row " + std::to_string(row) + " column " + std::to_string(column) + ": '" +
                       look.text() + "' for '" + stored + (selected ? "' selected" : "' not selected");
            }
        }
        return {};
    }
};

/// A user and a host that do anything, in any order, also in the middle of a block.
class Players {
public:
    explicit Players(unsigned seed) : random_{seed} {}

    std::string play() {
        switch (below(12)) {
            case 0:
            case 1:
            case 2: return mouse();
            case 3: return output("lines", lines());
            case 4: return output("cursor", "\x1b[" + number(24) + ';' + number(80) + 'H' + word());
            case 5: return output("line feeds", "\x1b[24;1H" + std::string(1 + below(30), '\n'));
            case 6:
                return output("index", below(2) == 0 ? "\x1b[1;1H\x1bM"
                                                     : "\x1b[24;1H\x1b"
                                                       "D");
            case 7:
                return output("lines moved", "\x1b[" + number(24) + ";1H\x1b[" + number(4) + "LM"[below(2)]);
            case 8: return output("erased", "\x1b[" + number(24) + ';' + number(80) + "H\x1b[K");
            case 9: return region();
            case 10: return view();
            default: return uncover();
        }
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    std::string number(unsigned most) { return std::to_string(1 + below(most)); }
    std::string word() { return std::string(1 + below(9), static_cast<char>('a' + below(26))); }
    std::string lines() {
        std::string all;
        for (unsigned n = 1 + below(40); n > 0; --n) all += word() + ' ' + word() + "\r\n";
        return all;
    }

    std::string mouse() {
        const auto x = (static_cast<std::int32_t>(below(84)) - 2) * charWidth * g_iTwipsX;
        const auto y = (static_cast<std::int32_t>(below(30)) - 3) * lineHeight * g_iTwipsY;
        switch (below(5)) {
            case 0: picterm.onMouseDown.raise(1, 0, x, y); return "mouse down";
            case 1: picterm.onMouseUp.raise(1, 0, x, y); return "mouse up";
            default: picterm.onMouseMove.raise(1, 0, x, y); return "mouse move";
        }
    }
    std::string output(const char* what, const std::string& block) {
        inBlock() = below(3) == 0 ? this : nullptr;
        headless::yieldHook = inBlock() == nullptr ? nullptr : +[] {
            if (inBlock()->below(4) == 0) (void)inBlock()->mouse();
            if (inBlock()->below(8) == 0) (void)inBlock()->view();
            if (inBlock()->below(8) == 0) inBlock()->uncoverPart();
        };
        processInput(block);
        headless::yieldHook = nullptr;
        return what;
    }
    std::string region() {
        const unsigned top = 1 + below(20);
        return output("region", below(3) == 0 ? std::string{"\x1b[1;24r"}
                                              : "\x1b[" + std::to_string(top) + ';' +
                                                    std::to_string(top + 1 + below(24 - top)) + 'r');
    }
    std::string view() {
        switch (below(3)) {
            case 0: headless::advance(50 * static_cast<std::int64_t>(below(10))); return "time";
            case 1: vscterm.userMoved(liveView, false); return "live view";
            default:
                vscterm.userMoved(static_cast<std::int16_t>(501 - below(60)), false);
                return "scrolled view";
        }
    }
    std::string uncover() {
        switch (below(3)) {
            case 0: headless::uncover(picterm); return "uncovered";
            case 1: uncoverPart(); return "a part uncovered";
            default: removeSelection(); return "removed";
        }
    }
    void uncoverPart() {
        const auto within = [this](std::int32_t limit) {
            return static_cast<std::int32_t>(below(static_cast<unsigned>(limit)));
        };
        const std::int32_t column = within(screenColumns);
        const std::int32_t row = within(screenRows);
        picterm.invalidate({column, row, 1 + within(screenColumns - column), 1 + within(screenRows - row)});
    }
    static Players*& inBlock() {
        static Players* players = nullptr;
        return players;
    }

    std::mt19937 random_;
};

TEST_F(SelectionWindow, ShowsTheMarksWhateverHappens) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Players players{seed};
        std::string story;
        for (int step = 0; step < 120; ++step) {
            story += players.play() + ", ";
            const std::string wrong = differences();
            ASSERT_EQ(wrong, "") << "seed " << seed << ", step " << step << ": " << story;
        }
        ASSERT_TRUE(boxes().empty()) << "seed " << seed << ": " << boxes().front();
        stopDrag();
        host(
            "\x1b[1;24r\x1b"
            "c");
    }
}

TEST_F(SelectionWindow, EveryCornerInBothDirections) {
    for (int row = 0; row < 24; ++row) {
        host("\x1b[" + std::to_string(row + 1) + ";1H" + std::string(80, static_cast<char>('a' + row)));
    }
    const std::string full(80, 'a');
    const auto corners = std::array{std::pair{0, 0}, std::pair{80, 0}, std::pair{0, 23}, std::pair{80, 23}};
    for (const auto& [column, row] : corners) {
        for (const auto& [toColumn, toRow] : corners) {
            drag(column, row, toColumn, toRow);
            EXPECT_EQ(differences(), "");
            if (row == toRow && column == toColumn) {
                EXPECT_EQ(getSel(), column == 80 ? std::string(1, static_cast<char>('a' + row)) + "\r\n" : "")
                    << "a press behind the last column starts on it, the release ends behind it";
            }
        }
    }
    drag(80, 23, 0, 0);
    std::string all;
    for (int row = 0; row < 24; ++row) {
        if (row > 0) all += "\r\n";
        all += std::string(row < 23 ? 80 : 79, static_cast<char>('a' + row));
    }
    EXPECT_EQ(getSel(), all) << "the start is held at column 79, which is not part of it";
}

TEST_F(SelectionWindow, CopiesEveryStoredLine) {
    // 524 lines of 80 characters: 500 in the scrollback, 24 on the screen
    std::string expected;
    for (int n = 0; n < 524; ++n) {
        const std::string text(80, static_cast<char>('A' + n % 26));
        host((n == 0 ? "" : "\r\n") + text);
        expected += text + "\r\n";
    }
    ASSERT_EQ(scrollbackTop, 1);
    vscterm.userMoved(1, false);
    down(0, 0);
    vscterm.userMoved(liveView, false);
    move(80, 23);
    EXPECT_EQ(differences(), "");
    up(80, 23);
    EXPECT_EQ(differences(), "");
    EXPECT_EQ(getSel(), expected);
    removeSelection();
    for (const std::int16_t top : {std::int16_t{1}, std::int16_t{250}, std::int16_t{490}, liveView}) {
        vscterm.userMoved(top, false);
        EXPECT_EQ(differences(), "");
    }
}

TEST_F(SelectionWindow, MarksLeaveTheScrollbackWithTheirLine) {
    host("first\r\n");
    drag(0, 0, 5, 0);
    ASSERT_EQ(getSel(), "first");
    host("\x1b[24;1H" + std::string(500, '\n'));
    EXPECT_EQ(getSel(), "first");
    host("\n");  // the 501st line takes its place
    EXPECT_EQ(getSel(), "");
    vscterm.userMoved(1, false);
    EXPECT_EQ(differences(), "");
}

// The place above the view is on line 0, which holds nothing: the columns that it names are none of line 1.
TEST_F(SelectionWindow, ADragAboveTheOldestLineTakesThatLineWhole) {
    std::string lines;
    for (int n = 0; n < 600; ++n) lines += "0123456789\r\n";
    host(lines);
    ASSERT_EQ(scrollbackTop, 1);
    vscterm.userMoved(1, false);
    down(4, 3);
    move(7, -2);
    EXPECT_EQ((std::pair{selEndCol, selEndRow}), (std::pair{7, 0}));
    up(7, -2);
    EXPECT_EQ(getSel(), "0123456789\r\n0123456789\r\n0123456789\r\n0123");
    EXPECT_EQ(differences(), "");
}

// Line 501 is the first one in view when the button is let go, and the selection ends in front of it.
TEST_F(SelectionWindow, ASelectionThatEndsAboveTheViewIsShownWhenTheViewComesToIt) {
    std::string lines;
    for (int n = 0; n < 60; ++n) lines += "0123456789\r\n";
    host(lines);
    vscterm.userMoved(495, false);
    down(5, 2);
    vscterm.userMoved(liveView, false);
    move(0, 0);
    up(0, 0);
    ASSERT_EQ((std::pair{selStartCol, selStartRow}), (std::pair{5, 497}));
    ASSERT_EQ((std::pair{selEndCol, selEndRow}), (std::pair{0, 501}));
    vscterm.userMoved(495, false);
    EXPECT_EQ(differences(), "");
    EXPECT_TRUE(cell(5, 2).selected());
}

TEST_F(SelectionWindow, NobodyIsToldOfDrawingWhileNothingIsSelected) {
    host("text");
    EXPECT_FALSE(drawingWatched);
    drag(0, 0, 3, 0);
    EXPECT_TRUE(drawingWatched);
    removeSelection();
    EXPECT_FALSE(drawingWatched);
}

// Down by three lines, three rows are drawn; by a whole page, nothing that stands there can be kept.
TEST_F(SelectionWindow, TheViewDrawsTheRowsThatComeIntoIt) {
    std::string lines;
    for (int n = 0; n < 60; ++n) lines += "0123456789\r\n";
    host(lines);
    headless::clearDrawCounts();
    vscterm.userMoved(498, false);
    EXPECT_EQ(headless::drawCounts().scroll, 1U);
    EXPECT_EQ(headless::drawCounts().text, 3U);
    headless::clearDrawCounts();
    vscterm.userMoved(498 - pageRows, false);
    EXPECT_EQ(headless::drawCounts().scroll, 0U);
    EXPECT_EQ(headless::drawCounts().text, 24U);
}

// The status row is below all that can be selected.
TEST_F(SelectionWindow, MarkingByKeysBeginsOnThePageAlsoFromTheStatusRow) {
    host("\x1b[24;1Hlast\x1b[1;3xx");
    ASSERT_EQ(at(), (std::pair{3, statusRow}));
    viewKey(36, shiftState::control);
    EXPECT_EQ((std::pair{selStartCol, selStartRow}), (std::pair{3, 524}));
    EXPECT_EQ(getSel(), "t");
    EXPECT_EQ(differences(), "");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(SelectionWindow, AutoScrollStopsAtBothEnds) {
    host("\x1b[24;1H" + std::string(30, '\n'));
    ASSERT_EQ(scrollbackTop, 471);
    down(3, 5);
    picterm.onMouseMove.raise(1, 0, twipsX(3), -1);
    headless::advance(10'000);
    EXPECT_EQ(vscterm.value(), 471);
    EXPECT_EQ((std::pair{selEndCol, selEndRow}), (std::pair{0, 471}));
    EXPECT_EQ(differences(), "");
    move(3, 24);
    headless::advance(10'000);
    EXPECT_EQ(vscterm.value(), liveView);
    EXPECT_EQ((std::pair{selEndCol, selEndRow}), (std::pair{80, 524}));
    EXPECT_EQ(differences(), "");
    up(3, 24);
    EXPECT_EQ(differences(), "");
    headless::advance(1'000);
    EXPECT_EQ(vscterm.value(), liveView);
}

// 30 lines were fed on the last row: 30 lie above the view, at 471 to 500.
TEST_F(SelectionWindow, AutoScrollEndsWithTheButton) {
    host("\x1b[24;1H" + std::string(30, '\n'));
    down(3, 5);
    picterm.onMouseMove.raise(1, 0, twipsX(3), -1);
    headless::advance(50);
    EXPECT_EQ(vscterm.value(), 500);
    headless::advance(49);
    EXPECT_EQ(vscterm.value(), 500);
    headless::advance(1);
    EXPECT_EQ(vscterm.value(), 499);
    picterm.onMouseUp.raise(1, 0, twipsX(3), -1);
    headless::advance(1'000);
    EXPECT_EQ(vscterm.value(), 499);
    EXPECT_EQ(differences(), "");
    // Moving the mouse on does not hold it up.
    down(3, 5);
    for (int n = 0; n < 10; ++n) {
        picterm.onMouseMove.raise(1, 0, twipsX(3), -1 - n);
        headless::advance(10);
    }
    EXPECT_EQ(vscterm.value(), 497);
    picterm.onMouseUp.raise(1, 0, twipsX(3), -1);
    vscterm.userMoved(499, false);
    // A press starts without it.
    down(3, 5);
    headless::advance(1'000);
    EXPECT_EQ(vscterm.value(), 499);
    up(3, 5);
}

TEST_F(SelectionWindow, ARepaintKeepsTheMarksOfALineOfSeveralColours) {
    host("abc\x1b[31mdef\x1b[1mghi\x1b[m");
    drag(1, 0, 8, 0);
    ASSERT_EQ(getSel(), "bcdefgh");
    EXPECT_EQ(differences(), "");
    headless::uncover(picterm);
    EXPECT_EQ(differences(), "");
}

}  // namespace
}  // namespace qxterm::test::selection_window_test
