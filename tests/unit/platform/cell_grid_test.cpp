#include "platform/headless/cell_grid.h"

#include <gtest/gtest.h>

#include <string>

namespace qxterm::test {
namespace {

using headless::CellGrid;
namespace cellStyle = headless::cellStyle;

constexpr std::int32_t width = 8;
constexpr std::int32_t height = 16;

PixelRect cells(int column, int row, int columns, int rows = 1) {
    return {column * width, row * height, (column + columns) * width, (row + rows) * height};
}

std::string rowText(const CellGrid& grid, int row) {
    std::string text;
    for (int column = 0; column < CellGrid::columns; ++column) text += grid.at(column, row).text;
    return text;
}

class CellGridTest : public testing::Test {
protected:
    void text(int column, int row, std::string_view what, TextFont font = TextFont::normal,
              bool bold = false) {
        grid.drawText(cells(column, row, static_cast<int>(what.size())), what, nullptr, {font, bold, 3, 4});
    }
    CellGrid grid;
};

TEST_F(CellGridTest, TextTakesItsCellsWithColoursAndStyle) {
    text(78, 24, "ab", TextFont::normal, true);
    EXPECT_EQ(grid.at(78, 24).text, 'a');
    EXPECT_EQ(grid.at(79, 24).text, 'b');
    EXPECT_EQ(grid.at(79, 24).fg, 3);
    EXPECT_EQ(grid.at(79, 24).bg, 4);
    EXPECT_EQ(grid.at(79, 24).style, cellStyle::bold);
    EXPECT_FALSE(grid.at(77, 24).drawn);
    EXPECT_EQ(grid.at(77, 24).fg, 7);
}

TEST_F(CellGridTest, TextIsCutOffAtItsAreaAndFillsTheWholeOfIt) {
    grid.drawText(cells(2, 1, 3), "abcdef", nullptr, {TextFont::normal, false, 1, 2});
    grid.drawText(cells(10, 1, 4), "x", nullptr, {TextFont::normal, false, 1, 2});
    EXPECT_EQ(rowText(grid, 1).substr(0, 16), "  abc     x     ");
    EXPECT_TRUE(grid.at(13, 1).drawn);
    EXPECT_EQ(grid.at(13, 1).bg, 2);
    EXPECT_FALSE(grid.at(14, 1).drawn);
}

TEST_F(CellGridTest, AdvancesPlaceEachCharacter) {
    const std::int32_t advances[] = {16, 8, 8};
    grid.drawText(cells(0, 0, 4), "abc", advances, {TextFont::normal, false, 7, 0});
    EXPECT_EQ(rowText(grid, 0).substr(0, 5), " abc ");  // a 16 pixels wide cell has its middle in column 1
}

TEST_F(CellGridTest, GlyphsOfTheTerminalFontShowTheStoredCharacter) {
    text(0, 0, "\x10\x1e\x1f", TextFont::terminal);
    EXPECT_EQ(grid.at(0, 0).text, 'j');
    EXPECT_EQ(grid.at(1, 0).text, 'x');
    EXPECT_EQ(grid.at(2, 0).text, '\x1f');
    EXPECT_EQ(grid.at(0, 0).style, cellStyle::terminalFont);
}

TEST_F(CellGridTest, AFilledCellIsABlankWithForeground7) {
    text(0, 0, "abc");
    grid.fill(cells(1, 0, 1), 7);
    EXPECT_EQ(rowText(grid, 0).substr(0, 3), "a c");
    EXPECT_EQ(grid.at(1, 0).fg, 7);
    EXPECT_EQ(grid.at(1, 0).bg, 7);
    EXPECT_TRUE(grid.at(1, 0).drawn);
}

TEST_F(CellGridTest, AreasOutsideTheWindowAreLeftOut) {
    grid.fill({-40, -40, 3 * width, 2 * height}, 5);
    grid.fill({79 * width, 24 * height, 9999, 9999}, 6);
    grid.fill({5, 5, 5, 90}, 3);
    EXPECT_EQ(grid.at(2, 1).bg, 5);
    EXPECT_FALSE(grid.at(3, 1).drawn);
    EXPECT_EQ(grid.at(79, 24).bg, 6);
}

TEST_F(CellGridTest, InvertingTwiceIsNothingAndDrawingOverEndsIt) {
    grid.invert(cells(4, 2, 2), Inversion::selection);
    grid.invert(cells(5, 2, 1), Inversion::selection);
    EXPECT_EQ(grid.at(4, 2).style, cellStyle::inverted);
    EXPECT_EQ(grid.at(5, 2).style, 0);
    text(4, 2, "a");
    EXPECT_EQ(grid.at(4, 2).style, 0);
}

TEST_F(CellGridTest, TheCursorIsKeptApartFromTheSelection) {
    grid.invert(cells(4, 2, 1), Inversion::selection);
    grid.invert({4 * width, 3 * height - 2, 5 * width, 3 * height},
                Inversion::cursor);  // an underline cursor
    EXPECT_EQ(grid.at(4, 2).style, cellStyle::inverted);
    EXPECT_EQ(grid.cursor(), (std::pair{4, 2}));
    grid.invert(cells(4, 2, 1), Inversion::cursor);
    EXPECT_FALSE(grid.cursor().has_value());
}

TEST_F(CellGridTest, ALineUnderlinesTheCellsThatItCrosses) {
    text(0, 0, "abcd");
    grid.drawLine(1 * width, 14, 2 * width);
    EXPECT_EQ(grid.at(0, 0).style, 0);
    EXPECT_EQ(grid.at(1, 0).style, cellStyle::underlined);
    EXPECT_EQ(grid.at(2, 0).style, cellStyle::underlined);
    EXPECT_EQ(grid.at(3, 0).style, 0);
    EXPECT_EQ(grid.at(1, 0).text, 'b');
}

TEST_F(CellGridTest, ScrollingUpMovesCellsWithTheirLookAndExposesTheBottom) {
    text(0, 1, "one");
    text(0, 2, "two");
    text(0, 4, "below");
    grid.invert(cells(1, 2, 1), Inversion::cursor);
    grid.scroll(cells(0, 1, 80, 3), -height);  // rows 1 to 3
    EXPECT_EQ(rowText(grid, 1).substr(0, 5), "two  ");
    EXPECT_EQ(grid.cursor(), (std::pair{1, 1}));
    EXPECT_FALSE(grid.at(0, 3).drawn);
    EXPECT_EQ(rowText(grid, 4).substr(0, 5), "below");
}

TEST_F(CellGridTest, ScrollingDownExposesTheTop) {
    text(0, 0, "zero");
    text(0, 1, "one");
    grid.scroll(cells(0, 0, 80, 24), 2 * height);
    EXPECT_FALSE(grid.at(0, 0).drawn);
    EXPECT_FALSE(grid.at(0, 1).drawn);
    EXPECT_EQ(rowText(grid, 2).substr(0, 5), "zero ");
    EXPECT_EQ(rowText(grid, 3).substr(0, 5), "one  ");
}

TEST_F(CellGridTest, ScrollingByTheWholeAreaOrMoreLeavesNothing) {
    text(0, 0, "zero");
    text(0, 23, "last");
    grid.scroll(cells(0, 0, 80, 24), -30 * height);
    EXPECT_FALSE(grid.at(0, 0).drawn);
    EXPECT_FALSE(grid.at(0, 23).drawn);
}

TEST_F(CellGridTest, AClipKeepsDrawingToItsAreas) {
    text(0, 0, "aaaa");
    const std::vector<PixelRect> areas{cells(1, 0, 1), cells(3, 0, 1)};
    grid.setClip(&areas);
    text(0, 0, "bbbb");
    grid.setClip(nullptr);
    EXPECT_EQ(rowText(grid, 0).substr(0, 4), "abab");
}

TEST_F(CellGridTest, OtherMeasuresLeaveNothingDrawn) {
    text(0, 0, "a");
    grid.setMeasures(width, height);
    EXPECT_TRUE(grid.at(0, 0).drawn);
    grid.setMeasures(7, 15);
    EXPECT_FALSE(grid.at(0, 0).drawn);
    grid.drawText({7 * 79, 15 * 24, 7 * 80, 15 * 25}, "z", nullptr, {TextFont::normal, false, 7, 0});
    EXPECT_EQ(grid.at(79, 24).text, 'z');
}

}  // namespace
}  // namespace qxterm::test
