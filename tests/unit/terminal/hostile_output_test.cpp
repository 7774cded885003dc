#include <algorithm>
#include <ctime>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include "diag/block_time.h"
#include "platform/headless/event_loop.h"
#include "terminal/commands/function_keys.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/input_busy.h"
#include "terminal/random_output.h"
#include "terminal/terminal_fixture.h"
#include "terminal/view/selection.h"

namespace qxterm::hostile_output_test {
namespace {

/// Host output that means harm: whatever it is and however it is cut, the program goes on, nothing is sent,
/// and what comes next is shown rightly.
class HostileOutput : public test::TerminalTest, public ::testing::WithParamInterface<std::size_t> {
protected:
    void TearDown() override {
        headless::yieldHook = nullptr;
        forgetHarmless();
        expectSoundTerminal();
        expectOrdinaryOutputIsShown();
        TerminalTest::TearDown();
    }
    /// Nothing was recorded but error boxes and the bell: nothing is sent, and no file, program or clipboard
    /// is reached.
    static void forgetHarmless() {
        for (const auto& record : test::records) {
            EXPECT_TRUE(record.kind == "box" || record.kind == "beep") << record.kind;
        }
        test::records.clear();
    }
    static void play(std::string_view bytes) {
        for (std::size_t at = 0; at < bytes.size(); at += GetParam()) {
            const std::clock_t before = std::clock();
            host(bytes.substr(at, GetParam()));
            ASSERT_LT(std::clock() - before, test::longestBlock) << "block at " << at;
        }
    }

    /// What holds of the terminal's memory between two blocks, whatever has arrived.
    static void expectSoundTerminal() {
        EXPECT_EQ(inputBusy, 0);
        EXPECT_TRUE(curRow >= 0 && curRow <= statusRow) << curRow;
        EXPECT_TRUE(regionTop >= 0 && regionTop < regionBottom && regionBottom < pageRows);
        EXPECT_TRUE(pendingCount >= 0 && pendingCount <= static_cast<std::int16_t>(pendingCapacity));
        EXPECT_EQ(pendingScrolls, 0);
        EXPECT_EQ(recordsToDraw, 0);
        EXPECT_TRUE(scrollbackTop >= 1 && scrollbackTop <= liveView) << scrollbackTop;
        EXPECT_LE(lastChar.size(), 1U);
        auto rows = rowMap;
        std::sort(rows.begin(), rows.end());
        for (std::size_t row = 0; row < rows.size(); ++row) {
            EXPECT_EQ(static_cast<std::size_t>(rows[row]), row) << "rowMap holds each record once";
        }
        for (std::int32_t row = 0; row < screenRows; ++row) {
            for (std::int32_t column = 0; column < screenColumns; ++column) {
                const auto value = static_cast<std::uint16_t>(word(column, row));
                ASSERT_TRUE((value & 0xFFU) < 64 && ((value >> 8U) & 15U) < 8 && (value >> 12U) < 8) << value;
            }
        }
    }

    /// The unexpected errors so far, each kind once: number and routine.
    static std::set<std::string> differentFaults() {
        std::set<std::string> different;
        std::istringstream all{faults()};
        for (std::string fault; std::getline(all, fault, ';');) different.insert(fault);
        return different;
    }

    static void expectOrdinaryOutputIsShown() {
        // An unfinished key definition takes what follows as its label and string, an announced 32767 bytes
        // at the most; what is left unfinished after that is ended by a reset.
        host(std::string(32800, '.'));
        host(
            "\x1b"
            "c\x1b"
            "c\x1b[2p\x1b[?7h\x1b[?11l");
        const std::size_t faultsBefore = test::countOf("box");
        host("\x1b[1;1Hall is\x1b[3;5H\x1b[1mwell\x1b[m");
        // An erase leaves the characters of column 79 in the store; after a fill with E the next text draws
        // its row to the end and shows them again.
        EXPECT_EQ(trimmedRight(line(0).substr(0, 79)), "all is");
        EXPECT_EQ(trimmedRight(line(2).substr(0, 79)), "    well");
        EXPECT_EQ(trimmedRight(shown(0).substr(0, 79)), "all is");
        EXPECT_EQ(trimmedRight(shown(2).substr(0, 79)), "    well");
        EXPECT_EQ(at(), (std::pair{8, 2}));
        EXPECT_EQ(test::countOf("box"), faultsBefore);
    }
};

INSTANTIATE_TEST_SUITE_P(Blocks, HostileOutput, ::testing::Values(1, 7, 4096));

TEST_P(HostileOutput, EveryFinalWithExtremeParameters) {
    const std::string overflow =
        "An unexpected error 6 has occurred\r\nroutine: doEscBracket\r\nmessage: Overflow";
    const std::string digits(10000, '9');
    for (int final = 32; final < 127; ++final) {
        const char f = static_cast<char>(final);
        if ((f >= '0' && f <= '9') || f == ';' || f == '?') continue;
        for (const std::string mark : {"", "?"}) {
            for (const std::string parameters : {"0", "32767", "0;0", "32767;32767", "0;32767", "32767;0"}) {
                play("\x1b[" + mark + parameters + f);
            }
        }
        for (const std::string& number : {std::string{"32768"}, digits}) {
            play(
                "\x1b"
                "c\x1b"
                "c\x1b[?7h");
            forgetHarmless();
            play("\x1b[" + number + f);
            ASSERT_EQ(boxes(), std::vector<std::string>{overflow}) << f;
        }
    }
}

TEST_P(HostileOutput, MegabyteOfSeparators) {
    play("\x1b[" + std::string(1000000, ';'));
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(carryOver.size(), 1000002U);
    play("5H");
    EXPECT_EQ(at(), (std::pair{0, 4}));
    EXPECT_EQ(carryOver, "");
}

TEST_P(HostileOutput, UnfinishedSequenceOfMoreThanAMebibyteIsLost) {
    play("\x1b[" + std::string((1 << 20) - 2, ';'));
    EXPECT_EQ(carryOver.size(), std::size_t{1} << 20U);
    EXPECT_EQ(test::countOf("box"), 0U);
    play(";");
    EXPECT_EQ(boxes(),
              std::vector<std::string>{"Out of memory.  Please close other applications and try again"});
    EXPECT_EQ(carryOver, "");
    play("\rx");
    EXPECT_EQ(text(curRow).substr(0, 1), "x");
}

TEST_P(HostileOutput, MegabyteOfParameters) {
    std::string bytes = "\x1b[";
    for (int n = 0; n < 250000; ++n) bytes += "31;";
    play(bytes + "m");
    EXPECT_EQ(curFg, 1);
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, RepeatFirstOfAll) {
    play("\x1b[b\x1b[5b\x1b[0b\x1b[32767b");
    EXPECT_EQ(faults(), "");
    EXPECT_LE(curCol, 80);
}

TEST_P(HostileOutput, RepeatManyTimesInABlock) {
    std::string bytes = "abc";
    for (int n = 0; n < 400; ++n) bytes += "\x1b[" + std::to_string(n % 9) + "bx";
    play(bytes);
    bytes.clear();
    for (int n = 0; n < 700; ++n) bytes += "\x1b[b";
    play(bytes);
    play("\r\n" + std::string(79, 'r') + "\x1b[32767b\x1b[32767b\x1b[b");
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, KeyDefinitionThatStops) {
    play("\x1b[1;32767;0qLABEL___label___" + std::string(32766, 's'));
    EXPECT_EQ(fkeyStrings[0][0], "\x1bOc");
    play("!");
    EXPECT_EQ(fkeyStrings[0][0], std::string(32766, 's') + "!");
    play("\x1b[2;32767;0q");
    EXPECT_EQ(test::countOf("box"), 0U);
}

TEST_P(HostileOutput, KeyDefinitionsWithOddLengths) {
    // "-" is a final of its own, so a negative length is no key definition: "5q" is text
    play("\x1b[1;-5q\x1b[1;q0123456789abcdef");
    EXPECT_EQ(fkeyStrings[0][0], "\x1bOc");
    EXPECT_EQ(text(0), "5q");
    // A million definitions; in small blocks, which take longer, twenty thousand. Of each eight one is
    // stored: there is no such bank for five, and no such key, hence no label either, for two.
    std::string eight = "\x1b[1;1;0q0123456789ABCDEFS";
    for (int n = 0; n < 5; ++n) eight += "\x1b[1;1;2q................T";
    eight += "\x1b[9;1;0q\x1b[0;1;0q";
    std::string thousand;
    for (int n = 0; n < 125; ++n) thousand += eight;
    for (int n = 0; n < (GetParam() == 4096 ? 1000 : 20); ++n) play(thousand);
    EXPECT_EQ(std::string(fkeyLabels[0][0].begin(), fkeyLabels[0][0].end()), "0123456789ABCDEF");
    EXPECT_EQ(fkeyStrings[0][0], "S");
    EXPECT_EQ(fkeyStrings[1][0], "\x1bOc");
    EXPECT_EQ(text(0), "5q");
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, RegionsOfEveryKind) {
    for (int top = 0; top <= 26; ++top) {
        for (int bottom = 0; bottom <= 26; ++bottom) {
            play("\x1b[" + std::to_string(top) + ';' + std::to_string(bottom) + "r");
            ASSERT_GE(regionTop, 0);
            ASSERT_LT(regionTop, regionBottom);
            ASSERT_LE(regionBottom, 23);
            for (const int row : {1, 12, 24, 25, 32767}) {
                play("\x1b[" + std::to_string(row) +
                     "Hx\x1bM\x1b"
                     "D\n\x1b[99A\x1b[99B\x1b[L\x1b[3M\x1b[?6h\x1b[" +
                     std::to_string(row) + ";99Hy\x1b[?6l");
                ASSERT_GE(curRow, 0);
                ASSERT_LE(curRow, 23);
            }
        }
    }
    EXPECT_EQ(faults(), "");
}

/// A command on the status row, and the column that it takes the cursor to. Columns count from 0, and 80 is
/// behind the last one.
struct OutsideCommand {
    const char* bytes;
    int (*columnBehind)(int column);
    const char* faultLeftOfTheLine;  ///< number and routine, "" for none
};

constexpr auto stays = [](int column) { return column; };
constexpr auto toFirst = [](int) { return 0; };
constexpr auto back = [](int column) { return std::max(column - 1, 0); };
constexpr auto backTo8 = [](int column) { return column < 0 ? 0 : (column - 1) / 8 * 8; };

const OutsideCommand outsideCommands[] = {
    {"ext", stays, ""},
    {"\x1b[@", stays, "5 insChars"},
    {"\x1b[5@", stays, "5 insChars"},
    {"\x1b[32767@", stays, "5 insChars"},
    {"\x1b[P", stays, "5 delChars"},
    {"\x1b[32767P", stays, "5 delChars"},
    {"\x1b[K", stays, ""},
    {"\x1b[1K", stays, ""},
    {"\x1b[2K", stays, ""},
    {"\x1b[J", stays, ""},
    {"\x1b[1J", stays, ""},
    {"\t", [](int column) { return column < 0 ? 0 : 80; }, ""},
    {"\b", back, ""},
    {"\x1b[D", back, ""},
    {"\x1b[Z", backTo8, ""},
    {"\x1b[9Z", [](int column) { return std::max(backTo8(column) - 64, 0); }, ""},
    {"\x1b[C", [](int column) { return column < 0 ? 0 : 79; }, ""},
    // nothing was saved on the status row: the cursor goes to the corner of the page
    {"\x1b"
     "7\x1b"
     "8",
     toFirst, ""},
    {"\x1bM", stays, ""},
    {"\x1b"
     "D",
     stays, ""},
    {"\n", stays, ""},
    {"\x1b[9b", stays, ""},
    {"\x1b[L", stays, ""},
};

/// What is told of text at a column. With wrapping, text behind the line goes to column 0; without it, the
/// first character goes one column to the left. In insert mode it is the insertion that fails.
std::string faultOfText(int column, bool wrap, bool insert) {
    if (column < 0) return insert ? "5 insChars" : "5 putBuf";
    if (wrap || column <= 80) return "";
    return insert ? "9 insChars" : "9 putBuf";
}

TEST_P(HostileOutput, ColumnsFarOutsideTheLine) {
    for (const bool wrap : {true, false}) {
        for (const bool insert : {false, true}) {
            for (const int column : {-1, 80, 81, 99, 32766}) {
                for (const OutsideCommand& command : outsideCommands) {
                    forgetHarmless();
                    play("\x1b[1;1Hq" + std::string{wrap ? "\x1b[?7h" : "\x1b[?7l"} +
                         (insert ? "\x1b[4h" : "\x1b[4l") + "\x1b[1;" + std::to_string(column + 1) + "x" +
                         command.bytes + "t");
                    play("\x1b[H\x1b[4l");  // text that could not be stored is tried once more
                    std::set<std::string> expected{column < 0 ? command.faultLeftOfTheLine : "",
                                                   faultOfText(command.columnBehind(column), wrap, insert)};
                    expected.erase("");
                    EXPECT_EQ(differentFaults(), expected)
                        << "column " << column << ", " << command.bytes << (wrap ? ", wrap" : "")
                        << (insert ? ", insert" : "");
                }
            }
        }
    }
}

TEST_P(HostileOutput, UnknownSequenceCarriedForAMegabyte) {
    play("\x1b[5n");
    std::string bytes;
    for (int n = 0; n < 2000; ++n) bytes += std::string(499, 'u') + "\r";
    play(bytes);
    EXPECT_EQ(carryOver, "\x1b[5n");
    EXPECT_EQ(text(curRow).substr(0, 5), "uuuuu");
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, EscapeOrIacAtTheEndOfEveryBlock) {
    const std::size_t blocks = std::min<std::size_t>(20000, 1'000'000 / GetParam());
    for (const char last : {'\x1b', '\xff'}) {
        std::string block(GetParam(), 'E');
        block.back() = last;
        for (std::size_t n = 0; n < blocks; ++n) {
            play(block);
            ASSERT_LE(carryOver.size(), 3U);
        }
        play("\r");
    }
    play("\xf1\xf1");
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, ManyShortLinesWhileTheUserScrollsAndSelects) {
    static int turn;
    turn = 0;
    headless::yieldHook = [] {
        ++turn;
        if (turn % 7 == 0) vscterm.setValue(std::max<std::int16_t>(vscterm.minimum(), 450));
        if (turn % 11 == 0) picterm_MouseDown(1, 0, 500, 500);
        if (turn % 13 == 0) picterm_MouseMove(1, 0, 9000, -300);
        if (turn % 17 == 0) picterm_MouseUp(1, 0, 5000, 4000);
    };
    std::string lines;
    for (int n = 0; n < 20000; ++n) lines += "l" + std::to_string(n) + "\r\n";
    play(lines);
    headless::yieldHook = nullptr;
    EXPECT_EQ(text(22), "l19999");
    EXPECT_EQ(scrollbackTop, 1);
    EXPECT_EQ(faults(), "");
    removeSelection();
}

TEST_P(HostileOutput, TwoMegabytesWithoutALineEnd) {
    play(std::string(GetParam() == 1 ? 200000 : 2000000, 'n'));
    EXPECT_EQ(curRow, 23);
    EXPECT_EQ(scrollbackTop, 1);
    EXPECT_EQ(faults(), "");
}

TEST_P(HostileOutput, RandomBytes) {
    std::mt19937 random{77};
    std::string bytes(GetParam() == 1 ? 60000 : 300000, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    play(bytes);
    EXPECT_LE(carryOver.size(), std::size_t{1} << 20U);
    play(test::RandomOutput{5}.bytes(50000));
}

// Whatever arrives in the yield behind a line feed waits for the running block's end, in order.
TEST_P(HostileOutput, BlocksThatArriveBehindEachLineFeed) {
    static int arrived;
    arrived = 0;
    headless::yieldHook = [] {
        if (arrived < 500) {
            ++arrived;
            processInput("\x1b[");
            processInput("1m");
            processInput(std::string(1, static_cast<char>('a' + arrived % 26)));
        }
    };
    std::string bytes;
    for (int n = 0; n < 1000; ++n) bytes += "\x1b[31mline\x1b[m\r\n";
    play(bytes);
    headless::yieldHook = nullptr;
    EXPECT_EQ(arrived, 500);
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(inputBusy, 0);
}

TEST_P(HostileOutput, BeepsReverseScreenAndBarByTheThousand) {
    std::string bytes;
    for (int n = 0; n < 2000; ++n) bytes += "\a\x1b[?5h\x1b[?13l\x1b[?5l\x1b[?13h";
    play(bytes);
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(screenMode, 0);
    EXPECT_EQ(screenBackIndex, 0);
}

}  // namespace
}  // namespace qxterm::hostile_output_test
