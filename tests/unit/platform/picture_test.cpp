#include "platform/picture.h"

#include <gtest/gtest.h>

#include <string>

namespace qxterm::test::picture_test {
namespace {

constexpr TextLook look{.fg = 3, .bg = 4};

std::string rowText(const Picture& picture, int row) {
    std::string text;
    for (int column = 0; column < pictureColumns; ++column) text += picture.at(column, row).text();
    return text;
}

CellSet cells(const CellArea& area) {
    CellSet set;
    set.add(area);
    return set;
}

class PictureTest : public testing::Test {
protected:
    void text(int column, int row, std::string_view what, const TextLook& as = look) {
        picture.drawText(row, column, what, as);
    }
    Picture picture;
};

TEST_F(PictureTest, TextTakesItsCellsWithColoursAndWeight) {
    text(78, 24, "ab", {.fg = 3, .bg = 4, .bold = true});
    EXPECT_EQ(picture.at(78, 24).text(), 'a');
    EXPECT_EQ(picture.at(79, 24).text(), 'b');
    EXPECT_EQ(picture.at(79, 24).fg(), 3);
    EXPECT_EQ(picture.at(79, 24).bg(), 4);
    EXPECT_EQ(picture.at(79, 24).style(), 2);
    EXPECT_FALSE(picture.at(77, 24).drawn());
    EXPECT_EQ(picture.at(77, 24).fg(), 7);
    EXPECT_EQ(picture.at(77, 24).text(), ' ');
}

TEST_F(PictureTest, TextBeyondTheEdgesIsLeftOut) {
    text(-2, 1, "abcd");
    text(78, 2, "wxyz");
    text(0, -1, "above");
    text(0, 25, "below");
    text(80, 3, "behind");
    EXPECT_EQ(rowText(picture, 1).substr(0, 4), "cd  ");
    EXPECT_EQ(rowText(picture, 2).substr(76), "  wx");
    EXPECT_EQ(rowText(picture, 3), std::string(80, ' '));
    EXPECT_EQ(rowText(picture, 0), std::string(80, ' '));
    EXPECT_EQ(rowText(picture, 24), std::string(80, ' '));
}

TEST_F(PictureTest, RowsOutsideTakeNoPartInAScroll) {
    text(0, 0, "first");
    text(0, 23, "one");
    text(0, 24, "last");
    picture.scroll(-4, 40, -1);
    EXPECT_EQ(rowText(picture, 22).substr(0, 4), "one ");
    EXPECT_EQ(rowText(picture, 23).substr(0, 5), "last ");
    EXPECT_EQ(rowText(picture, 24), std::string(80, ' '));
    EXPECT_FALSE(picture.at(0, 24).drawn());
    EXPECT_EQ(picture.origins()[24], Picture::noOrigin);
    picture.scroll(-4, 40, 1);
    EXPECT_EQ(rowText(picture, 24).substr(0, 5), "last ");
    EXPECT_FALSE(picture.at(0, 0).drawn());
}

TEST_F(PictureTest, GlyphsOfTheTerminalFontShowTheStoredCharacter) {
    text(0, 0, "\x10\x1e\x1f", {.font = TextFont::terminal});
    EXPECT_EQ(picture.at(0, 0).text(), 'j');
    EXPECT_EQ(picture.at(0, 0).code(), '\x10');
    EXPECT_EQ(picture.at(1, 0).text(), 'x');
    EXPECT_EQ(picture.at(2, 0).text(), '\x1f');
    EXPECT_EQ(picture.at(0, 0).style(), 1);
}

TEST_F(PictureTest, BytesAbove127StayWhatTheyAre) {
    text(0, 0, "\xff\x80");
    EXPECT_EQ(picture.at(0, 0).text(), '\xff');
    EXPECT_EQ(picture.at(1, 0).text(), '\x80');
    EXPECT_EQ(picture.at(0, 0).fg(), 3);
    EXPECT_EQ(picture.at(0, 0).style(), 0);
}

TEST_F(PictureTest, NothingDrawnLooksAsTextDoesWithoutAnotherLook) {
    EXPECT_EQ(PictureCell{}.look(), TextLook{});
    EXPECT_EQ(picture.at(0, 0).look(), TextLook{});
    EXPECT_EQ(CellSet{}.bounds(), (CellArea{0, 0, 0, 0}));
}

TEST_F(PictureTest, AFilledCellIsABlankWithForeground7) {
    text(0, 0, "abc");
    picture.fill({1, 0, 1, 1}, 7);
    EXPECT_EQ(rowText(picture, 0).substr(0, 3), "a c");
    EXPECT_EQ(picture.at(1, 0).fg(), 7);
    EXPECT_EQ(picture.at(1, 0).bg(), 7);
    EXPECT_TRUE(picture.at(1, 0).drawn());
}

TEST_F(PictureTest, AreasOutsideAreLeftOut) {
    picture.fill({-5, -3, 8, 5}, 5);
    picture.fill({79, 24, 9999, 9999}, 6);
    picture.fill({5, 5, 0, 9}, 3);
    picture.fill({-9, 3, 9, 1}, 3);
    EXPECT_EQ(picture.at(2, 1).bg(), 5);
    EXPECT_FALSE(picture.at(3, 1).drawn());
    EXPECT_FALSE(picture.at(2, 2).drawn());
    EXPECT_EQ(picture.at(79, 24).bg(), 6);
    EXPECT_FALSE(picture.at(5, 5).drawn());
    EXPECT_FALSE(picture.at(0, 3).drawn());
}

TEST_F(PictureTest, InvertingTwiceIsNothingAndDrawingOverEndsIt) {
    picture.invert({4, 2, 2, 1}, Inversion::selection);
    picture.invert({5, 2, 1, 1}, Inversion::selection);
    EXPECT_EQ(picture.at(4, 2).style(), 16);
    EXPECT_EQ(picture.at(5, 2).style(), 0);
    text(4, 2, "a");
    EXPECT_EQ(picture.at(4, 2).style(), 0);
}

TEST_F(PictureTest, TheCursorIsKeptApartFromTheSelection) {
    picture.invert({4, 2, 1, 1}, Inversion::selection);
    EXPECT_TRUE(picture.at(4, 2).inverted());
    picture.invert({4, 2, 1, 1}, Inversion::cursor);
    EXPECT_EQ(picture.at(4, 2).style(), 16);
    EXPECT_FALSE(picture.at(4, 2).inverted());  // twice
    EXPECT_EQ(picture.cursor(), (std::pair{4, 2}));
    picture.invert({4, 2, 1, 1}, Inversion::cursor);
    EXPECT_FALSE(picture.cursor().has_value());
    picture.invert({9, 3, 1, 1}, Inversion::underlineCursor);
    EXPECT_EQ(picture.cursor(), (std::pair{9, 3}));
    EXPECT_FALSE(picture.at(9, 3).inverted());
    EXPECT_TRUE(picture.at(9, 3).barInverted());
}

TEST_F(PictureTest, ALineUnderlinesItsCells) {
    text(0, 0, "abcd");
    picture.underline(0, 1, 2);
    EXPECT_EQ(picture.at(0, 0).style(), 0);
    EXPECT_EQ(picture.at(1, 0).style(), 4);
    EXPECT_EQ(picture.at(2, 0).style(), 4);
    EXPECT_EQ(picture.at(3, 0).style(), 0);
    EXPECT_EQ(picture.at(1, 0).text(), 'b');
}

TEST_F(PictureTest, ScrollingUpMovesCellsWithTheirLookAndFreesTheBottom) {
    text(0, 1, "one");
    text(0, 2, "two");
    text(0, 4, "below");
    picture.invert({1, 2, 1, 1}, Inversion::cursor);
    picture.scroll(1, 3, -1);
    EXPECT_EQ(rowText(picture, 1).substr(0, 5), "two  ");
    EXPECT_EQ(picture.cursor(), (std::pair{1, 1}));
    EXPECT_FALSE(picture.at(0, 3).drawn());
    EXPECT_EQ(rowText(picture, 4).substr(0, 5), "below");
}

TEST_F(PictureTest, ScrollingDownFreesTheTop) {
    text(0, 0, "zero");
    text(0, 1, "one");
    picture.scroll(0, 23, 2);
    EXPECT_FALSE(picture.at(0, 0).drawn());
    EXPECT_FALSE(picture.at(0, 1).drawn());
    EXPECT_EQ(rowText(picture, 2).substr(0, 5), "zero ");
    EXPECT_EQ(rowText(picture, 3).substr(0, 5), "one  ");
}

TEST_F(PictureTest, ScrollingByTheWholeAreaOrMoreLeavesNothing) {
    text(0, 0, "zero");
    text(0, 23, "last");
    text(0, 24, "status");
    picture.scroll(0, 23, -30);
    EXPECT_FALSE(picture.at(0, 0).drawn());
    EXPECT_FALSE(picture.at(0, 23).drawn());
    EXPECT_EQ(rowText(picture, 24).substr(0, 6), "status");
}

TEST_F(PictureTest, OriginsTellWhereRowsCameFromInThisFrame) {
    picture.scroll(0, 23, -2);
    picture.scroll(5, 10, 1);
    EXPECT_EQ(picture.origins()[0], 2);
    EXPECT_EQ(picture.origins()[4], 6);
    EXPECT_EQ(picture.origins()[5], Picture::noOrigin);
    EXPECT_EQ(picture.origins()[6], 7);
    EXPECT_EQ(picture.origins()[10], 11);  // the row that had come from 12 is gone
    EXPECT_EQ(picture.origins()[11], 13);
    EXPECT_EQ(picture.origins()[22], Picture::noOrigin);
    EXPECT_EQ(picture.origins()[24], 24);
    picture.beginFrame();
    EXPECT_EQ(picture.origins()[5], 5);
}

TEST_F(PictureTest, AClipKeepsDrawingToItsCells) {
    text(0, 0, "aaaa");
    CellSet clip = cells({1, 0, 1, 1});
    clip.add({3, 0, 1, 2});
    picture.setClip(&clip);
    text(0, 0, "bbbb");
    picture.fill({0, 1, 10, 1}, 2);
    picture.setClip(nullptr);
    EXPECT_EQ(rowText(picture, 0).substr(0, 4), "abab");
    EXPECT_FALSE(picture.at(2, 1).drawn());
    EXPECT_TRUE(picture.at(3, 1).drawn());
}

TEST_F(PictureTest, ErasingLeavesCellsThatNothingIsDrawnOn) {
    text(0, 0, std::string(80, 'x'));
    text(0, 1, std::string(80, 'y'));
    CellSet set = cells({0, 0, 80, 1});
    set.add({10, 1, 5, 1});
    picture.erase(set);
    EXPECT_FALSE(picture.at(79, 0).drawn());
    EXPECT_EQ(picture.at(9, 1).text(), 'y');
    EXPECT_EQ(picture.at(10, 1).text(), ' ');
    EXPECT_EQ(picture.at(15, 1).text(), 'y');
}

TEST_F(PictureTest, ACellWithoutDrawingShowsTheBackground) {
    const PictureCell nothing;
    EXPECT_EQ(nothing.on(7).bg(), 7);
    EXPECT_TRUE(nothing.on(7).blank());
    EXPECT_EQ((PictureCell{'a', look}).on(7).bg(), 4);
}

TEST(CellSetTest, KnowsItsCellsAndTheAreaAroundThem) {
    CellSet set;
    EXPECT_TRUE(set.empty());
    set.add({-3, 2, 5, 1});  // columns 0 and 1
    set.add({70, 20, 99, 99});
    EXPECT_TRUE(set.contains(0, 2));
    EXPECT_TRUE(set.contains(1, 2));
    EXPECT_FALSE(set.contains(2, 2));
    EXPECT_TRUE(set.contains(79, 24));
    EXPECT_FALSE(set.contains(69, 24));
    EXPECT_FALSE(set.contains(80, 24));
    EXPECT_EQ(set.bounds(), (CellArea{0, 2, 80, 23}));
    set.clear();
    EXPECT_TRUE(set.empty());
    EXPECT_FALSE(set.contains(0, 2));
    set.add({90, 0, 5, 5});
    EXPECT_TRUE(set.empty());
}

TEST(CellSetTest, FollowsAScroll) {
    CellSet set = cells({10, 20, 5, 4});  // rows 20 to 23
    set.follow(0, 23, -3);
    EXPECT_EQ(set.bounds(), (CellArea{10, 17, 5, 7}));
    EXPECT_TRUE(set.contains(14, 17));
    EXPECT_FALSE(set.contains(15, 17));
    set = cells({0, 0, 1, 1});
    set.follow(1, 23, 1);  // row 0 lies outside
    EXPECT_FALSE(set.contains(0, 1));
}

TEST(CellAreaTest, Within) {
    EXPECT_TRUE((CellArea{0, 22, 80, 2}.within({0, 22, 80, 2})));
    EXPECT_FALSE((CellArea{0, 21, 80, 2}.within({0, 22, 80, 2})));
    EXPECT_FALSE((CellArea{0, 22, 80, 3}.within({0, 22, 80, 2})));
}

// Whatever has been drawn on a row, nothing of it is left when a scroll frees the row.
TEST_F(PictureTest, ARowFreedByAScrollIsBlankToItsLastColumn) {
    const auto freed = [&] {
        picture.scroll(3, 4, -1);
        for (int column = 0; column < pictureColumns; ++column) {
            if (picture.at(column, 4).drawn() || picture.at(column, 4).bg() != 0 ||
                picture.at(column, 4).selected())
                return column;
        }
        return -1;
    };
    picture.fill({70, 3, 10, 2}, 7);
    EXPECT_EQ(freed(), -1);
    text(75, 3, "beyond the edge");
    text(75, 4, "beyond the edge");
    EXPECT_EQ(freed(), -1);
    picture.invert({79, 3, 1, 2}, Inversion::selection);
    EXPECT_EQ(freed(), -1);
    const CellSet part = cells({60, 3, 20, 2});
    picture.setClip(&part);
    text(72, 3, "clipped");
    text(72, 4, "clipped");
    picture.fill({78, 3, 2, 2}, 5);
    picture.setClip(nullptr);
    EXPECT_EQ(freed(), -1);
    // The rows above keep what stood far right, also when what they are moved over had less.
    text(78, 6, "ab");
    text(0, 5, "c");
    picture.scroll(5, 6, -1);
    picture.scroll(5, 6, 1);
    picture.scroll(5, 6, 1);
    EXPECT_EQ(rowText(picture, 5), std::string(80, ' '));
    EXPECT_EQ(rowText(picture, 6), std::string(80, ' '));
}

TEST_F(PictureTest, CellsThatWaitFollowAScrollToTheLastRow) {
    CellSet waiting = cells({3, 23, 1, 1});
    waiting.follow(20, 24, 1);
    EXPECT_TRUE(waiting.contains(3, 24));
}

}  // namespace
}  // namespace qxterm::test::picture_test
