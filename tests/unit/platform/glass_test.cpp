#include "platform/glass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace qxterm::test::glass_test {
namespace {

/// Glass that shows what the calls say and nothing else: a cell's code, colours, and how often it was
/// inverted since it was drawn.
class FakeSurface final : public Surface {
public:
    struct Pixel {
        char code = '?';
        TextLook look;
        bool underlined = false;
        bool inverted = false;
        bool bar = false;
    };

    void text(int row, int column, std::string_view codes, const TextLook& look, bool underlined) override {
        calls.push_back("text " + place(row, column) + " \"" + std::string{codes} + '"' +
                        (underlined ? " underlined" : ""));
        for (const char code : codes) at(column++, row) = {code, look, underlined};
    }
    void blank(int row, int column, int count, std::uint8_t colour) override {
        calls.push_back("blank " + place(row, column) + ' ' + std::to_string(count) + " in " +
                        std::to_string(colour));
        for (int n = 0; n < count; ++n) at(column + n, row) = {' ', {.bg = colour}};
    }
    void invert(int row, int column, int count, bool bar) override {
        calls.push_back((bar ? "bar " : "invert ") + place(row, column) + ' ' + std::to_string(count));
        for (int n = 0; n < count; ++n) {
            Pixel& pixel = at(column + n, row);
            (bar ? pixel.bar : pixel.inverted) ^= true;
        }
    }
    void scroll(int first, int last, int by, CellSet& lost) override {
        calls.push_back("scroll " + std::to_string(first) + ".." + std::to_string(last) + " by " +
                        std::to_string(by));
        const auto before = rows;
        for (int row = first; row <= last; ++row) {
            const int from = row - by;
            const bool freed = from < first || from > last;
            rows[index(row)] = freed ? Row{} : before[index(from)];
        }
        if (covered.empty()) return;
        lost.add(covered);
        for (int row = covered.row; row < covered.row + covered.rows; ++row) {
            for (int column = covered.column; column < covered.column + covered.columns; ++column)
                at(column, row) = {};
        }
    }

    /// Pixels of another program stand there.
    void spoil(const CellArea& area) {
        for (int row = area.row; row < area.row + area.rows; ++row) {
            for (int column = area.column; column < area.column + area.columns; ++column)
                at(column, row) = {};
        }
    }

    /// Where it does not show what the picture holds, empty when it does.
    [[nodiscard]] std::string difference(const Picture& picture, std::uint8_t background) const {
        for (int row = 0; row < pictureRows; ++row) {
            for (int column = 0; column < pictureColumns; ++column) {
                const PictureCell cell = picture.at(column, row);
                const Pixel& pixel = rows[index(row)][index(column)];
                const int back = cell.drawn() ? cell.bg() : background;
                const bool blank = cell.code() == ' ' && !cell.underlined();
                const bool same = pixel.code == cell.code() && pixel.look.bg == back &&
                                  pixel.underlined == cell.underlined() &&
                                  pixel.inverted == cell.inverted() && pixel.bar == cell.barInverted() &&
                                  (blank || (pixel.look.fg == cell.fg() && pixel.look.bold == cell.bold() &&
                                             (pixel.look.font == TextFont::terminal) == cell.terminalFont()));
                if (!same) return place(row, column) + ": '" + pixel.code + "' for '" + cell.code() + '\'';
            }
        }
        return {};
    }

    std::vector<std::string> calls;
    CellArea covered;  ///< cells that no scroll brings

private:
    using Row = std::array<Pixel, pictureColumns>;
    static std::size_t index(int value) { return static_cast<std::size_t>(value); }
    static std::string place(int row, int column) {
        return std::to_string(row) + ',' + std::to_string(column);
    }
    Pixel& at(int column, int row) { return rows[index(row)][index(column)]; }

    std::array<Row, pictureRows> rows;
};

class GlassTest : public testing::Test {
protected:
    void SetUp() override { show(); }
    /// The calls that showing the picture takes.
    std::vector<std::string> show(bool mayScroll = true) {
        surface.calls.clear();
        glass.show(picture, background, surface, mayScroll);
        EXPECT_EQ(surface.difference(picture, background), "");
        return surface.calls;
    }
    using Calls = std::vector<std::string>;

    Picture picture;
    Glass glass;
    FakeSurface surface;
    std::uint8_t background = 0;
};

TEST_F(GlassTest, TheFirstPictureCoversAllOfTheGlass) {
    Glass fresh;
    FakeSurface bare;
    fresh.show(picture, 4, bare, true);
    EXPECT_EQ(fresh.cellsDrawn(), 2000U);
    EXPECT_EQ(bare.calls.size(), 25U);
    EXPECT_EQ(bare.calls[0], "blank 0,0 80 in 4");
    EXPECT_EQ(bare.difference(picture, 4), "");
}

TEST_F(GlassTest, WhatIsEqualIsNotDrawn) {
    picture.drawText(3, 10, "word", {});
    EXPECT_EQ(show(), (Calls{"text 3,10 \"word\""}));
    picture.drawText(3, 10, "word", {});
    EXPECT_EQ(show(), Calls{});
    picture.drawText(3, 10, "work", {});
    EXPECT_EQ(show(), (Calls{"text 3,13 \"k\""}));
}

TEST_F(GlassTest, WhatWasDrawnBetweenTwoFramesIsNeverSeen) {
    for (const char* word : {"one", "two", "six"}) picture.drawText(0, 0, word, {});
    EXPECT_EQ(show(), (Calls{"text 0,0 \"six\""}));
}

TEST_F(GlassTest, ARunIsOneCallAndShortGapsJoinRuns) {
    picture.drawText(0, 0, "abcdefghij", {});
    show();
    picture.drawText(0, 0, "Abcdefghij", {});
    picture.drawText(0, 9, "J", {});
    EXPECT_EQ(show(), (Calls{"text 0,0 \"AbcdefghiJ\""}));  // eight equal cells in between
    picture.drawText(0, 20, "x", {});
    picture.drawText(0, 30, "y", {});  // nine
    EXPECT_EQ(show(), (Calls{"text 0,20 \"x\"", "text 0,30 \"y\""}));
}

TEST_F(GlassTest, ALongBlankEndIsFilledRatherThanWritten) {
    picture.drawText(5, 0, "abcdefghi", {});
    picture.drawText(6, 0, "abcdefghij", {});
    show();
    picture.drawText(5, 0, "X        ", {});   // eight blanks
    picture.drawText(6, 0, "X         ", {});  // nine
    EXPECT_EQ(show(), (Calls{"text 5,0 \"X        \"", "text 6,0 \"X\"", "blank 6,1 9 in 0"}));
}

// All rows come along, and none of them shows afterwards what it showed: in whatever way it differs.
TEST_F(GlassTest, AScrollThatSavesNothingIsNotCarriedOut) {
    const auto scrolls = [&] {
        const Calls calls = show();
        return std::count_if(calls.begin(), calls.end(),
                             [](const auto& c) { return c.starts_with("scroll"); });
    };
    for (int row = 0; row < 24; ++row) picture.drawText(row, 0, "before " + std::to_string(row), {});
    show();
    picture.scroll(0, 23, -1);
    for (int row = 0; row < 24; ++row) picture.drawText(row, 0, "after " + std::to_string(row) + ' ', {});
    EXPECT_EQ(scrolls(), 0);
    picture.scroll(0, 23, -1);
    picture.invert({0, 0, 1, 24}, Inversion::selection);
    EXPECT_EQ(scrolls(), 0);
    picture.scroll(0, 23, -1);
    EXPECT_EQ(scrolls(), 1);
}

TEST_F(GlassTest, EachLookIsARunOfItsOwnAndBlanksTakeAny) {
    picture.drawText(0, 0, "ab", {.fg = 1, .bg = 0});
    picture.drawText(0, 2, " ", {.fg = 2, .bg = 0});
    picture.drawText(0, 3, "cd", {.fg = 1, .bg = 0});
    picture.drawText(0, 5, "e", {.fg = 1, .bg = 0, .bold = true});
    picture.drawText(0, 6, "  ", {.fg = 1, .bg = 4});
    EXPECT_EQ(show(), (Calls{"text 0,0 \"ab cd\"", "text 0,5 \"e\"", "blank 0,6 2 in 4"}));
}

TEST_F(GlassTest, TheColourOfABlankIsNotSeenUnlessItIsUnderlined) {
    picture.drawText(0, 0, " ", {.fg = 2});
    EXPECT_EQ(show(), Calls{});
    picture.underline(0, 0, 1);
    EXPECT_EQ(show(), (Calls{"text 0,0 \" \" underlined"}));
    picture.drawText(0, 0, " ", {.fg = 3});
    picture.underline(0, 0, 1);
    EXPECT_EQ(show(), (Calls{"text 0,0 \" \" underlined"}));
}

TEST_F(GlassTest, TheTerminalFontIsAskedForGlyphsOnly) {
    picture.drawText(0, 0, " ", {});
    picture.drawText(0, 1, "\x10", {.font = TextFont::terminal});
    picture.drawText(0, 2, "a", {});
    picture.drawText(1, 0, "b ", {});
    EXPECT_EQ(show(), (Calls{"text 0,1 \"\x10\"", "text 0,2 \"a\"", "text 1,0 \"b\""}));
    glass.forget();
    EXPECT_EQ(show().front(), "blank 0,0 1 in 0");
}

TEST_F(GlassTest, InversionAloneDrawsNoText) {
    picture.drawText(0, 0, "abc", {});
    show();
    picture.invert({0, 0, 2, 1}, Inversion::selection);
    EXPECT_EQ(show(), (Calls{"invert 0,0 2"}));
    picture.invert({1, 0, 1, 1}, Inversion::cursor);
    EXPECT_EQ(show(), (Calls{"invert 0,1 1"}));
    picture.drawText(0, 0, "x", {});
    EXPECT_EQ(show(), (Calls{"text 0,0 \"x\""}));
    picture.invert({2, 0, 1, 1}, Inversion::underlineCursor);
    EXPECT_EQ(show(), (Calls{"bar 0,2 1"}));
}

TEST_F(GlassTest, ATextOverAnInvertedGapInvertsItAgain) {
    picture.drawText(0, 0, "abc", {});
    picture.invert({1, 0, 1, 1}, Inversion::cursor);
    show();
    picture.drawText(0, 0, "x", {});
    picture.drawText(0, 2, "z", {});
    EXPECT_EQ(show(), (Calls{"text 0,0 \"xbz\"", "invert 0,1 1"}));
}

TEST_F(GlassTest, RowsThatOnlyMovedAreScrolled) {
    for (int row = 0; row < 25; ++row) picture.drawText(row, 0, "row " + std::to_string(row), {});
    show();
    picture.scroll(0, 23, -1);
    picture.drawText(23, 0, "new", {});
    EXPECT_EQ(show(), (Calls{"scroll 0..23 by -1", "text 23,0 \"new\"", "blank 23,3 77 in 0"}));
    picture.scroll(2, 20, 3);
    EXPECT_EQ(show(),
              (Calls{"scroll 2..20 by 3", "blank 2,0 80 in 0", "blank 3,0 80 in 0", "blank 4,0 80 in 0"}));
}

TEST_F(GlassTest, AScrollThatSavesLittleIsNotCarriedOut) {
    for (int row = 0; row < 3; ++row)
        picture.drawText(row, 0, std::string(3, static_cast<char>('a' + row)), {});
    show();
    picture.scroll(0, 23, -1);
    EXPECT_EQ(show(), (Calls{"text 0,0 \"bbb\"", "text 1,0 \"ccc\"", "blank 2,0 3 in 0"}));
}

TEST_F(GlassTest, NothingIsScrolledWhilePixelsAreMissing) {
    for (int row = 0; row < 25; ++row) picture.drawText(row, 0, "row " + std::to_string(row), {});
    show();
    picture.scroll(0, 23, -1);
    const auto calls = show(false);
    EXPECT_TRUE(std::none_of(calls.begin(), calls.end(),
                             [](const std::string& call) { return call.rfind("scroll", 0) == 0; }));
}

TEST_F(GlassTest, WhatAScrollCouldNotBringIsDrawn) {
    for (int row = 0; row < 24; ++row)
        picture.drawText(row, 0, std::string(80, static_cast<char>('a' + row)), {});
    show();
    surface.covered = {70, 3, 10, 2};
    picture.scroll(0, 23, -1);
    const auto calls = show();
    EXPECT_EQ(calls[0], "scroll 0..23 by -1");
    EXPECT_EQ(calls[1], "text 3,70 \"eeeeeeeeee\"");
    EXPECT_EQ(calls[2], "text 4,70 \"ffffffffff\"");
}

TEST_F(GlassTest, AnotherBackgroundShowsOnCellsThatNothingIsDrawnOn) {
    picture.drawText(0, 0, "a", {});
    show();
    background = 7;
    const auto calls = show();
    EXPECT_EQ(calls.size(), 25U);
    EXPECT_EQ(calls[0], "blank 0,1 79 in 7");
}

TEST_F(GlassTest, ForgottenCellsAreDrawnAgain) {
    picture.drawText(2, 0, "abcdef", {});
    show();
    CellSet cells;
    cells.add({2, 2, 2, 1});
    surface.spoil({2, 2, 2, 1});
    glass.forget(cells);
    EXPECT_EQ(show(), (Calls{"text 2,2 \"cd\""}));
}

// Anything drawn, scrolled, inverted, spoiled, in any order: after each frame the glass shows the picture.
TEST_F(GlassTest, ShowsAnyPictureAfterAnyOther) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random{seed};
        const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
        const auto look = [&] {
            return TextLook{static_cast<std::uint8_t>(below(3)), static_cast<std::uint8_t>(below(2)),
                            below(5) == 0, below(6) == 0 ? TextFont::terminal : TextFont::normal};
        };
        for (int frame = 0; frame < 300; ++frame) {
            for (int steps = below(8); steps > 0; --steps) {
                const CellArea area{below(80), below(25), 1 + below(30), 1 + below(4)};
                switch (below(9)) {
                    case 0: picture.fill(area, static_cast<std::uint8_t>(below(2) * 7)); break;
                    case 1: picture.invert(area, Inversion::selection); break;
                    case 2: picture.invert({area.column, area.row, 1, 1}, Inversion::cursor); break;
                    case 3: picture.invert({area.column, area.row, 1, 1}, Inversion::underlineCursor); break;
                    case 4: {
                        const int first = below(24);
                        picture.scroll(first, first + below(static_cast<unsigned>(25 - first)), below(9) - 4);
                        break;
                    }
                    case 5: picture.underline(area.row, area.column, area.columns); break;
                    case 6: {
                        CellSet cells;
                        cells.add(area);
                        picture.erase(cells);
                        break;
                    }
                    default: {
                        std::string text;
                        for (int n = below(30); n >= 0; --n) text += "ab "[below(3)];
                        picture.drawText(area.row, area.column, text, look());
                    }
                }
            }
            if (below(10) == 0) background = static_cast<std::uint8_t>(7 - background);
            if (below(10) == 0) {
                const CellArea area = CellArea{below(80), below(25), 20, 5}.visible();
                CellSet cells;
                cells.add(area);
                surface.spoil(area);
                glass.forget(cells);
            }
            surface.covered = below(4) == 0 ? CellArea{below(60), below(20), 15, 4} : CellArea{};
            show(below(6) != 0);
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", frame " << frame;
        }
    }
}

}  // namespace
}  // namespace qxterm::test::glass_test
