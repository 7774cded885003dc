#include <string>

#include "terminal/terminal_fixture.h"

namespace qxterm::attributes_test {
namespace {

using Attributes = test::TerminalTest;

TEST(PackAttr, IsFlagsPlus256TimesForegroundPlus4096TimesBackground) {
    EXPECT_EQ(packAttr(0, 7, 0), 1792);
    EXPECT_EQ(packAttr(63, 7, 7), 63 + 1792 + 28672);
    EXPECT_EQ(packAttr(0, 0, 0), 0);
    EXPECT_EQ(packAttr(2, 1, 4), 2 + 256 + 16384);
    EXPECT_EQ(packAttr(255, 15, 7), 32767);
}

TEST(PackAttr, BackgroundOfEightOverflows) {
    EXPECT_THROW((void)packAttr(0, 7, 8), RunTimeError);
    EXPECT_THROW((void)packAttr(0, 0, 8), RunTimeError);
    EXPECT_THROW((void)packAttr(255, 16, 7), RunTimeError);
}

TEST(PackAttr, UnpackGivesTheTripleBack) {
    for (std::int16_t flags = 0; flags < 64; ++flags) {
        for (std::int16_t fg = 0; fg < 8; ++fg) {
            for (std::int16_t bg = 0; bg < 8; ++bg) {
                const AttrTriple triple = unpackAttr(packAttr(flags, fg, bg));
                ASSERT_EQ(triple.flags, flags);
                ASSERT_EQ(triple.fg, fg);
                ASSERT_EQ(triple.bg, bg);
            }
        }
    }
}

TEST_F(Attributes, EightColoursAtFullIntensity) {
    const std::array<std::array<int, 3>, 8> expected{{{0, 0, 0},
                                                      {255, 0, 0},
                                                      {0, 255, 0},
                                                      {255, 255, 0},
                                                      {0, 0, 255},
                                                      {255, 0, 255},
                                                      {0, 255, 255},
                                                      {255, 255, 255}}};
    for (std::size_t index = 0; index < 8; ++index) {
        EXPECT_EQ(colourTable[index].red, expected[index][0]) << index;
        EXPECT_EQ(colourTable[index].green, expected[index][1]) << index;
        EXPECT_EQ(colourTable[index].blue, expected[index][2]) << index;
    }
}

TEST_F(Attributes, BlankLineIsTheTemplate) {
    for (const char c : blankLine.text) EXPECT_EQ(c, ' ');
    for (std::size_t k = 1; k <= 80; ++k) EXPECT_EQ(blankLine.attrs[k], 1792);
    EXPECT_EQ(blankLine.dirtyFirst, 0);
    EXPECT_EQ(blankLine.dirtyLast, -1);
    EXPECT_EQ(blankLine.selFirst, 0);
    EXPECT_EQ(blankLine.selLast, 0);
    EXPECT_EQ(blankLine.usedLength, -1);
    EXPECT_EQ(blankLine.lineFlags, 0);
}

// Colours of a cell with foreground 1 (red) on background 4 (blue) under all that exchanges them.
TEST_F(Attributes, TwoInversionsCancel) {
    host("\x1b[31;44mA\x1b[7mB");
    EXPECT_EQ(cell(0, 0).fg(), 1);
    EXPECT_EQ(cell(0, 0).bg(), 4);
    EXPECT_EQ(cell(1, 0).fg(), 4);
    EXPECT_EQ(cell(1, 0).bg(), 1);
    host("\x1b[?5h");
    EXPECT_EQ(cell(0, 0).fg(), 4);
    EXPECT_EQ(cell(0, 0).bg(), 1);
    EXPECT_EQ(cell(1, 0).fg(), 1);
    EXPECT_EQ(cell(1, 0).bg(), 4);
    host("\x1b[?5l");
    EXPECT_EQ(cell(0, 0).fg(), 1);
    EXPECT_EQ(cell(1, 0).fg(), 4);
}

TEST_F(Attributes, ColourIndexOfEightIsASubscriptErrorOfDoAttr) {
    doAttr(0, 8, 0);
    doAttr(16, 0, 8);  // reverse draws with the background
    EXPECT_EQ(faults(), "9 doAttr;9 doAttr;");
    doAttr(0, 0, 8);
    EXPECT_EQ(faults(), "9 doAttr;9 doAttr;");
}

TEST_F(Attributes, BoldIsAFontAndChangesNoColour) {
    host("\x1b[1;31mR\x1b[22mr");
    EXPECT_EQ(cell(0, 0).fg(), 1);
    EXPECT_EQ(cell(0, 0).style(), 2);  // bold
    EXPECT_EQ(cell(1, 0).fg(), 1);
    EXPECT_EQ(cell(1, 0).style(), 0);
}

TEST_F(Attributes, InvisibleTextIsStoredAsBlanksAndCannotComeBack) {
    host("a\x1b[8mSECRET\x1b[28mz");
    EXPECT_EQ(text(0), "a      z");
    EXPECT_TRUE(words(0, 1, 6, 32 + 1792));
    EXPECT_EQ(word(7, 0), 1792);
    EXPECT_EQ(shown(0), "a      z");
}

TEST(ColoursExist, AreEight) {
    EXPECT_TRUE(coloursExist(0, 0));
    EXPECT_TRUE(coloursExist(7, 7));
    for (const std::int16_t none : {std::int16_t{8}, std::int16_t{9}, std::int16_t{-1}}) {
        EXPECT_FALSE(coloursExist(none, 0)) << none;
        EXPECT_FALSE(coloursExist(0, none)) << none;
    }
}

}  // namespace
}  // namespace qxterm::attributes_test
