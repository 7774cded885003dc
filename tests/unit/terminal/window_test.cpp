#include <algorithm>
#include <random>
#include <string>
#include <string_view>

#include "platform/headless/event_loop.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::window_test {
namespace {

/// What is seen against what is stored. The window is a record of the drawing calls alone, so a line that was
/// not drawn, or was drawn in the wrong place, shows.
class Window : public test::TerminalTest {
protected:
    /// A cell as the records want it shown. fg counts where something of it is seen.
    struct Wanted {
        char text;
        int fg;
        int bg;
        std::uint8_t style;
    };

    static Wanted wanted(std::int32_t column, std::int32_t row) {
        const bool reverseScreen = (screenMode & 2) != 0;
        const std::int16_t value = word(column, row);
        if ((value & attrFlag::blink) != 0 && textBlinkOff) return {' ', 7, reverseScreen ? 7 : 0, 0};
        const char stored = line(row)[static_cast<std::size_t>(column)];
        const bool exchanged = ((value & attrFlag::reverse) != 0) != reverseScreen;
        const int fg = (value >> 8) & 15;
        const int bg = value >> 12;
        const bool lines = (value & attrFlag::shiftOut) != 0 &&
                           std::string_view{"jklmnopqrstuvwx"}.find(stored) != std::string_view::npos;
        const int style = (lines ? 1 : 0) | ((value & attrFlag::bold) != 0 ? 2 : 0) |
                          ((value & attrFlag::underline) != 0 ? 4 : 0);
        return {stored, exchanged ? bg : fg, exchanged ? fg : bg, static_cast<std::uint8_t>(style)};
    }

    /// Where the window does not show what the records hold, empty when it does.
    static std::string difference() {
        for (std::int32_t row = 0; row < screenRows; ++row) {
            for (std::int32_t column = 0; column < screenColumns; ++column) {
                const PictureCell look = cell(column, row);
                const Wanted wants = wanted(column, row);
                const int seenBack = look.drawn() ? look.bg() : screenBackIndex;
                // Of a blank only the line below it has a colour, and its weight is not seen; blanks that
                // were filled are white and plain.
                const bool blank = wants.text == ' ' && (wants.style & 4) == 0;
                const bool filled = blank && look.fg() == 7 && look.style() == 0;
                if (look.text() == wants.text && seenBack == wants.bg &&
                    (filled || !look.drawn() || (look.fg() == wants.fg && look.style() == wants.style))) {
                    continue;
                }
                return "row " + std::to_string(row) + ", column " + std::to_string(column) + ": '" +
                       look.text() + "' " + std::to_string(look.fg()) + " on " + std::to_string(seenBack) +
                       " style " + std::to_string(look.style()) + " for '" + wants.text + "' " +
                       std::to_string(word(column, row));
            }
        }
        const auto cursor = picterm.picture().cursor();
        if (!cursor) return "no cursor";
        if (*cursor != std::pair{std::min(curCol, 79), curRow}) return "the cursor is somewhere else";
        return {};
    }

    /// Ordinary full-screen output. An erase leaves the character of its last column in the store: it never
    /// ends on text here, which stops before column 79.
    class Output {
    public:
        explicit Output(unsigned seed) : random_{seed} {}
        std::string piece() {
            const auto number = [&](unsigned first, unsigned last) {
                return std::to_string(first + below(last - first + 1));
            };
            const std::string go = "\x1b[" + number(1, 24) + ';' + number(1, 40) + 'H';
            // A line that was shifted is redrawn at the cursor's row, so it has to be drawn before the cursor
            // leaves it.
            const std::string redraw = "\x1b[0A";
            switch (below(18)) {
                case 0: return "\r\n" + text();
                case 1: return "\r" + text();
                case 2: return "\r\n\n\n" + text();
                case 3: return go + "\x1b[4h" + text().substr(0, 2) + "\x1b[4l\r";
                case 4: return go + "\x1b[" + number(1, 3) + "@" + redraw + text().substr(0, 1);
                case 5: return go + "\x1b[" + number(1, 5) + "P" + redraw + text();
                case 6: return go + "\x1b[" + std::to_string(below(2) * 2) + "K";
                case 7: return go + "\x1b[" + number(0, 2) + "J" + text();
                case 8: return go + "\x1b[" + number(1, 5) + "LM"[below(2)] + text();
                case 9: return "\x1b[" + number(1, 12) + ';' + number(10, 24) + "r" + text();
                case 10: return std::string{"\x1b"} + "DEM"[below(3)] + "\r" + text();
                case 11: return "\x1b[?5" + std::string(1, "hl"[below(2)]);
                case 12: return "\x1b[1;" + number(1, 40) + "x" + text() + "\x1b[" + number(1, 24) + ";1H";
                case 13: return "\x1b[" + number(30, 37) + ';' + number(40, 47) + "m";
                case 14: return "\x1b[" + std::to_string(below(2) * 7) + ";" + std::to_string(below(2)) + "m";
                case 15:
                    return "\x1b[" + std::to_string(below(2) * 4) + ";" + std::to_string(below(2) * 5) + "m";
                case 16:
                    return "\x0e" + go + std::string(1 + below(9), "jklmnopqrstuvwxyzi "[below(19)]) +
                           text() + "\x0f";
                default: return go + text();
            }
        }

    private:
        unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
        std::string text() {
            std::string all(1 + below(20), ' ');
            for (char& c : all) c = static_cast<char>(32 + below(95));
            return all;
        }
        std::mt19937 random_;
    };
};

TEST_F(Window, ShowsWhatTheRecordsHoldAfterEveryBlock) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        TearDown();
        SetUp();
        host("\x1b[H");
        Output output{seed};
        for (int block = 0; block < 150; ++block) {
            std::string bytes;
            const unsigned pieces = 1 + seed % 7;
            for (unsigned n = 0; n < pieces; ++n) bytes += output.piece();
            if (block % 5 == 0) blinkTextStep();
            host(bytes);
            picterm.update();
            ASSERT_EQ(difference(), "")
                << "seed " << seed << ", block " << block << ": " << ::testing::PrintToString(bytes);
        }
    }
}

// "abcdef" with a red "e" stands on the first row; parts of it are drawn on the row below.
TEST_F(Window, EachCellOfAPartOfALineHasItsOwnLook) {
    for (std::int32_t first = 0; first <= 4; ++first) {
        host("\x1b[2J\x1b[1;1Habcd\x1b[31me\x1b[0mf\x1b[10;1H");
        drawCells(lineOnRow(0), first, 5, 1);
        EXPECT_EQ(shown(1), std::string(static_cast<std::size_t>(first), ' ') +
                                std::string{"abcdef"}.substr(static_cast<std::size_t>(first)));
        EXPECT_EQ(cell(4, 1).fg(), 1) << first;
        EXPECT_EQ(cell(5, 1).fg(), 7) << first;
    }
}

TEST_F(Window, ShowsTheLiveScreenAgainWhereverTheUserScrolled) {
    static unsigned turn;
    turn = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        TearDown();
        SetUp();
        headless::yieldHook = [] {
            if (++turn % 3 == 0) {
                const auto wanted = static_cast<std::int16_t>(501 - static_cast<int>(turn % 60));
                vscterm.setValue(std::max(vscterm.minimum(), wanted));
            }
        };
        Output output{seed};
        std::string bytes;
        for (int n = 0; n < 200; ++n) bytes += output.piece();
        host(bytes);
        host("\x1b[H");
        ASSERT_EQ(difference(), "") << "seed " << seed;
    }
    headless::yieldHook = nullptr;
}

// Another window moves about over this one while output flows: scrolls of the window wait at the time of the
// paint.
TEST_F(Window, ShowsTheRecordsWhereverPartsOfItAreUncovered) {
    static std::mt19937 place;
    for (unsigned seed = 1; seed <= 30; ++seed) {
        TearDown();
        SetUp();
        place.seed(seed);
        headless::yieldHook = [] {
            const auto below = [](int limit) {
                return static_cast<int>(place() % static_cast<unsigned>(limit));
            };
            const int column = below(screenColumns), row = below(screenRows);
            if (below(3) == 0)
                picterm.invalidate(
                    {column, row, 1 + below(screenColumns - column), 1 + below(screenRows - row)});
        };
        Output output{seed};
        for (int block = 0; block < 40; ++block) {
            std::string bytes;
            for (int n = 0; n < 8; ++n) bytes += output.piece();
            host(bytes);
            headless::deliverPaints();
            ASSERT_EQ(difference(), "")
                << "seed " << seed << ", block " << block << ": " << ::testing::PrintToString(bytes);
        }
    }
    headless::yieldHook = nullptr;
}

// Scrolled back by n lines and forward again in steps, the view shows line for line what was stored.
TEST_F(Window, ScrolledViewShowsTheStoredLines) {
    std::string lines;
    for (int n = 1; n <= 300; ++n) lines += "line " + std::to_string(n) + "\r\n";
    host(lines + "\x1b[1;1xstatus\x1b[24;1H");
    ASSERT_EQ(scrollbackTop, 501 - 277);  // 301 rows were begun, 24 of them are on the page
    for (const int value : {500, 495, 480, 224, 230, 253, 254, 278, 277, 450, 501, 224, 501}) {
        if (value % 2 == 0) {
            vscterm.setValue(static_cast<std::int16_t>(value));
        } else {
            vscterm.userMoved(static_cast<std::int16_t>(value), value % 3 == 0);  // also while it is dragged
        }
        for (int row = 0; row < 24; ++row) {
            const int number = value - 224 + row + 1;
            ASSERT_EQ(shown(row), number <= 300 ? "line " + std::to_string(number) : "")
                << value << ", " << row;
        }
        ASSERT_EQ(shown(24), "status");
    }
}

TEST_F(Window, RowsThatAScrollOnceExposedArePaintedLikeAnyOther) {
    host(std::string(24, '\n') + "below");  // one line scrolls off, and exposes row 23
    headless::deliverPaints();
    ASSERT_EQ(shown(23), "below");
    // Another window stood over that row alone.
    picterm.invalidate({0, 23, 80, 1});
    headless::deliverPaints();
    EXPECT_EQ(shown(23), "below");
}

TEST_F(Window, TheWheelMovesTheViewWithinItsLimits) {
    host(std::string(40, '\n'));  // 17 lines scroll off
    ASSERT_EQ(scrollbackTop, 501 - 17);
    picterm.onWheel.raise(static_cast<short>(-3));
    EXPECT_EQ(vscterm.value(), 498);
    picterm.onWheel.raise(static_cast<short>(-30));
    EXPECT_EQ(vscterm.value(), 484);
    picterm.onWheel.raise(static_cast<short>(3));
    EXPECT_EQ(vscterm.value(), 487);
    picterm.onWheel.raise(static_cast<short>(300));
    EXPECT_EQ(vscterm.value(), 501);
}

}  // namespace
}  // namespace qxterm::window_test
