// The short ways of ordinary output: what they lead to, worked out by hand, and that the general ways lead to
// the same. A failure that is planned for no routine at all closes the short ways.

#include <string>
#include <vector>

#include "diag/error_trap.h"
#include "terminal/random_output.h"
#include "terminal/terminal_fixture.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_marks.h"

namespace qxterm::short_ways_test {
namespace {

using Play = void (*)();

class ShortWays : public test::TerminalTest {
protected:
    void TearDown() override {
        clearPlannedFaults();
        TerminalTest::TearDown();
    }

    static std::string describe(const ScreenLine& line) {
        std::string all{line.text.begin(), line.text.end()};
        for (std::size_t k = 1; k <= 80; ++k) {
            if (k == 1 || line.attrs[k] != line.attrs[k - 1])
                all += ' ' + std::to_string(k - 1) + ':' + std::to_string(line.attrs[k]);
        }
        for (const int field :
             {line.dirtyFirst, line.dirtyLast, line.selFirst, line.selLast, line.usedLength, line.lineFlags})
            all += ' ' + std::to_string(field);
        return all;
    }

    /// Everything that output leaves behind: records, scrollback, cursor, window and number of drawing calls.
    static std::vector<std::string> outcome() {
        std::vector<std::string> all;
        std::string numbers;
        for (const int number :
             {int{curCol}, int{curRow}, int{curAttr}, int{curFg}, int{curBg}, int{screenMode},
              int{scrollbackTop}, int{scrollbackTurns}, int{pendingCount}, int{pendingScrolls},
              static_cast<int>(recordsToDraw), int{vscterm.value()}, int{vscterm.minimum()}})
            numbers += std::to_string(number) + ' ';
        all.push_back(numbers + lastChar + '|' + carryOver);
        for (std::int32_t row = 0; row < screenRows; ++row)
            all.push_back(std::to_string(rowMap[static_cast<std::size_t>(row)]) + ' ' +
                          describe(lineOnRow(row)));
        for (std::int32_t position = scrollbackTop; position <= scrollbackLines; ++position)
            all.push_back(describe(virtualLine(position)));
        for (int row = 0; row < screenRows; ++row) {
            std::string cells;
            for (int column = 0; column < screenColumns; ++column) {
                const PictureCell look = cell(column, row);
                cells += look.text();
                for (const int part : {int{look.fg()}, int{look.bg()}, int{look.style()}, int{look.drawn()},
                                       int{look.cursor()}})
                    cells += std::to_string(part);
            }
            all.push_back(cells);
        }
        const headless::DrawCounts& counts = headless::drawCounts();
        for (const auto count : {counts.text, counts.characters, counts.fill, counts.clear, counts.invert,
                                 counts.line, counts.scroll})
            all.push_back(std::to_string(count));
        return all;
    }

    void begin() {
        TearDown();
        SetUp();
        headless::clearDrawCounts();
    }

    /// Plays with the short ways closed, then with them open; the program is left as the second has left it.
    template <class Played>
    void expectSameBothWays(Played&& play) {
        begin();
        planFault("no routine", errors::overflow);
        play();
        const auto general = outcome();
        begin();
        play();
        EXPECT_EQ(outcome(), general);
    }

    static std::string lines(int first, int last) {
        std::string all;
        for (int number = first; number <= last; ++number) all += "line " + std::to_string(number) + "\r\n";
        return all;
    }
    static std::string stored(std::int32_t position) {
        const ScreenLine& line = virtualLine(position);
        return trimmedRight({line.text.begin(), line.text.end()});
    }
};

TEST_F(ShortWays, LinesOfTextScrollThePage) {
    expectSameBothWays([] { host(lines(1, 30)); });
    // The cursor stands on row 23 after the 23rd line end; the seven behind it have scrolled.
    EXPECT_EQ(at(), (std::pair{0, 23}));
    EXPECT_EQ(text(0), "line 8");
    EXPECT_EQ(text(22), "line 30");
    EXPECT_EQ(text(23), "");
    EXPECT_EQ(shown(0), "line 8");
    EXPECT_EQ(shown(22), "line 30");
    EXPECT_EQ(scrollbackTop, 494);
    EXPECT_EQ(stored(494), "line 1");
    EXPECT_EQ(stored(500), "line 7");
    EXPECT_EQ(virtualLine(500).usedLength, 5);
    EXPECT_EQ(lastChar, "0");
}

TEST_F(ShortWays, AFullScrollbackKeepsTheLastLines) {
    expectSameBothWays([] { host(lines(1, 1100)); });
    // 1100 lines end, 23 of them stand on the page.
    EXPECT_EQ(scrollbackTop, 1);
    EXPECT_EQ(stored(500), "line 1077");
    EXPECT_EQ(stored(1), "line 578");
}

TEST_F(ShortWays, LinesThatWereNotDrawnKeepTheirLengthInTheScrollback) {
    // Twice the page in one block: nothing of the first lines is ever drawn.
    host(lines(1, 60));
    EXPECT_EQ(stored(500), "line 37");
    EXPECT_EQ(virtualLine(500).usedLength, 6);
    EXPECT_EQ(virtualLine(500 - 36).usedLength, 5);
}

TEST_F(ShortWays, LinesScrollInARegion) {
    expectSameBothWays([] { host("\x1b[3;6r\x1b[3;1H" + lines(1, 9)); });
    EXPECT_EQ(at(), (std::pair{0, 5}));
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(text(2), "line 7");
    EXPECT_EQ(text(4), "line 9");
    EXPECT_EQ(text(5), "");
    EXPECT_EQ(text(6), "");
    EXPECT_EQ(scrollbackTop, 501);
}

TEST_F(ShortWays, ARegionAtTheTopFeedsTheScrollback) {
    expectSameBothWays([] { host("\x1b[20;1Hbelow\x1b[1;4r" + lines(1, 9)); });
    EXPECT_EQ(text(0), "line 7");
    EXPECT_EQ(text(2), "line 9");
    EXPECT_EQ(text(19), "below");
    EXPECT_EQ(scrollbackTop, 495);
    EXPECT_EQ(stored(500), "line 6");
}

TEST_F(ShortWays, OriginModePlacesTheLinesInTheRegion) {
    expectSameBothWays([] { host("\x1b[5;8r\x1b[?6h\x1b[4;3H" + lines(1, 2)); });
    // Row 4 of the region is its last: each line end scrolls.
    EXPECT_EQ(text(4), "");
    EXPECT_EQ(text(5), "  line 1");
    EXPECT_EQ(text(6), "line 2");
    EXPECT_EQ(text(7), "");
    EXPECT_EQ(at(), (std::pair{0, 7}));
}

TEST_F(ShortWays, OutsideTheRegionTheLastRowIsOverwritten) {
    expectSameBothWays([] { host("\x1b[5;8r\x1b[24;1H" + lines(1, 12)); });
    // The page's last row is not the region's: the cursor stays on it.
    EXPECT_EQ(text(23), "line 12");
    EXPECT_EQ(text(22), "");
    EXPECT_EQ(at(), (std::pair{0, 23}));
}

TEST_F(ShortWays, InsertModeMovesWhatStandsThere) {
    expectSameBothWays([] { host("\x1b[2;1Hworld\x1b[2;1H\x1b[4hhello \r\nnext\r\n"); });
    EXPECT_EQ(text(1), "hello world");
    EXPECT_EQ(text(2), "next");
    EXPECT_EQ(shown(1), "hello world");
}

TEST_F(ShortWays, ConcealedLinesAreBlank) {
    expectSameBothWays([] { host("\x1b[8msecret\r\n\x1b[28mplain\r\n"); });
    EXPECT_EQ(text(0), "");
    EXPECT_EQ(lineOnRow(0).usedLength, 5);
    EXPECT_EQ(text(1), "plain");
}

TEST_F(ShortWays, TheStatusRowNeverScrolls) {
    expectSameBothWays([] { host("\x1b[1;5x" + lines(1, 3)); });
    EXPECT_EQ(at(), (std::pair{0, 24}));
    EXPECT_EQ(line(24).substr(0, 10), "line 3ne 1");
    EXPECT_EQ(text(23), "");
    EXPECT_EQ(scrollbackTop, 501);
}

TEST_F(ShortWays, ColumnsOutsideTheStatusRowStayFaults) {
    host("\x1b[1;0xab\r\n");
    EXPECT_EQ(faults(), "5 putBuf;");
    begin();
    // Without wrap "a" stands at column 88 and waits for one more try, at the carriage return with "b".
    host("\x1b[?7l\x1b[1;90xab\r\n");
    EXPECT_EQ(faults(), "9 putBuf;9 putBuf;");
    EXPECT_EQ(text(24), "");
}

TEST_F(ShortWays, SuspendedDrawingStoresLinesAndDrawsNone) {
    expectSameBothWays([] { host("\x1b[?10h" + lines(1, 30)); });
    EXPECT_EQ(text(22), "line 30");
    EXPECT_EQ(shown(22), "");
    EXPECT_EQ(headless::drawCounts().text, 0U);
    host("\x1b[?10l");
    EXPECT_EQ(shown(22), "line 30");
}

TEST_F(ShortWays, LinesThatReachTheRightEdge) {
    const std::string full(80, 'f');
    const std::string more(81, 'm');
    const auto play = [&] {
        host(full + "\r\n" + more + "\r\n" + full);
        host("\r\n");
        host(full + "x\r\n\x1b[?7h" + more + "\r\nend\r\n");
    };
    expectSameBothWays(play);
    EXPECT_EQ(line(0), full);
    EXPECT_EQ(line(1), std::string(80, 'm'));
    EXPECT_EQ(text(2), "m");
    EXPECT_EQ(line(3), full);
    EXPECT_EQ(line(4), full);
    EXPECT_EQ(text(5), "x");
    EXPECT_EQ(line(6), std::string(80, 'm'));
    EXPECT_EQ(text(7), "m");
    EXPECT_EQ(text(8), "end");
}

TEST_F(ShortWays, WithoutWrapTheLastColumnIsOverwritten) {
    expectSameBothWays([] { host("\x1b[?7l" + std::string(79, 'a') + "bcd\r\nend\r\n"); });
    EXPECT_EQ(line(0), std::string(79, 'a') + 'd');
    EXPECT_EQ(text(1), "end");
}

TEST_F(ShortWays, TextThatWaitsIsPartOfTheLine) {
    // The bell lies between two runs and stores nothing.
    expectSameBothWays([] { host("ab\acd\r\nnext"); });
    EXPECT_EQ(text(0), "abcd");
    EXPECT_EQ(text(1), "next");
}

TEST_F(ShortWays, MarksGoWithTheirLines) {
    const auto play = [] {
        host(lines(1, 10));
        markLines(2, liveView + 1, 3, liveView + 1);
        showSel();
        host(lines(11, 24));
        host("over\r\n");
    };
    expectSameBothWays(play);
    // 25 line ends: the first two lines have scrolled, "line 2" with its mark to position 500.
    EXPECT_EQ(stored(500), "line 2");
    EXPECT_EQ(virtualLine(500).lineFlags & lineFlag::selected, lineFlag::selected);
    EXPECT_EQ(virtualLine(500).selFirst, 2);
    EXPECT_EQ(virtualLine(500).selLast, 3);
    for (std::int32_t row = 0; row < screenRows; ++row)
        EXPECT_EQ(lineOnRow(row).lineFlags & lineFlag::selected, 0) << row;
}

TEST_F(ShortWays, AScrolledBackViewReturnsBeforeTheFirstLine) {
    const auto play = [] {
        host(lines(1, 100));
        vscterm.setValue(460);
        host(lines(101, 102));
    };
    expectSameBothWays(play);
    EXPECT_EQ(vscterm.value(), liveView);
    EXPECT_EQ(shown(22), "line 102");
    EXPECT_EQ(shown(0), "line 80");
}

TEST_F(ShortWays, CutsBetweenTextAndLineEndChangeNothing) {
    for (const std::size_t length : {1U, 2U, 3U, 5U, 8U}) {
        begin();
        hostInBlocks(lines(1, 30), length);
        EXPECT_EQ(text(22), "line 30") << length;
        EXPECT_EQ(stored(500), "line 7") << length;
        EXPECT_EQ(at(), (std::pair{0, 23})) << length;
    }
}

// Forms of sequences on the border of what is ordinary: in the middle of a block, and at its end.
TEST_F(ShortWays, SequencesOfEveryForm) {
    const std::vector<std::string> sequences{"H",
                                             ";H",
                                             "5H",
                                             "5;H",
                                             ";5H",
                                             "5;7H",
                                             "05;007H",
                                             "00005;7H",
                                             "0;0H",
                                             "24;80H",
                                             "25;81H",
                                             "9999;9999H",
                                             "32767;32767H",
                                             "5;7;9H",
                                             "?5;7H",
                                             "5?H",
                                             "5;?H",
                                             "m",
                                             "0m",
                                             "1;4m",
                                             "31;42m",
                                             "38m",
                                             "48;5m",
                                             "7;5;27m",
                                             "22m",
                                             "100m",
                                             "9999m",
                                             "10000m",
                                             "32767m",
                                             "1;;4m",
                                             ";1m",
                                             "1;2;3;4;5;6;7;8m",
                                             "1;2;3;4;5;6;7;8;31m",
                                             "30;31;32;33;34;35;36;37m",
                                             "39;49m",
                                             "5;7f",
                                             "2J",
                                             "3C",
                                             "7z"};
    for (const std::string& sequence : sequences) {
        const auto inTheMiddle = [&] {
            host("\x1b[10;10H\x1b[1;36mab\x1b[" + sequence + "cd\x1b[Hef\r\n" + std::string(60, '.'));
        };
        const auto atTheEnd = [&] {
            host("\x1b[10;10H\x1b[1;36mab\x1b[" + sequence);
            host("cd");
        };
        SCOPED_TRACE(sequence);
        expectSameBothWays(inTheMiddle);
        expectSameBothWays(atTheEnd);
    }
}

TEST_F(ShortWays, ANumberThatLeavesSixteenBitsStaysAFault) {
    host("\x1b[32768;1Hx" + std::string(60, '.'));
    EXPECT_EQ(faults(), "6 doEscBracket;");
}

TEST_F(ShortWays, RenditionsShowAsTheySay) {
    const std::string rest(60, '.');
    expectSameBothWays([&] { host("\x1b[31;44mA\x1b[7mB\x1b[27;1mC\x1b[4mD\x1b[22;39mE\x1b[mF" + rest); });
    EXPECT_EQ(cell(0, 0).fg(), 1);
    EXPECT_EQ(cell(0, 0).bg(), 4);
    EXPECT_EQ(cell(1, 0).fg(), 4);  // exchanged
    EXPECT_EQ(cell(1, 0).bg(), 1);
    EXPECT_EQ(word(2, 0), 4 * 4096 + 1 * 256 + 2);      // bold red on blue
    EXPECT_EQ(word(3, 0), 4 * 4096 + 1 * 256 + 2 + 4);  // underlined as well
    EXPECT_EQ(word(4, 0), 4 * 4096 + 7 * 256);          // no flags, white on blue
    EXPECT_EQ(word(5, 0), 7 * 256);
    EXPECT_EQ(headless::drawCounts().line, 1U);
}

TEST_F(ShortWays, OutputOfEveryKind) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const std::string bytes = test::RandomOutput{seed}.bytes(6000) + lines(1, 5);
        SCOPED_TRACE(seed);
        expectSameBothWays([&] { hostInBlocks(bytes, 1024); });
    }
}

// A planned failure is met by the routine that it is planned for, once, however short the way past it is
// else: in a few characters, and in output that is long enough for each short way.
TEST_F(ShortWays, PlannedFailuresAreMetByName) {
    const std::string rest(60, '.');
    const std::string few = "a\r\nb\r\n\x1b[31mc\x1b[5;5Hd";
    const std::string much = lines(30, 36) + "\x1b[31mc" + rest + "\x1b[5;5Hd" + rest + "\r\n" + rest + rest;
    for (const std::string routine : {"processInput", "doEsc", "doEscBracket", "flushBuf", "putBuf",
                                      "lineFeed", "scrollUp", "insBuf", "lineOut", "doAttr"}) {
        for (const std::string& output : {few, much}) {
            begin();
            host(lines(1, 24));
            planFault(routine, errors::overflow);
            host(output);
            host("e\r\n");
            EXPECT_EQ(faults(), "6 " + routine + ";") << output.size();
        }
    }
}

}  // namespace
}  // namespace qxterm::short_ways_test
